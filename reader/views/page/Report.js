'use strict';
// Without this the page is whole: what stands in noscript is then shown as it is. With it, that is the store from which
// rows, tables and logs are made when somebody opens them, so that 20,000 entries cost no more than a long text.

let oldestFirst = false;
const tables = [];

function element(html) {
  const template = document.createElement('template');
  template.innerHTML = html;
  return template.content;
}

function unpack(details) {
  const store = details.querySelector(':scope > noscript');
  store?.replaceWith(element(store.textContent));
}

function start(part) {
  part.querySelectorAll('.figures').forEach(watchFigures);
  part.querySelectorAll('.entries').forEach(box => tables.push(new Entries(box)));
}

// Opens what holds the target of a link.
function reveal(hash) {
  const id = hash.slice(1);
  const session = document.getElementById(id.replace(/e\d+$/, ''));
  if (session?.matches('.session')) {
    session.open = true;
    prepare(session);
  }
  tables.some(table => table.reveal(id));
}

function prepare(session) {
  if (session.open && !session.dataset.ready) {
    session.dataset.ready = 'yes';
    start(session);
  }
}

function turn() {
  oldestFirst = !oldestFirst;
  document.querySelectorAll('.strip ol').forEach(list => list.append(...[...list.children].reverse()));
  tables.forEach(table => table.show());
  document.querySelectorAll('.order').forEach(button => {
    button.textContent = oldestFirst ? 'Newest first' : 'Oldest first';
  });
}

document.addEventListener('DOMContentLoaded', () => {
  const sessions = document.querySelectorAll('.session');
  sessions.forEach(prepare);
  if (sessions.length === 0) {
    start(document);
  }
  document.querySelectorAll('.order').forEach(button => { button.hidden = false; });
  document.addEventListener('toggle', event => {
    if (event.target.open && event.target.matches('.session')) {
      sessions.forEach(other => { other.open = other === event.target; });
      prepare(event.target);
    } else if (event.target.open && event.target.matches('.stored')) {
      unpack(event.target);
    }
  }, true);
  document.addEventListener('click', event => {
    const link = event.target.closest('a');
    if (link) {
      reveal(link.hash);
    } else if (event.target.matches('.order')) {
      turn();
    }
  });
  addEventListener('hashchange', () => reveal(location.hash));
  if (location.hash) {
    reveal(location.hash);
    location.hash = location.hash; // Goes to what is there only now.
  }
});
