// Puts the page together: node BuildPage.mjs OUTPUT GLUE WASM ZIP-LIBRARY HASH...
// The hashes are those of the styles and scripts of the reader's own pages, which this page shows in a frame.
import { createHash } from 'node:crypto';
import { readFileSync, writeFileSync } from 'node:fs';
import { deflateSync } from 'node:zlib';

const [output, glue, wasm, zip, ...shown] = process.argv.slice(2);
const here = new URL('.', import.meta.url);
const own = (...names) => names.map(name => readFileSync(new URL(name, here), 'utf8').replaceAll('\r', '')).join('\n');
const hash = text => `'sha256-${createHash('sha256').update(text).digest('base64')}'`;

const pieces = {
  'Page.css': own('Page.css'),
  'Page.js': `'use strict';\n${own('Showing.js', 'Taking.js', 'Reader.js', 'Page.js')}`,
  worker: [readFileSync(zip, 'utf8'), readFileSync(glue, 'utf8'), own('Files.js', 'Unpacking.js', 'Worker.js')].join('\n'),
  module: deflateSync(readFileSync(wasm), { level: 9 }).toString('base64'),
};
for (const [name, text] of Object.entries(pieces)) {
  if (/<\/script|<!--|<script/i.test(text)) {
    throw new Error(`${name} holds what would end or confuse a script element`);
  }
}
const shownHashes = shown.map(hex => `'sha256-${Buffer.from(hex, 'hex').toString('base64')}'`);
pieces.scripts = [hash(pieces['Page.js']), ...shownHashes].join(' ');
pieces.styles = [hash(pieces['Page.css']), ...shownHashes].join(' ');
writeFileSync(output, own('Page.html').replace(/{{(.*?)}}/g, (all, name) => pieces[name]));
