'use strict';
// The page is whole without this: it folds what is long, filters the entries and shows the figures of one moment.
document.documentElement.classList.add('scripted');

// The drawings of a session share one time axis and one slider; their figures stand in the table below them.
function watchFigures(box) {
  const charts = [...box.querySelectorAll('.chart')];
  const rows = [...box.querySelectorAll('tbody tr')].map(row => [...row.cells].map(cell => cell.textContent));
  const times = rows.map(cells => Date.parse(cells[0].replace(' ', 'T') + 'Z'));
  const slider = box.querySelector('input');
  const [first, last] = [box.dataset.first, box.dataset.last].map(Number);
  function show(index) {
    slider.value = index;
    const said = [rows[index][0]];
    charts.forEach((chart, i) => {
      const { low, high, scale, unit, decimals } = chart.dataset;
      const text = rows[index][i + 1];
      const value = text / scale;
      const x = 100 * (times[index] - first) / (last - first) + '%';
      const line = chart.querySelector('.now');
      const dot = chart.querySelector('circle');
      line.setAttribute('x1', x);
      line.setAttribute('x2', x);
      dot.setAttribute('cx', x);
      dot.setAttribute('cy', 100 - 100 * (value - low) / (high - low) + '%');
      line.classList.remove('unseen');
      dot.classList.toggle('unseen', text === '');
      const shown = text === '' ? 'unknown' : value.toFixed(decimals) + ' ' + unit;
      chart.parentNode.querySelector('output').textContent = rows[index][0].slice(11) + ': ' + shown;
      said.push(chart.parentNode.querySelector('strong').textContent + ' ' + shown);
    });
    slider.setAttribute('aria-valuetext', said.join(', '));
  }
  for (const chart of charts) {
    chart.addEventListener('pointermove', event => {
      const drawn = chart.getBoundingClientRect();
      const time = first + (last - first) * (event.clientX - drawn.left) / drawn.width;
      const after = times.findIndex(t => t >= time);
      const index = after < 0 ? times.length - 1 : after;
      show(index > 0 && time - times[index - 1] < times[index] - time ? index - 1 : index);
    });
  }
  slider.max = times.length - 1;
  slider.addEventListener('input', () => show(Number(slider.value)));
  slider.addEventListener('focus', () => show(Number(slider.value)));
  slider.closest('.moment').hidden = false;
}

// Search, severity and the entries from before the session.
function watchEntries(box) {
  const [field, severity, older] = box.querySelectorAll('input, select, button');
  const count = box.querySelector('[role=status]');
  const ranks = { error: 3, warning: 2, notice: 1 };
  const days = [...box.querySelectorAll('.day')].map(day => ({
    day,
    older: day.classList.contains('older'),
    rows: [...day.querySelectorAll('tbody tr')].map(row => ({ row, rank: ranks[row.className] || 0 })),
  }));
  const size = entry => 1 + Number(entry.row.dataset.more || 0);
  function filter() {
    const words = field.value.toLowerCase().split(/\s+/).filter(word => word);
    let shown = 0;
    let all = 0;
    for (const { day, older: isOlder, rows } of days) {
      if (isOlder && !box.classList.contains('all')) {
        continue;
      }
      const before = shown;
      for (const entry of rows) {
        entry.size ??= size(entry);
        entry.text ??= words.length ? entry.row.textContent.toLowerCase() : undefined;
        const fits = entry.rank >= severity.value && words.every(word => entry.text.includes(word));
        if (entry.row.hidden === fits) {
          entry.row.hidden = !fits;
        }
        shown += fits ? entry.size : 0;
        all += entry.size;
      }
      day.hidden = shown === before;
    }
    count.textContent = shown + ' of ' + all + ' entries';
  }
  function showOlder(wanted) {
    box.classList.toggle('all', wanted);
    older.setAttribute('aria-pressed', wanted);
    filter();
  }
  field.addEventListener('input', filter);
  field.addEventListener('keydown', event => {
    if (event.key === 'Enter' && !older.hidden) {
      older.click();
    }
  });
  severity.addEventListener('input', filter);
  older.addEventListener('click', () => showOlder(!box.classList.contains('all')));
  const olderSize = days.filter(day => day.older).flatMap(day => day.rows).reduce((sum, entry) => sum + size(entry), 0);
  older.textContent = 'Show ' + olderSize + ' older, too (Enter in the search)';
  older.hidden = olderSize === 0;
  box.addEventListener('reveal', () => {
    field.value = '';
    severity.value = '0';
    showOlder(true);
  });
  box.querySelector('.controls').hidden = false;
  filter();
}

function reveal(hash) {
  const target = document.getElementById(hash.slice(1));
  for (let around = target; around; around = around.parentElement) {
    if (around.matches('details')) {
      around.open = true;
    }
  }
  const day = target && target.closest('.day');
  if (target && (target.hidden || (day && day.matches('.older')))) {
    target.closest('.entries').dispatchEvent(new Event('reveal'));
  }
  return target;
}

document.addEventListener('DOMContentLoaded', () => {
  const folds = [...document.querySelectorAll('details[open]:not(.newest)')];
  folds.forEach(fold => { fold.open = false; });
  document.querySelectorAll('.figures').forEach(watchFigures);
  document.querySelectorAll('.entries').forEach(watchEntries);
  document.addEventListener('click', event => {
    const link = event.target.closest('a');
    if (link) {
      reveal(link.hash);
    }
  });
  reveal(location.hash)?.scrollIntoView();
  // Paper gets every entry.
  addEventListener('beforeprint', () => {
    document.querySelectorAll('.entries').forEach(box => box.dispatchEvent(new Event('reveal')));
    folds.forEach(fold => { fold.open = true; });
  });
});
