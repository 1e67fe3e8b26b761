// Runs the reader beside the page. Each command has an instance of its own, so that its memory is given back.

let compiled;
let logs = []; // {path, file}; what was unpacked has its bytes in place of a File.
let told = 0;  // When the page last heard of the progress.

const say = (what, more) => postMessage({ what, ...more });
const leave = (path, why) => say('left', { path, why });

// @param entries of zip files, so far.
function progress(doing, done, total, entries) {
  const now = performance.now();
  if (now - told > 100) {
    told = now;
    say('progress', { doing, done, total, entries });
  }
}

async function run(command, paths, { options, until }) {
  const messages = [];
  const instance = await sentiqLogs({
    instantiateWasm(imports, done) {
      WebAssembly.instantiate(compiled, imports).then(made => done(made, compiled));
      return {};
    },
    printErr: line => messages.push(line.replace(/^sentiq-logs: /, '')),
  });
  const { FS } = instance;
  const files = FS.filesystems.WORKERFS;
  const blobs = contentsOf(logs.filter(log => paths.some(path => log.path === path || log.path.startsWith(`${path}/`))));
  const reading = readInWindows(files, blobs.reduce((sum, { data }) => sum + data.size, 0), until,
    () => instance._stopReading());
  FS.mkdir('/in');
  FS.mount(files, { blobs }, '/in');
  FS.chdir('/in');
  const page = collectIn(FS, '/page.html');
  instance.callMain([command, ...options, ...paths]);
  const cause = reading.stopped ? 'stopped' : messages.some(text => text.includes('memory')) ? 'not enough memory' : '';
  const unread = blobs.flatMap(({ name, data }) => {
    const why = cause && command === 'report' && name === reading.last ? `not read to its end: ${cause}`
      // Of a folder that was read half a list shows nothing.
      : cause && namedAsLog.test(name) && (!data.until || (command === 'triage' && folderOf(name) === folderOf(reading.last)))
        ? `not read: ${cause}`
      : data.size > 0 && !data.until ? 'not named like a log' : '';
    return why ? [{ path: name, why }] : [];
  });
  const written = page();
  return { page: written.size > 0 ? written : null, messages, unread, stopped: reading.stopped };
}

const folderOf = path => path.slice(0, Math.max(0, path.lastIndexOf('/')));

// A folder's own logs: the folder itself, unless there are others below it.
function pathsOf(folder) {
  const isBelow = log => log.path.startsWith(`${folder}/`) && folderOf(log.path) !== folder;
  return folder && !logs.some(isBelow) ? [folder] : logs.filter(log => folderOf(log.path) === folder).map(log => log.path);
}

// Of zip files as many entries as are given.
async function take({ module, files, entries = Infinity }) {
  unpacking.until = entries;
  compiled = await WebAssembly.compile(module);
  for (const log of files) {
    if (namedAsZip.test(log.path)) {
      await unpack(log.path, log.file, 1);
    } else {
      logs.push(log);
    }
  }
  // In the order in which the reader comes to them: a folder's own files first.
  const sorted = logs.map(log => ({ ...log, key: `${folderOf(log.path)}\0${log.path}` }));
  logs = sorted.sort((a, b) => (a.key < b.key ? -1 : 1));
  say('taken', { files: logs.length, bytes: logs.reduce((sum, log) => sum + (log.file.size ?? log.file.length), 0),
    tops: [...new Set(logs.map(log => log.path.split('/')[0]))],
    folders: new Set(logs.map(log => folderOf(log.path))).size });
}

// Of some paths, or of one folder.
async function read({ task, paths, folder, number, ...more }) {
  say('page', { number, ...await run(task, paths ?? pathsOf(folder), more) });
}

async function work(data) {
  try {
    await (data.task === 'take' ? take : read)(data);
  } catch (error) {
    say('failed', { text: error.message || String(error) });
  }
}

let busy = Promise.resolve(); // One task after the other.
onmessage = ({ data }) => { busy = busy.then(() => work(data)); };
