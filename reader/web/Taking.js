// What is dropped on the page, as files with their paths.

// What was dropped, asked for while the event lasts. Opened from a disk, Chromium gives what is in a folder only by its
// handle, which others do not have, and which it has only for pages that it trusts.
const droppedItems = event => [...event.dataTransfer.items].filter(item => item.kind === 'file').map(item => ({
  file: item.getAsFile(),
  entry: item.webkitGetAsEntry(),
  handle: item.getAsFileSystemHandle ? item.getAsFileSystemHandle() : null,
}));

async function* insideHandle(folder) {
  for await (const inner of folder.values()) {
    yield { name: inner.name, isFolder: inner.kind === 'directory', inside: () => insideHandle(inner),
      open: () => inner.getFile() };
  }
}

async function* insideEntry(folder) {
  const reader = folder.createReader();
  const next = () => new Promise((take, fail) => reader.readEntries(take, fail));
  for (let batch = await next(); batch.length > 0; batch = await next()) {
    for (const inner of batch) {
      yield { name: inner.name, isFolder: inner.isDirectory, inside: () => insideEntry(inner),
        open: () => new Promise((take, fail) => inner.file(take, fail)) };
    }
  }
}

// All files of what was dropped. What cannot be opened is left out and said.
async function filesOf(items, leave, found) {
  const files = [];
  async function walk(contents, path) {
    const opened = [];  // Side by side: most of the time goes by waiting.
    try {
      for await (const inner of contents) {
        const name = `${path}/${inner.name}`;
        opened.push(inner.isFolder ? walk(inner.inside(), name) :
          inner.open().then(file => found(files.push({ path: name, file })), error => leave(name, error.message)));
      }
    } catch (error) {
      leave(path, `cannot be read (${error.message}); "Choose a folder" may do it`);
    }
    await Promise.all(opened);
  }
  for (const { file, entry, handle } of items) {
    if (entry && entry.isDirectory) {
      const opened = await Promise.resolve(handle).catch(() => null);
      await walk(opened ? insideHandle(opened) : insideEntry(entry), entry.name);
    } else if (file) {
      found(files.push({ path: file.name, file }));
    }
  }
  return files;
}

// Files that were chosen one by one may have one name.
function withNamesOfTheirOwn(files) {
  const seen = new Map();
  return files.map(({ path, file }) => {
    const count = (seen.get(path) || 0) + 1;
    seen.set(path, count);
    return { path: count === 1 ? path : path.replace(/(\.[^./]*)?$/, ` (${count})$1`), file };
  });
}

function takeDrops(target) {
  let depth = 0;
  const over = change => {
    depth = change === 0 ? 0 : depth + change;
    document.body.classList.toggle('over', depth > 0);
  };
  const holdsFiles = event => event.dataTransfer && event.dataTransfer.types.includes('Files');
  target.addEventListener('dragenter', event => holdsFiles(event) && over(1));
  target.addEventListener('dragleave', event => holdsFiles(event) && over(-1));
  target.addEventListener('dragover', event => {
    if (holdsFiles(event)) {
      event.preventDefault();
      event.dataTransfer.dropEffect = 'copy';
    }
  });
  target.addEventListener('drop', event => {
    if (!holdsFiles(event)) {
      return;
    }
    event.preventDefault();
    over(0);
    const items = droppedItems(event);
    begin((leave, found) => filesOf(items, leave, found));
  });
}
