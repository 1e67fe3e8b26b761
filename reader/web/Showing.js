// What of the page is seen: each state, the reader's pages in their frame.

const $ = id => document.getElementById(id);
const plural = (count, what) => `${count.toLocaleString('en')} ${what}${count === 1 ? '' : 's'}`;
const size = bytes => bytes < 1 << 20 ? `${Math.ceil(bytes / 1024)} KiB` : `${(bytes / (1 << 20)).toFixed(1)} MiB`;

function show(state) {
  document.body.className = state;
  $('start').hidden = state !== 'empty';
  $('working').hidden = state !== 'working';
  $('actions').hidden = state !== 'sessions' && state !== 'shown';
  $('back').hidden = state !== 'shown' || !job.triage;
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
  const { unread, stopped } = job.told;
  // The page of sessions says itself what the reader said.
  const messages = job.told.messages.filter(text => document.body.className !== 'sessions' || text.includes('memory'));
  const left = [...job.unopened, ...job.left, ...unread];
  const items = [...messages, ...left.map(({ path, why }) => `${path}: ${why}`)];
  $('notes').hidden = items.length === 0;
  $('notes').open = stopped || messages.some(text => text.includes('memory')); // Else the page looks whole.
  $('notes').firstElementChild.textContent = stopped ? 'Stopped: this is what was read until then'
    : left.length > 0 ? `${plural(left.length, 'file')} left out` : plural(items.length, 'note');
  $('notes').lastElementChild.replaceChildren(...items.slice(0, 1000).map(text => line('li', text)));
}

const showFailure = text => $('failed').replaceChildren(line('p', text));

// What was dropped on a report is the frame's until it was looked through: it is only hidden before.
function removeFrame() {
  document.querySelector('iframe')?.remove();
}

// The keyboard goes on from here, forwards and back; or from where it was when what is shown is made anew.
function enter(element) {
  const back = job.entered;
  job.entered = null;
  if (back) {
    back.focus();
  } else if (element.matches('a')) {
    element.focus();
  } else {
    element.tabIndex = -1;
    element.focus();
    element.blur();
    element.removeAttribute('tabindex');
  }
}

// What folders are called may name somebody.
const titleOf = kind => (kind === 'triage' ? 'Sessions' : job.redact ? 'Report' : job.report.title) +
  (job.redact ? ' without names' : '') + (job.told.stopped ? ' (in part)' : '');

// A page that the reader wrote, in a frame of its own. It is of this page's origin, so that it can be printed from here
// and takes drops; the only scripts in it are those that the policy names by their hashes, and it can lead nowhere. A
// link to a place in it would be taken for one in this page, did it not say what it is relative to.
async function showPage(kind) {
  const mine = job;
  mine.shown = kind;
  mine.asked = null; // Whoever went back does not want it any more.
  const { page, told } = mine[kind];
  const text = await page.text();
  if (mine !== job || mine.shown !== kind) {
    return;
  }
  mine.told = told;
  removeFrame();
  show(kind === 'report' ? 'shown' : 'sessions');
  $('about').textContent = kind === 'report' ? titleOf(kind) : job.taken;
  showNotes();
  const frame = document.createElement('iframe');
  frame.title = kind === 'report' ? 'Report' : 'Sessions';
  frame.sandbox = 'allow-scripts allow-same-origin allow-modals';
  frame.srcdoc = text.replace('<head>', '<head><base href="about:srcdoc">');
  frame.onload = () => {
    const shown = frame.contentDocument;
    takeDrops(frame.contentWindow);
    document.title = shown.title;
    enter(kind === 'triage' && linkSessions(shown, mine.triage) || shown.querySelector('h1'));
  };
  document.body.append(frame);
}

// Each session leads to its report. Without names a folder may be called otherwise: where it lies is known from the page
// with names, if that was made of the same logs.
// @return what led to the report that was shown last.
function linkSessions(page, { redact, until, told }) {
  const few = 12;
  const rows = [...page.querySelectorAll('tr[data-session]')];
  const readUntil = told.messages.some(text => text.includes('memory')) ? NaN : until;
  if (!redact) {
    job.folders = new Map(rows.map(({ dataset }) => [dataset.session, dataset.folder]));
    job.listedUntil = readUntil;
  } else if (readUntil !== job.listedUntil) {
    return null;
  }
  let opened = null;
  rows.forEach(row => {
    const { session } = row.dataset;
    const link = page.createElement('a');
    link.href = '#';
    link.append(...row.cells[1].childNodes);
    link.onclick = event => {
      event.preventDefault();
      job.opened = session;
      report(job.folders.get(session) || 'Logs without a folder', { folder: job.folders.get(session) });
    };
    row.cells[1].append(link);
    opened = session === job.opened ? link : opened;
  });
  page.querySelectorAll('.groups details').forEach(group => { group.open = rows.length <= few || group.contains(opened); });
  return opened;
}
