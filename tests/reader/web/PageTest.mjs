// What sentiq-logs.html does with what is dropped on it, in Chromium, compared with the program:
//   node --test PageTest.mjs, with SENTIQ_PAGE, SENTIQ_LOGS and, to keep pictures, SENTIQ_PICTURES (a folder)
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { cpSync, mkdirSync, mkdtempSync, readFileSync, rmSync, truncateSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, afterEach, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { Tab } from './Browser.mjs';

const { SENTIQ_PAGE, SENTIQ_LOGS, SENTIQ_PICTURES } = process.env;
const data = fileURLToPath(new URL('../data/', import.meta.url));
const names = ['CanvixSentiqSession.log', 'CanvixWatchdogInfoSession.log', 'CanvixWatchdogInfoInitialSession.log'];

const folder = mkdtempSync(join(tmpdir(), 'sentiq-page-'));
after(() => rmSync(folder, { recursive: true }));
const at = path => join(folder, path);
const zip = (...options) => execFileSync('zip', ['-q', ...options], { cwd: folder });
cpSync(join(data, 'laptop'), at('loose'), { recursive: true });
cpSync(join(data, 'laptop'), at('week/LAPTOP-31'), { recursive: true });
cpSync(join(data, 'encoded'), at('week/tuesday/late'), { recursive: true });
writeFileSync(at('week/notes.md'), 'nothing of ours\n');
writeFileSync(at('letter.txt'), 'Dear support,\nit crashed.\n');
mkdirSync(at('unzipped'));
cpSync(at('week'), at('unzipped/week.zip'), { recursive: true });
execFileSync('zip', ['-q', '-r', '../week.zip', '.'], { cwd: at('week') });
zip('-r', 'nested.zip', 'week.zip');
zip('-r', '-P', 'secret', 'locked.zip', 'loose');

let tab;
afterEach(async () => {
  await tab.close();
  assert.deepEqual(tab.requests.filter(url => !/^(blob|about|file|data):/.test(url)), []);
  assert.deepEqual(tab.errors, []);
});
const open = async settings => { tab = await Tab.open(SENTIQ_PAGE, settings); };
const picture = name => SENTIQ_PICTURES && tab.page.screenshot({ path: join(SENTIQ_PICTURES, `${name}.png`) });

// The page that the program writes at the time that the saved one says.
function native(cwd, [command, output], asked, saved) {
  const [, day, time, offset] = /Made on (\S+) (\S+) ([+-]\d\d:\d\d) by/.exec(saved);
  const made = `${day}T${time}:00${offset}`;
  execFileSync(SENTIQ_LOGS, [command, ...asked, output, at('native.html'), '--made', made], { cwd: at(cwd), stdio: 'ignore' });
  return readFileSync(at('native.html'));
}
async function assertSavedLike(command, cwd, asked) {
  const { bytes } = await tab.saved();
  assert.ok(bytes.equals(native(cwd, command, asked, bytes.toString())), 'the saved page is not the one that the program writes');
}
const assertSavedLikeReport = (cwd, ...asked) => assertSavedLike(['report', '-o'], cwd, asked);
const assertSavedLikeTriage = (cwd, ...asked) => assertSavedLike(['triage', '--html'], cwd, asked);
const sessionIn = folder => tab.frame().locator(`tr[data-folder="${folder}"]`).getByRole('link');

const withoutNames = async () => {
  await tab.page.getByLabel('Without names').check();
  await tab.settled();
};

test('three logs are shown as the report that the program writes', async () => {
  await open();
  assert.match(await tab.text('.promise'), /cannot connect to anything/);
  assert.deepEqual(await tab.faults(), []);
  await picture('empty');
  await tab.drag('dragEnter', [at('loose')]);
  await picture('over');
  assert.equal(await tab.drop(...names.map(name => at(`loose/${name}`))), 'shown');
  assert.match(await tab.frame().locator('h1').innerText(), /^Canvix crashed at 2026-11-24 14:30:22\.157/);
  assert.match(await tab.page.title(), /^Canvix crashed/);
  assert.deepEqual(await tab.faults(), []);
  await picture('report');
  await tab.frame().getByText('show the event').first().click();
  assert.ok(await tab.frame().locator('tr', { hasText: 'PaintCore.dll' }).first().isVisible());
  await assertSavedLikeReport('loose', ...names);
  await withoutNames();
  assert.equal(await tab.page.evaluate(() => document.activeElement.id), 'redact');
  await assertSavedLikeReport('loose', '--redact', ...names);
});

test('a folder of sessions is shown as the page of triage, from which each report is one step away and back', async () => {
  await open();
  assert.equal(await tab.drop(at('week')), 'sessions');
  assert.deepEqual(await tab.faults(), []);
  assert.match(await tab.text('#notes'), /1 file left out/);
  await picture('many');
  await assertSavedLikeTriage('.', 'week');
  await sessionIn('week/LAPTOP-31').click();
  assert.equal(await tab.settled(), 'shown');
  await assertSavedLikeReport('.', 'week/LAPTOP-31');
  await tab.page.goBack({ waitUntil: 'commit' });
  await sessionIn('week/tuesday/late').click();
  assert.equal(await tab.settled(), 'shown');
  await withoutNames();
  await tab.page.click('#back');
  assert.equal(await tab.settled(), 'sessions');
  await assertSavedLikeTriage('.', '--redact', 'week');
  await sessionIn('week/computer-1').click();
  assert.equal(await tab.settled(), 'shown');
  assert.equal(await tab.text('#about'), 'Report without names');
  await assertSavedLikeReport('.', '--redact', 'week/LAPTOP-31');
});

test('a zip file is read as the folder that it would become, also within another one', async () => {
  await open();
  assert.equal(await tab.drop(at('week.zip')), 'sessions');
  await sessionIn('week.zip/LAPTOP-31').click();
  assert.equal(await tab.settled(), 'shown');
  await assertSavedLikeReport('unzipped', 'week.zip/LAPTOP-31');
  assert.equal(await tab.drop(at('nested.zip')), 'sessions');
  assert.ok(await sessionIn('nested.zip/week.zip/LAPTOP-31').isVisible());
});

test('what is damaged or no log is said, and the rest is shown', async () => {
  await open();
  const whole = readFileSync(at('week.zip'));
  writeFileSync(at('damaged.zip'), Buffer.from(whole).fill(0x55, 2000, 2200));
  cpSync(at('week.zip'), at('cut.zip'));
  truncateSync(at('cut.zip'), whole.length / 2);
  assert.equal(await tab.drop(at('damaged.zip')), 'sessions');
  assert.match(await tab.page.locator('#notes').textContent(), /damaged\.zip\/.*: damaged/);
  for (const [file, expected] of [['cut.zip', /cut\.zip: no whole zip file/], ['locked.zip', /protected by a password/],
    ['letter.txt', /letter\.txt: no log of CanvixSentiq/]]) {
    assert.equal(await tab.drop(at(file)), 'empty', file);
    assert.match(await tab.text('#failed'), /^No logs/);
    assert.match(await tab.page.locator('#notes').textContent(), expected);
  }
  assert.deepEqual(await tab.faults(), []);
  await picture('error');
  assert.equal(await tab.drop(at('letter.txt'), ...names.map(name => at(`loose/${name}`))), 'shown');
  assert.match(await tab.page.locator('#notes').textContent(), /letter\.txt: no log of CanvixSentiq/);
});

test('a zip file that unpacks to too much is not unpacked', async () => {
  writeFileSync(at('bomb.log'), Buffer.alloc(64 << 20));
  zip('bomb.zip', 'bomb.log');
  await open();
  assert.equal(await tab.drop(at('bomb.zip')), 'empty');
  assert.match(await tab.page.locator('#notes').textContent(), /bomb\.log: unpacks to more than is taken/);
});

test('the keyboard alone chooses, stops, saves and starts again', async () => {
  await open({ colorScheme: 'dark', viewport: { width: 360, height: 700 } });
  const keys = tab.page.keyboard;
  const focused = () => tab.page.evaluate(() => document.activeElement.textContent || document.activeElement.tagName);
  const tabTo = async (name, key = 'Tab') => {
    for (let i = 0; i < 30 && await focused() !== name; i++) {
      await keys.press(key);
    }
    assert.equal(await focused(), name);
  };
  await tabTo('Choose files');
  await picture('narrow-dark');
  const [chooser] = await Promise.all([tab.page.waitForEvent('filechooser'), keys.press('Enter')]);
  await chooser.setFiles(names.map(name => at(`loose/${name}`)));
  assert.equal(await tab.settled(), 'shown');
  await picture('report-narrow-dark');
  assert.deepEqual(await tab.faults(), []);
  assert.equal(await focused(), 'IFRAME');
  await tabTo('Other logs', 'Shift+Tab');
  await keys.press('Enter');
  assert.equal(await focused(), 'Choose files');
  await tabTo('Choose a folder');
  const [folderChooser] = await Promise.all([tab.page.waitForEvent('filechooser'), keys.press('Enter')]);
  await folderChooser.setFiles(at('week'));
  assert.equal(await tab.settled(), 'sessions');
  await picture('many-narrow-dark');
  await tabTo('Other logs');
});

test('the page of triage sorts and opens its groups, wide and narrow', async () => {
  cpSync(at('week'), at('groups'), { recursive: true });
  mkdirSync(at('groups/cut'));
  const [, ...lines] = readFileSync(at(`loose/${names[0]}`), 'utf8').split('\n');
  writeFileSync(at('groups/cut/a.log'), ['OrbelSessionID: other', ...lines.slice(0, 20), ''].join('\n'));
  execFileSync(SENTIQ_LOGS, ['triage', 'groups', '--html', 'triage.html'], { cwd: folder });
  tab = await Tab.open(at('triage.html'));
  const groups = tab.page.locator('.groups > tbody > tr');
  assert.match(await groups.last().innerText(), /unknown$/);
  await tab.page.getByRole('button', { name: 'Sessions' }).click();
  assert.match(await groups.first().innerText(), /unknown$/);
  assert.equal(await tab.page.locator('.groups > thead th').first().getAttribute('aria-sort'), 'ascending');
  await groups.first().locator('summary').click();
  assert.ok(await tab.page.locator('[data-folder="groups/cut"]').isVisible());
  for (const [width, colorScheme] of [[1280, 'light'], [320, 'dark']]) {
    await tab.page.setViewportSize({ width, height: 700 });
    await tab.page.emulateMedia({ colorScheme });
    assert.ok(await tab.page.evaluate(() => document.documentElement.scrollWidth <= innerWidth));
    assert.deepEqual(await tab.faults(), []);
    await picture(`triage-${colorScheme}`);
  }
});

test('a stop shows what was read until then, a second one nothing', async () => {
  cpSync(at('week'), at('year'), { recursive: true });
  mkdirSync(at('year/z'));
  const large = readFileSync(at(`loose/${names[1]}`)).toString().repeat(2000);
  ['large.log', 'year/z/large.log', 'year/z/next.log'].forEach(name => writeFileSync(at(name), large));
  zip('-1', '-r', 'year.zip', 'year');
  const dropUntil = async (name, doing) => {
    for (const type of ['dragEnter', 'dragOver', 'drop']) {
      await tab.drag(type, [at(name)]);
    }
    await tab.page.waitForFunction(text => document.getElementById('doing').textContent === text &&
      (text !== 'Reading' || document.getElementById('progress').value > 0.01), doing);
  };
  const stopAt = async (name, doing) => {
    await dropUntil(name, doing);
    await tab.page.click('#stop');
    return tab.settled();
  };
  await open();
  assert.equal(await stopAt('large.log', 'Reading'), 'shown');
  assert.match(await tab.text('#notes'), /^Stopped: .*\nlarge\.log: not read to its end: stopped$/);
  assert.match(await tab.frame().locator('h1').innerText(), /^Canvix crashed/);
  assert.equal((await tab.saved()).name, 'large.log (in part).html');
  assert.deepEqual(await tab.faults(), []);
  assert.equal(await stopAt('year', 'Reading'), 'sessions');
  assert.equal(await tab.frame().locator('tr[data-session]').count(), 2);
  assert.match(await tab.frame().locator('ul.note').innerText(), /stopped: 2 of 3 folders were read/);
  assert.match(await tab.text('#notes'), /large.log: not read: stopped\n.*next.log: not read/);
  await stopAt('year.zip', 'Unpacking');
  assert.match(await tab.text('#notes'), /year\.zip: not unpacked to its end: stopped/);
  await dropUntil('year', 'Reading');
  await picture('working');
  assert.deepEqual(await tab.faults(), []);
  await tab.page.dblclick('#stop');
  assert.equal(await tab.settled(), 'empty');
  assert.equal(await tab.text('#said'), 'Stopped.');
});

test('from a server nothing but the page itself is asked for', async () => {
  const asked = [];
  const server = createServer((request, response) => {
    asked.push(request.url);
    response.setHeader('Content-Type', 'text/html').end(readFileSync(SENTIQ_PAGE));
  });
  await new Promise(listening => server.listen(0, listening));
  try {
    tab = await Tab.open(`http://localhost:${server.address().port}/sentiq-logs.html`);
    tab.requests.length = 0;
    assert.equal(await tab.drop(at('week')), 'sessions');
    assert.deepEqual(asked, ['/sentiq-logs.html']);
  } finally {
    server.closeAllConnections();
    server.close();
  }
});
