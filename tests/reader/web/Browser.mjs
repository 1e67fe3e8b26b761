// sentiq-logs.html in a browser, as its user has it: what is dropped, chosen, pressed; what is shown and saved.
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { pathToFileURL } from 'node:url';

const library = createRequire(new URL('../../../build/deps/web/', import.meta.url));
const { chromium } = library('playwright-core');
const axe = readFileSync(library.resolve('axe-core/axe.min.js'), 'utf8');

/// One tab with the page, opened from where it lies.
export class Tab {
  static async open(file, settings = {}) {
    const tab = new Tab();
    tab.browser = await chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox'] });
    tab.page = await tab.browser.newPage({ acceptDownloads: true, viewport: { width: 1280, height: 850 }, ...settings });
    tab.requests = [];
    tab.errors = [];
    tab.page.on('request', request => tab.requests.push(request.url()));
    tab.page.on('filechooser', () => {}); // From the beginning, so that none opens as a window.
    tab.page.on('pageerror', error => tab.errors.push(error.message));
    tab.page.on('console', message => message.type() === 'error' && tab.errors.push(message.text()));
    tab.devtools = await tab.page.context().newCDPSession(tab.page);
    await tab.page.goto(file.includes('://') ? file : pathToFileURL(file).href);
    return tab;
  }

  close() {
    return this.browser.close();
  }

  async drag(type, files) {
    await this.devtools.send('Input.dispatchDragEvent', { type, x: 600, y: 300, data: { items: [], files, dragOperationsMask: 1 } });
  }

  async drop(...files) {
    for (const type of ['dragEnter', 'dragOver', 'drop']) {
      await this.drag(type, files);
    }
    return this.settled();
  }

  /// Waits until the work is done. @return what is shown: 'empty', 'shown' (a report) or 'sessions' (the page of triage).
  async settled() {
    await this.page.waitForFunction(() => document.body.className !== 'working', null, { timeout: 120000 });
    const state = await this.page.evaluate(() => document.body.className);
    if (state !== 'empty') {
      await this.page.waitForFunction(() => document.title !== 'CanvixSentiq logs');
    }
    return state;
  }

  frame() {
    return this.page.frameLocator('iframe');
  }

  text(selector) {
    return this.page.locator(selector).innerText();
  }

  async saved() {
    const [download] = await Promise.all([this.page.waitForEvent('download'), this.page.click('#save')]);
    return { name: download.suggestedFilename(), bytes: readFileSync(await download.path()) };
  }

  /// What axe finds in the page and in the report within it.
  async faults() {
    const found = [];
    for (const frame of this.page.frames()) {
      await frame.evaluate(axe);
      const { violations } = await frame.evaluate(() => axe.run(document, { iframes: false }));
      found.push(...violations.map(({ id, nodes }) => `${id}: ${nodes.map(node => node.html).join(' ')}`));
    }
    return found;
  }
}
