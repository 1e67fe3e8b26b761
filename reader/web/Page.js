// One job at a time: logs are taken, the worker reads them, and what it makes of them is shown. Nothing is kept, and
// nothing is asked of a network.

let job = null; // {files, worker, paths, …}: one drop or choice.

function takeChosen(input) {
  const files = [...input.files].map(file => ({ path: file.webkitRelativePath || file.name, file }));
  input.value = '';
  if (files.length > 0) {
    begin(async () => files);
  }
}

function end() {
  if (job) {
    endReader();
    job = null;
  }
}

async function begin(collect) {
  end();
  $('redact').checked = false;
  const mine = job = { unopened: [], left: [], told: { messages: [], unread: [] }, redact: false, questions: 0 };
  show('working');
  working('Looking for logs', undefined, '');
  const leave = (path, why) => mine.unopened.push({ path, why });
  try {
    mine.files = withNamesOfTheirOwn(await collect(leave, count => mine === job && working('Looking for logs', undefined,
      plural(count, 'file'))));
    await wasm();
    if (mine === job) {
      startReader();
    }
  } catch (error) {
    if (mine === job) {
      heard.failed({ text: error.message });
    }
  }
}

/// @param what {paths} or {folder}.
function report(title, what) {
  job.report = { title, what };
  ask('report', what);
}

const triage = () => ask('triage', { paths: job.paths }, job.triage?.until);

// What was shown before, made anew when it is with names and is to be without, or the other way round.
const sessionsAgain = () => job.triage.redact === job.redact ? showPage('triage') : triage();
const reportAgain = () => job.report.redact === job.redact ? showPage('report') : report(job.report.title, job.report.what);

const reportOfAll = () => report(job.paths.length === 1 ? job.paths[0] : job.taken, { paths: job.paths });

// A report that cannot be made leaves the page of sessions, from which it was asked for.
async function fail(text) {
  if (job.asked?.task === 'report' && job.triage) {
    startReader();
    await showPage('triage');
    showFailure(text);
  } else {
    endReader();
    show('empty');
    showFailure(text);
    showNotes();
    $('notes').open = true;
  }
}

const tooLittleMemory = 'There is not enough memory for these logs in this browser.';
const nothing = ({ messages, stopped }) =>
  stopped ? 'Stopped before anything was read whole.'
    : messages.some(text => text.includes('memory')) ? tooLittleMemory
    : 'No logs of CanvixSentiq found.';

const heard = {
  progress({ doing, done, total, entries }) {
    job.reached = { doing, done, entries };
    working(job.stopping ? `${doing} again` : doing, total ? done / total : undefined,
      total ? `${size(done)} of ${size(total)}` : size(done));
  },
  left({ path, why }) {
    job.left.push({ path, why });
  },
  taken({ files, bytes, folders, tops }) {
    job.taken = `${plural(files, 'file')}, ${size(bytes)}`;
    job.paths = [...new Set(job.files.map(({ path }) => path.split('/')[0]))].filter(path => tops.includes(path));
    if (job.asked) {
      ask(job.asked.task, job.asked.what, job.asked.until);
      return;
    }
    job.stopping = false;
    if (job.triage) {
      return;
    }
    if (files === 0) {
      fail(nothing({ messages: [], stopped: job.entries !== undefined }));
    } else {
      (folders > 1 ? triage : reportOfAll)();
    }
  },
  async page({ page, number, messages, unread, stopped }) {
    const mine = job;
    const { asked, worker } = job;
    const sessions = page && asked?.task === 'triage' ? ((await page.text()).match(/<tr data-session=/g) ?? []).length : 0;
    if (mine !== job || worker !== job.worker || number !== job.asked?.number) {
      return; // Something else was asked for since then.
    }
    const { task, until, redact } = asked;
    job.told = { messages, unread, stopped: stopped || job.entries !== undefined };
    job.stopping = false;
    if (!page) {
      fail(nothing(job.told));
      return;
    }
    if (sessions === 1 && !job.told.stopped) {
      reportOfAll();
      return;
    }
    job[task] = { ...job[task], page, until, redact, told: job.told };
    if (task === 'report' && job.triage && !(history.state && history.state.report)) {
      history.pushState({ report: true }, '');
    }
    showPage(task);
  },
  failed({ text }) {
    fail(/memory/i.test(text) ? tooLittleMemory : `The reader failed: ${text}`);
  },
};

function startAgain() {
  end();
  removeFrame();
  show('empty');
  $('chooseFiles').focus();
}

takeDrops(window);
$('chooseFiles').onclick = () => $('files').click();
$('chooseFolder').onclick = () => $('folder').click();
$('files').onchange = () => takeChosen($('files'));
$('folder').onchange = () => takeChosen($('folder'));
$('stop').onclick = stop;
$('again').onclick = startAgain;
$('back').onclick = sessionsAgain;
addEventListener('popstate', ({ state }) => {
  if (job && job.triage) {
    (state && state.report && job.report ? reportAgain : sessionsAgain)();
  }
});
$('save').onclick = () => {
  const link = document.createElement('a');
  link.href = URL.createObjectURL(job[job.shown].page);
  link.download = `${titleOf(job.shown).replace(/[\\/:*?"<>|]+/g, '-')}.html`;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 60000);
};
$('print').onclick = () => document.querySelector('iframe').contentWindow.print();
$('redact').onchange = () => {
  job.redact = $('redact').checked;
  job.entered = $('redact');
  (job.shown === 'report' ? reportAgain : sessionsAgain)();
};
