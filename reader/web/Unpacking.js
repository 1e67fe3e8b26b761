// Zip files, unpacked in memory, as far as that is sensible.

const limits = {
  files: 200000,  // That zip files hold.
  bytes: 1 << 30, // Of them all, unpacked.
  ratio: 200,     // Of an entry above `small`; logs shrink to a tenth or a thirtieth.
  small: 16 << 20,
  depth: 3,       // Zip files within zip files.
  path: 1000,     // Characters.
};
// As in a folder, what is named like a log is looked at.
const namedAsLog = /\.(log|txt|log\.\d+)$/i;
const namedAsZip = /\.zip$/i;

zip.configure({ useWebWorkers: false }); // This is one already.

// No name leads out of the folder that the zip file stands for.
const innerPath = name => name.split(/[\\/]/).filter(part => part !== '' && part !== '.' && part !== '..').join('/');

// Takes what is unpacked, until it is too much.
class Unpacked extends zip.Uint8ArrayWriter {
  constructor(entry, left) {
    super();
    this.left = Math.min(left, Math.max(limits.small, entry.compressedSize * limits.ratio));
  }
  init(size = 0) {
    super.init(Math.min(size, this.left)); // Not all that the zip file claims.
  }
  writeUint8Array(piece) {
    this.left -= piece.length;
    if (this.left < 0) {
      throw new Error('unpacks to more than is taken');
    }
    super.writeUint8Array(piece);
  }
}

const unpacking = { files: 0, bytes: 0, until: Infinity };

// @return why an entry is not taken, if so.
function whyNot(entry, path, depth) {
  const isZip = namedAsZip.test(path);
  return !isZip && !namedAsLog.test(path) ? 'not named like a log'
    : path.length > limits.path ? 'too deep in folders'
    : entry.encrypted ? 'protected by a password: unpack it first'
    : isZip && depth >= limits.depth ? `a zip file ${depth} deep in others`
    : '';
}

async function takeEntry(entry, path, depth) {
  const bytes = await entry.getData(new Unpacked(entry, limits.bytes - unpacking.bytes), { checkSignature: true });
  unpacking.bytes += bytes.length;
  progress('Unpacking', unpacking.bytes, 0, unpacking.files);
  if (namedAsZip.test(path)) {
    await unpack(path, bytes, depth + 1);
  } else {
    logs.push({ path, file: bytes });
  }
}

const limitOr = (error, otherwise) => /more than/.test(error.message) ? error.message : `${otherwise} (${error.message})`;

/// Adds what a zip file holds to the logs, as if it were a folder. @param depth 1 for one that lies in no other.
async function unpack(path, file, depth) {
  const reader = new zip.ZipReader(file instanceof Blob ? new zip.BlobReader(file) : new zip.Uint8ArrayReader(file));
  const found = new Set();
  try {
    for await (const entry of reader.getEntriesGenerator()) {
      if (unpacking.files >= unpacking.until) {
        leave(path, 'not unpacked to its end: stopped');
        return;
      }
      if (++unpacking.files > limits.files) {
        throw new Error(`more than ${limits.files} files in zip files`);
      }
      const inner = `${path}/${innerPath(entry.filename)}`;
      if (entry.directory) {
        continue;
      }
      const why = found.has(inner) ? 'there is another one of this name' : whyNot(entry, inner, depth);
      found.add(inner);
      if (why) {
        leave(inner, why);
      } else {
        await takeEntry(entry, inner, depth).catch(error => leave(inner, limitOr(error, 'damaged')));
      }
    }
    if (found.size === 0) {
      leave(path, 'an empty zip file');
    }
  } catch (error) {
    leave(path, limitOr(error, 'no whole zip file'));
  } finally {
    await reader.close();
  }
}
