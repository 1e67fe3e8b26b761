// The reader in its worker: started, asked, stopped. At work it hears nothing. A stop therefore ends it, and another one
// does the same again as far as the first had come, which takes no longer than it had taken until then.

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

function endReader() {
  if (job.worker) {
    job.worker.terminate();
    URL.revokeObjectURL(job.url);
  }
}

function startReader() {
  endReader();
  removeFrame();
  job.url = URL.createObjectURL(new Blob([$('worker').textContent], { type: 'text/javascript' }));
  const mine = job.worker = new Worker(job.url);
  const isMine = () => job && job.worker === mine;
  mine.onmessage = ({ data }) => isMine() && heard[data.what](data);
  mine.onerror = event => isMine() && heard.failed({ text: event.message || 'the reader does not start' });
  job.left = [];
  job.reached = null;
  mine.postMessage({ task: 'take', module: moduleBytes, files: job.files, entries: job.entries });
}

// @param until where a stop came, in bytes.
function ask(task, what, until) {
  job.asked = { task, what, until, redact: job.redact, number: ++job.questions };
  job.reached = null;
  show('working');
  working('Reading', 0, '');
  sayWhetherStopping();
  const { redact, number } = job.asked;
  job.worker.postMessage({ task, number, options: [redact ? '--redact' : '--names'], until, ...what });
}

function sayWhetherStopping() {
  $('said').textContent = job.stopping ? 'Stopping: what was read until now is about to be shown.' : '';
}

function stop() {
  const reached = job.reached;
  if (!reached || job.stopping) {
    startAgain();
    $('said').textContent = 'Stopped.';
    return;
  }
  job.stopping = true;
  sayWhetherStopping();
  if (reached.doing === 'Unpacking') {
    job.entries = reached.entries;
    startReader();
  } else if (job.asked) {
    job.asked.until = reached.done;
    startReader();
  } // Else it is about to be shown.
}
