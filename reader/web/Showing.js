// What of the page is seen: each state, the report in its frame, the list of sessions.

const $ = id => document.getElementById(id);
const plural = (count, what) => `${count.toLocaleString('en')} ${what}${count === 1 ? '' : 's'}`;
const size = bytes => bytes < 1 << 20 ? `${Math.ceil(bytes / 1024)} KiB` : `${(bytes / (1 << 20)).toFixed(1)} MiB`;

function show(state) {
  document.body.className = state;
  $('start').hidden = state !== 'empty';
  $('working').hidden = state !== 'working';
  $('sessions').hidden = state !== 'sessions';
  $('actions').hidden = state !== 'sessions' && state !== 'shown';
  $('save').hidden = $('print').hidden = state !== 'shown';
  $('back').hidden = state !== 'shown' || !job.sessions;
  $('failed').replaceChildren();
  $('said').textContent = '';
  $('about').textContent = '';
  $('notes').hidden = true;
  document.title = 'CanvixSentiq logs';
}

function working(doing, share, done) {
  $('doing').textContent = doing;
  $('done').textContent = done;
  if (share === undefined) {
    $('progress').removeAttribute('value');
  } else {
    $('progress').value = share;
  }
}

function line(element, text) {
  const made = document.createElement(element);
  made.textContent = text;
  return made;
}

// What was left out and why, and what the reader said beside its output.
function showNotes() {
  const { messages, unread, stopped } = job.told;
  const left = [...job.unopened, ...job.left, ...unread];
  const items = [...messages, ...left.map(({ path, why }) => `${path}: ${why}`)];
  $('notes').hidden = items.length === 0;
  $('notes').open = stopped || messages.some(text => text.includes('memory')); // Else the page looks whole.
  $('notes').firstElementChild.textContent = stopped ? 'Stopped: this is what was read until then'
    : left.length > 0 ? `${plural(left.length, 'file')} left out` : plural(items.length, 'note');
  $('notes').lastElementChild.replaceChildren(...items.slice(0, 1000).map(text => line('li', text)));
}

function fail(text) {
  show('empty');
  $('failed').replaceChildren(line('p', text));
  showNotes();
  $('notes').open = true;
  endReader();
}

// What was dropped on a report is the frame's until it was looked through: it is only hidden before.
function removeFrame() {
  document.querySelector('iframe')?.remove();
}

// The keyboard goes on from here, forwards and back; or from where it was when what is shown is made anew.
function enter(element) {
  if (job.entered) {
    job.entered.focus();
    job.entered = null;
    return;
  }
  element.tabIndex = -1;
  element.focus();
  element.blur();
  element.removeAttribute('tabindex');
}

// The page that the reader wrote, in a frame of its own. It is of this page's origin, so that it can be printed from here
// and takes drops; the only scripts in it are those that the policy names by their hashes, and it can lead nowhere. A
// link to a place in it would be taken for one in this page, did it not say what it is relative to.
async function showReport() {
  const mine = job;
  const text = await mine.page.text();
  if (mine !== job) {
    return;
  }
  mine.told = mine.toldOfPage;
  removeFrame();
  show('shown');
  $('about').textContent = reportTitle();
  showNotes();
  const frame = document.createElement('iframe');
  frame.title = 'Report';
  frame.sandbox = 'allow-scripts allow-same-origin allow-modals';
  frame.srcdoc = text.replace('<head>', '<head><base href="about:srcdoc">');
  frame.onload = () => {
    takeDrops(frame.contentWindow);
    document.title = frame.contentDocument.title;
    enter(frame.contentDocument.querySelector('h1'));
  };
  document.body.append(frame);
}

function listSessions() {
  const time = text => text ? text.slice(0, 19).replace('T', ' ') : 'unknown';
  const rows = [...job.sessions].reverse().map(session => {
    const row = document.createElement('tr');
    const open = line('button', session.signature);
    open.type = 'button';
    open.onclick = () => {
      job.opened = open;
      report(session.folder || 'Logs without a folder', { folder: session.lies });
    };
    const how = document.createElement('td');
    how.append(open);
    row.append(line('td', time(session.end)), how, line('td', session.folder));
    return row;
  });
  $('sessions').querySelector('caption').textContent = `${plural(job.sessions.length, 'session')}, newest first`;
  $('sessions').querySelector('tbody').replaceChildren(...rows);
}

function showSessions() {
  removeFrame();
  show('sessions');
  $('about').textContent = job.taken;
  job.told = job.toldOfList;
  showNotes();
  if (job.opened && job.opened.isConnected) {
    job.opened.focus();
  } else {
    enter($('sessions').querySelector('caption'));
  }
}
