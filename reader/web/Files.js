// The file system that the reader sees: what was dropped, and the page that it writes.

// A call for each small piece, or for each small file, would cost more than the reader itself: what is read is read in
// windows of this size, and small files are put together to fill one.
const windowSize = 4 << 20;

// The logs as the file system has them: their bytes, or where they stand in a blob.
function contentsOf(taken) {
  let batch = [], at = 0;
  const close = () => {
    const blob = new Blob(batch.map(contents => contents.file));
    batch.forEach(contents => { contents.blob = blob; });
    batch = [];
    at = 0;
  };
  const blobs = taken.map(({ path, file }) => {
    if (file instanceof Uint8Array) {
      return { name: path, data: { path, size: file.length, bytes: file } };
    }
    if (at + file.size > windowSize) {
      close();
    }
    const data = { path, size: file.size, file, at };
    batch.push(data);
    at += file.size;
    return { name: path, data };
  });
  close();
  return blobs;
}

// @param until how many bytes it reads at least before it calls stop. @return what was read last, and whether it stopped.
function readInWindows(files, total, until = Infinity, stop) {
  const sync = new FileReaderSync();
  const reading = { last: '', stopped: false };
  let read = 0, blob = null, from = 0, bytes = null;
  function bytesAt(contents, position) {
    if (contents.bytes) {
      return contents.bytes.subarray(position);
    }
    const at = contents.at + position;
    if (contents.blob !== blob || at < from || at >= from + bytes.length) {
      blob = contents.blob;
      from = at - at % windowSize;
      bytes = new Uint8Array(sync.readAsArrayBuffer(blob.slice(from, from + windowSize)));
    }
    return bytes.subarray(at - from);
  }
  files.stream_ops.read = (stream, buffer, offset, length, position) => {
    const contents = stream.node.contents;
    if (position >= contents.size) { // Not worth the next window.
      return 0;
    }
    const piece = bytesAt(contents, position).subarray(0, Math.min(length, contents.size - position));
    if (read >= until && !reading.stopped) {
      reading.stopped = true;
      stop();
    }
    reading.last = contents.path;
    buffer.set(piece, offset);
    contents.until = Math.max(contents.until || 0, position + piece.length);
    read += piece.length;
    const end = Math.min(until, total);
    progress('Reading', Math.min(read, end), end);
    return piece.length;
  };
  return reading;
}

// A file that is only written, in pieces that a blob is made of: in the file system's own memory it would be moved over
// and over as it grows.
function collectIn(FS, path) {
  const pieces = [];
  let piece = new Uint8Array(1 << 20), used = 0;
  const device = FS.makedev(64, 0);
  FS.registerDevice(device, {
    write(stream, buffer, offset, length) {
      if (used + length > piece.length) {
        pieces.push(piece.subarray(0, used));
        piece = new Uint8Array(Math.max(length, piece.length));
        used = 0;
      }
      piece.set(buffer.subarray(offset, offset + length), used);
      used += length;
      progress('Writing the page', pieces.length * piece.length + used, 0);
      return length;
    },
  });
  FS.mkdev(path, 0o666, device);
  return () => new Blob([...pieces, piece.subarray(0, used)], { type: 'text/html' });
}
