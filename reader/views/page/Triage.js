'use strict';
// Without this the page is whole, its groups in the order in which they were written: the most frequent first.
document.addEventListener('DOMContentLoaded', () => {
  const table = document.querySelector('.groups');
  const body = table.tBodies[0];
  const rows = [...body.rows];
  const heads = [...table.tHead.rows[0].cells];
  const order = new Intl.Collator('en', { numeric: true });

  function sort(column, direction) {
    const key = row => (row.cells[column].querySelector('h2') ?? row.cells[column]).textContent;
    const sign = direction === 'ascending' ? 1 : -1;
    body.append(...rows.sort((a, b) => sign * order.compare(key(a), key(b))));
    mark(column, direction);
  }

  function mark(column, direction) {
    heads.forEach(head => head.removeAttribute('aria-sort'));
    heads[column].setAttribute('aria-sort', direction);
  }

  heads.forEach((head, column) => {
    const button = document.createElement('button');
    button.type = 'button';
    button.append(...head.childNodes);
    head.append(button);
    const first = head.className ? 'descending' : 'ascending'; // The largest and the latest, but words from A.
    button.addEventListener('click', () => {
      const now = head.getAttribute('aria-sort');
      sort(column, !now ? first : now === 'ascending' ? 'descending' : 'ascending');
    });
  });
  mark(0, 'descending');
});
