'use strict';
// Walks through the page as somebody who looks for answers, each in at most two steps, and writes what does not hold
// into the title. Added to a copy of the page; ends before the page counts as loaded.
addEventListener('load', () => {
  const all = (what, inside = document) => [...inside.querySelectorAll(what)];
  const one = (what, inside = document) => inside.querySelector(what);
  const text = what => one(what).textContent;
  const rows = () => all('.entries tbody tr[id]');
  const status = () => text('[role=status]');
  const failed = [];
  const expect = (question, holds) => { if (!holds) failed.push(question); };
  const search = (words, key) => {
    const field = one('.entries input');
    field.value = words;
    field.dispatchEvent(new Event('input'));
    if (key) field.dispatchEvent(new KeyboardEvent('keydown', { key }));
  };
  const step = what => (typeof what === 'string' ? one(what) : what).click();

  expect('why: the first heading', one('h1, h2').textContent.startsWith('Canvix crashed at 2026-11-24 14:30:22.157'));
  expect('the tab says it, too', document.title === text('h1'));
  expect('which machine', text('.who').includes('LAPTOP-31') && text('.who').includes('29.5.0.137'));
  step('.outcome a');
  const told = one(location.hash);
  expect('from the verdict to the row, opened', told?.querySelector('details').open);
  told.querySelector('details').dispatchEvent(new Event('toggle'));
  expect('the fields of its event', told.textContent.includes('0x4d21f7') && /record id \d/.test(told.textContent));
  expect('copy one event', one('.copy', told) !== null);
  search('reconnected pen');
  expect('a word in the fields', rows().length === 1 && status().startsWith('3 of 41'));
  search('stopped responding and was closed');
  expect('hits among the older ones are told', /^0 of \d+ entries; the older ones hold 1\b/.test(status()));
  search('stopped responding and was closed', 'Enter');
  search('stopped responding and was closed', 'Enter');
  expect('a second Enter undoes nothing', rows().length === 1);
  search('');
  one('.entries select').value = '3';
  one('.entries select').dispatchEvent(new Event('input'));
  expect('only errors', rows().length > 0 && rows().every(row => row.classList.contains('error')));
  step(all('.strip a').find(link => link.textContent === '14:30:02'));
  expect('a link wins over the filter', one(location.hash)?.querySelector('details').open);
  step('.order');
  expect('oldest first, in both', text('.strip li').includes('Canvix ran') && rows()[0].textContent < rows().at(-1).textContent);
  step('[value=five]');
  expect('the last five minutes', one('.range.five').offsetParent && !one('.range.all').offsetParent);
  one('.moment input').value = 0;
  one('.moment input').dispatchEvent(new Event('focus'));
  expect('the value at a time', text('.range.five output').startsWith('123.') && text('.range.five output').includes('14:25:2'));
  expect('low on anything', all('.range.five figcaption').every(part => part.textContent.includes('low')));
  const logs = all('.logs details').at(-1);
  logs.open = true;
  logs.dispatchEvent(new Event('toggle'));
  expect('the log itself', one('pre', logs)?.textContent.includes('OrbelSessionID'));
  document.title = failed.length ? 'FAILED: ' + failed.join('; ') : 'all found';
});
