'use strict';
// The entries of a session.

const firstRows = 100;
const moreRows = 1000;

// What a piece of HTML says, without its elements.
function plain(html) {
  const signs = { amp: '&', lt: '<', gt: '>', quot: '"', '#39': "'" };
  return html.replace(/<[^>]*>/g, ' ').replace(/&(\w+|#39);/g, (all, name) => signs[name]);
}

// The entries: search, severity, those from before the session, order, rows that open.
class Entries {
  constructor(box) {
    this.box = box;
    this.limit = firstRows;
    this.older = false;
    this.unfolded = new Set();
    [this.field, this.severity] = box.querySelectorAll('input, select');
    this.olderButton = box.querySelector('button.older');
    this.body = box.querySelector('tbody');
    const [during, before = ''] = box.querySelector('noscript').textContent.split('<tbody class="older">');
    this.rows = [...this.read(during, false), ...this.read(before, true)];
    this.olderCount = this.rows.filter(row => row.older).length;
    this.listen();
    this.show();
  }

  listen() {
    this.field.addEventListener('input', () => this.show(firstRows));
    this.severity.addEventListener('input', () => this.show(firstRows));
    this.field.addEventListener('keydown', event => {
      if (event.key === 'Enter') {
        this.older = true;
        this.show();
      }
    });
    this.olderButton.addEventListener('click', () => {
      this.older = !this.older;
      this.show();
    });
    this.box.querySelector('.rest button').addEventListener('click', () => this.show(this.limit + moreRows));
    this.body.addEventListener('click', event => {
      const fold = event.target.closest('button.fold');
      if (fold) {
        this.unfolded.add(this.kindOf(this.rowOf(fold)));
        this.show();
      } else if (event.target.closest('button.copy')) {
        this.copy(event.target.closest('tr'));
      }
    });
    this.body.addEventListener('keydown', event => {
      if (event.key === 'c' && !event.ctrlKey && !event.metaKey && event.target.matches('summary')) {
        this.copy(event.target.closest('tr'));
      }
    });
    this.body.addEventListener('toggle', event => this.fill(event.target), true);
    this.box.querySelectorAll('.controls, table').forEach(part => { part.hidden = false; });
  }

  read(text, older) {
    let day = '';
    const rows = [];
    for (const piece of text.split('\n<tr ').slice(1)) {
      if (piece.startsWith('id=')) {
        rows.push({ piece, day, older });
      } else {
        day = '<tr ' + piece;
      }
    }
    return rows;
  }

  byId(id) {
    this.index ??= new Map(this.rows.map(row => [row.piece.slice(4, row.piece.indexOf('"', 4)), row]));
    return this.index.get(id);
  }

  rowOf(inside) {
    return this.parts(this.byId(inside.closest('tr').id));
  }

  // Takes a row apart when it is looked at. One that says the same as another one has that one's body.
  parts(row) {
    if (row.head === undefined) {
      const { piece } = row;
      const [first, last] = [piece.indexOf('\n'), piece.lastIndexOf('\n<dt>In the log')];
      const model = piece.startsWith('<td c', first + 1) && this.byId(piece.match(/>as <a href="#(\w+)/)[1]);
      row.head = '<tr ' + piece.slice(0, first);
      row.body = model ? this.parts(model).body : piece.slice(first, last);
      row.tail = piece.slice(last, piece.lastIndexOf('</dl>') + 5);
    }
    return row;
  }

  // Rows of one kind on one day are folded into one, unless they mean something for the session.
  kindOf(row) {
    if (row.kind === undefined) {
      const [source, severity, provider, words] = this.parts(row).body.split('<td>', 5).slice(1);
      row.kind = row.head.includes(' own"><td>') ? row.head
        : [row.day, row.older, source, severity, provider || words.slice(0, words.indexOf('</summary>'))].join('\n');
    }
    return row.kind;
  }

  fits(row, words, rank) {
    if (words.length) {
      row.text ??= plain(this.parts(row).head + row.body + row.tail).toLowerCase();
    }
    return words.every(word => row.text.includes(word)) &&
      (rank === '0' || ['info', 'notice', 'warning', 'error'].indexOf(row.piece.match(/class="(\w+)/)[1]) >= rank);
  }

  show(limit = this.limit) {
    this.limit = limit;
    const words = this.field.value.toLowerCase().split(/\s+/).filter(word => word);
    const fitting = this.rows.filter(row => this.fits(row, words, this.severity.value));
    const shown = fitting.filter(row => this.older || !row.older);
    const groups = new Map();
    for (const row of oldestFirst ? shown.reverse() : shown) {
      const kind = this.kindOf(row);
      const name = this.unfolded.has(kind) ? row.piece : kind;
      groups.set(name, { row: groups.get(name)?.row || row, count: (groups.get(name)?.count || 0) + 1 });
    }
    const open = new Set([...this.body.querySelectorAll('details[open]')].map(part => part.closest('tr').id));
    let day;
    this.body.innerHTML = [...groups.values()].slice(0, limit).map(({ row, count }) => {
      const heading = row.day === day ? '' : row.day;
      day = row.day;
      return heading + row.head + row.body.slice(0, row.body.indexOf('<dl>')) + '</details>' +
        (count > 1 ? `<button type="button" class="fold">${count - 1} more of this kind on this day</button>` : '') + '</tr>';
    }).join('');
    open.forEach(id => { document.getElementById(id)?.querySelector('details').setAttribute('open', ''); });
    this.box.querySelector('.rest').hidden = groups.size <= limit;
    this.box.querySelector('.rest button').textContent = `Show more (${groups.size - limit} rows are left)`;
    this.say(shown.length, fitting.length - shown.length);
  }

  say(shown, olderHits) {
    const all = this.rows.length - (this.older ? 0 : this.olderCount);
    const hint = shown === 0 && olderHits > 0 ? `; the older ones hold ${olderHits}: Enter in the search shows them` : '';
    this.box.querySelector('[role=status]').textContent = `${shown} of ${all} entries${hint}`;
    this.olderButton.textContent = this.older ? `Hide the ${this.olderCount} older entries`
      : `Show ${this.olderCount} older entries, too`;
    this.olderButton.hidden = this.olderCount === 0;
  }

  // A row that was opened gets its fields.
  fill(details) {
    if (details.open && !details.querySelector('dl')) {
      const row = this.rowOf(details);
      details.append(element(row.body.slice(row.body.indexOf('<dl>')) + row.tail.replace('</dl>', `${this.times(row)}</dl>`)),
        element('<button type="button" class="copy">Copy as text (c)</button>'));
    }
  }

  // Its time in full, local and UTC.
  times(row) {
    const local = `${plain(row.day).trim()} ${plain(row.head).trim().slice(0, 12)}`;
    const utc = new Date(local.replace(' ', 'T') + this.box.dataset.offset);
    return `<dt>Local time<dd>${local} ${this.box.dataset.offset}<dt>UTC<dd>` +
      (isNaN(utc) ? 'unknown' : utc.toISOString().replace('T', ' ').slice(0, 23));
  }

  copy(tr) {
    const row = this.rowOf(tr);
    const cells = [...element(`<table>${row.head}${row.body}${this.times(row)}${row.tail}</table>`).querySelectorAll('td')];
    const [, from, ...about] = cells.slice(0, 5).map(cell => cell.textContent.trim());
    const fields = [...cells[5].querySelectorAll('dt')].map(name => `${name.textContent}: ${name.nextSibling.textContent.trim()}`);
    const text = [`${about.filter(part => part).join(', ')}, ${from}:`, cells[5].querySelector('summary').textContent, ...fields].join('\n');
    const area = document.createElement('textarea'); // Works also where the page is a file.
    area.value = text;
    tr.append(area);
    area.select();
    const done = document.execCommand('copy');
    area.remove();
    tr.querySelector('summary').focus();
    this.box.querySelector('[role=status]').textContent = done ? 'Copied' : 'The browser did not copy';
  }

  // Makes the row be there, opened.
  reveal(id) {
    const row = this.byId(id);
    if (!row) {
      return false;
    }
    const isThere = () => document.getElementById(id) !== null;
    if (!isThere()) {
      this.field.value = '';
      this.severity.value = '0';
      this.older ||= row.older;
      this.show();
    }
    if (!isThere()) {
      this.unfolded.add(this.kindOf(row));
      this.show();
    }
    while (!isThere()) {
      this.show(this.limit * 2);
    }
    document.getElementById(id).querySelector('details').open = true;
    return true;
  }
}
