'use strict';
// The drawings of a session under the pointer.

// The drawings of a session share one slider; their values stand in the table below them.
function watchFigures(box) {
  const slider = box.querySelector('.moment input');
  const store = box.querySelector('noscript');
  if (!box.querySelector('.chart')) {
    return;
  }
  let records;
  let range; // That is shown, with its records.
  function prepare() {
    records ??= [...element(store.textContent).querySelectorAll('tbody tr')].map(row => ({
      at: Number(row.dataset.at),
      values: [...row.cells].map(cell => cell.textContent),
    }));
    const shown = [...box.querySelectorAll('.range')].find(part => part.offsetParent);
    if (range?.part !== shown) {
      const [from, until] = [Number(shown.dataset.from), Number(shown.dataset.until)];
      range = { part: shown, from, until, records: records.filter(({ at }) => at >= from && at <= until) };
      const place = slider.value / slider.max;
      slider.max = range.records.length - 1;
      slider.value = Math.round(place * slider.max);
    }
  }
  function show(index) {
    const { at, values: [time, ...values] } = range.records[index];
    const x = 100 * (at - range.from) / (range.until - range.from);
    const said = [time];
    slider.value = index;
    [...range.part.querySelectorAll('figure')].forEach((figure, i) => {
      const chart = figure.querySelector('.chart');
      if (!chart) {
        return;
      }
      const { low, high, scale, unit, decimals } = chart.dataset;
      const y = 100 - 100 * (values[i] / scale - low) / (high - low);
      const [line, dot] = chart.querySelectorAll('.now');
      line.setAttribute('x1', x + '%');
      line.setAttribute('x2', x + '%');
      dot.setAttribute('cx', x + '%');
      dot.setAttribute('cy', y + '%');
      line.classList.remove('unseen');
      dot.classList.toggle('unseen', values[i] === '');
      const text = values[i] === '' ? 'unknown' : (values[i] / scale).toFixed(decimals) + ' ' + unit;
      const label = chart.querySelector('output');
      label.textContent = text + ', ' + time.slice(11);
      label.style.left = x + '%';
      label.style.top = Math.max(y, 25) + '%';
      label.classList.toggle('left', x > 50);
      said.push(figure.querySelector('strong').textContent + ' ' + text);
    });
    slider.setAttribute('aria-valuetext', said.join(', '));
  }
  function point(event) {
    const chart = event.target.closest('.chart');
    if (!chart) {
      return;
    }
    prepare();
    const drawn = chart.getBoundingClientRect();
    const at = range.from + (range.until - range.from) * (event.clientX - drawn.left) / drawn.width;
    const away = record => Math.abs(record.at - at);
    show(range.records.reduce((best, record, i) => away(record) < away(range.records[best]) ? i : best, 0));
  }
  box.addEventListener('pointermove', point);
  box.addEventListener('pointerdown', point);
  for (const name of ['focus', 'input']) {
    slider.addEventListener(name, () => {
      prepare();
      show(slider.valueAsNumber);
    });
  }
  box.addEventListener('change', event => {
    if (event.target.type === 'radio') {
      prepare();
    }
  });
  slider.max = 1; // At the end, until the records are counted.
  slider.value = 1;
  slider.closest('.moment').hidden = false;
}
