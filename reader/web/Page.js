// One job at a time: logs are taken, the worker reads them, and what it makes of them is shown. Nothing is kept, and
// nothing is asked of a network.

let job = null; // {worker, paths, …}: one drop or choice.

function takeChosen(input) {
  const files = [...input.files].map(file => ({ path: file.webkitRelativePath || file.name, file }));
  input.value = '';
  if (files.length > 0) {
    begin(async () => files);
  }
}

let moduleBytes = null;
async function wasm() {
  if (!moduleBytes) {
    const text = atob($('module').textContent);
    const packed = Uint8Array.from(text, letter => letter.charCodeAt(0));
    const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream('deflate'));
    moduleBytes = await new Response(stream).arrayBuffer();
  }
  return moduleBytes;
}

function end() {
  if (job) {
    job.worker.terminate();
    URL.revokeObjectURL(job.url);
    job = null;
  }
}

async function begin(collect) {
  end();
  const url = URL.createObjectURL(new Blob([$('worker').textContent], { type: 'text/javascript' }));
  $('redact').checked = false;
  const mine = job = { worker: new Worker(url), url, left: [], unread: [], messages: [], sessions: null, redact: false };
  mine.worker.onmessage = ({ data }) => mine === job && heard[data.what](data);
  mine.worker.onerror = event => mine === job && heard.failed({ text: event.message || 'the reader does not start' });
  show('working');
  working('Looking for logs', undefined, '');
  const leave = (path, why) => mine.left.push({ path, why });
  try {
    const files = withNamesOfTheirOwn(await collect(leave, count => mine === job && working('Looking for logs', undefined,
      plural(count, 'file'))));
    if (mine !== job) {
      return;
    }
    mine.paths = [...new Set(files.map(({ path }) => path.split('/')[0]))];
    ask('take', { module: await wasm(), files });
  } catch (error) {
    if (mine === job) {
      heard.failed({ text: error.message });
    }
  }
}

const ask = (task, more) => job.worker.postMessage({ task, options: job.redact ? ['--redact'] : [], ...more });

/// @param what {paths} or {folder}.
function report(title, what) {
  job.report = { title, what };
  show('working');
  working('Reading', 0, '');
  ask('report', what);
}

function triage() {
  show('working');
  working('Reading', 0, '');
  ask('triage', { paths: job.paths });
}

// What folders are called may name somebody.
const reportTitle = () => job.redact ? 'Report without names' : job.report.title;

// Without names a folder may be called otherwise: where it lies is known from the list with names.
function keepFolders(sessions) {
  const key = ({ id, processId, begin }) => JSON.stringify([id, processId, begin]);
  if (!job.redact) {
    job.folders = new Map();
    sessions.forEach(session => job.folders.set(key(session), [...job.folders.get(key(session)) || [], session.folder]));
  }
  const left = new Map([...job.folders].map(([name, folders]) => [name, [...folders]]));
  return sessions.map(session => ({ ...session, lies: left.get(key(session))?.shift() ?? session.folder }));
}

// What was shown before, made anew when it is with names and is to be without, or the other way round.
const sessionsAgain = () => job.listed === job.redact ? showSessions() : triage();
const reportAgain = () => job.reported === job.redact ? showReport() : report(job.report.title, job.report.what);

// What the reader did not look at is left out, too.
function told(messages, unread) {
  job.messages = messages;
  job.unread = unread.map(path => ({ path, why: 'not named like a log' }));
}

const tooLittleMemory = 'There is not enough memory for these logs in this browser.';
const nothing = messages =>
  messages.some(text => text.includes('memory')) ? tooLittleMemory : 'No logs of CanvixSentiq found.';

const heard = {
  progress({ doing, done, total }) {
    working(doing, total ? done / total : undefined, total ? `${size(done)} of ${size(total)}` : size(done));
  },
  left({ path, why }) {
    job.left.push({ path, why });
  },
  taken({ files, bytes, folders, tops }) {
    job.taken = `${plural(files, 'file')}, ${size(bytes)}`;
    job.paths = job.paths.filter(path => tops.includes(path));
    if (files === 0) {
      fail('No logs found.');
    } else if (folders > 1) {
      triage();
    } else {
      report(job.paths.length === 1 ? job.paths[0] : job.taken, { paths: job.paths });
    }
  },
  sessions({ sessions, messages, unread }) {
    told(messages, unread);
    if (sessions.length === 0) {
      fail(nothing(messages));
    } else if (sessions.length === 1) {
      report(job.paths.length === 1 ? job.paths[0] : job.taken, { paths: job.paths });
    } else {
      job.sessions = keepFolders(sessions);
      job.listed = job.redact;
      listSessions();
      showSessions();
    }
  },
  page({ page, messages, unread }) {
    told(messages, unread);
    if (!page) {
      fail(nothing(messages));
      return;
    }
    job.page = page;
    job.reported = job.redact;
    if (job.sessions && !(history.state && history.state.report)) {
      history.pushState({ report: true }, '');
    }
    showReport();
  },
  failed({ text }) {
    fail(/memory/i.test(text) ? tooLittleMemory : `The reader failed: ${text}`);
  },
};

function startAgain() {
  end();
  show('empty');
  $('chooseFiles').focus();
}

takeDrops(window);
$('chooseFiles').onclick = () => $('files').click();
$('chooseFolder').onclick = () => $('folder').click();
$('files').onchange = () => takeChosen($('files'));
$('folder').onchange = () => takeChosen($('folder'));
$('stop').onclick = () => {
  startAgain();
  $('said').textContent = 'Stopped.';
};
$('again').onclick = startAgain;
$('back').onclick = sessionsAgain;
addEventListener('popstate', ({ state }) => {
  if (job && job.sessions) {
    (state && state.report && job.page ? reportAgain : sessionsAgain)();
  }
});
$('save').onclick = () => {
  const link = document.createElement('a');
  link.href = URL.createObjectURL(job.page);
  link.download = `${reportTitle().replace(/[\\/:*?"<>|]+/g, '-')}.html`;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 60000);
};
$('print').onclick = () => document.querySelector('iframe').contentWindow.print();
$('redact').onchange = () => {
  job.redact = $('redact').checked;
  job.entered = $('redact');
  (document.body.className === 'shown' ? reportAgain : sessionsAgain)();
};
