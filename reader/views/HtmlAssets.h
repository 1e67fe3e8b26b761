// Style and script of the report page.
#pragma once

#include <string_view>

namespace sentiq {

inline constexpr std::string_view reportStyle = R"css(
:root { color-scheme: light dark; --ground: #fff; --raised: #f3f5f8; --text: #1b2330; --dim: #566070; --rule: #d5dae2;
  --line: #1f5fbf; --error: #b3261e; --warning: #8a5300; --notice: #1f5fbf; }
@media (prefers-color-scheme: dark) { :root { --ground: #14181f; --raised: #1e242e; --text: #e6eaf0; --dim: #a3adba;
  --rule: #394250; --line: #7fb0ff; --error: #ff9a92; --warning: #f0b860; --notice: #7fb0ff; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 76rem; padding: 1.5rem; background: var(--ground); color: var(--text);
  font: 1rem/1.5 system-ui, sans-serif; }
h1 { font-size: 1.1rem; color: var(--dim); font-weight: 600; margin: 0 0 .5rem; }
h2 { font-size: 1.2rem; margin: 2.2rem 0 .6rem; border-bottom: 1px solid var(--rule); padding-bottom: .3rem; }
.outcome { font-size: 1.5rem; line-height: 1.35; font-weight: 650; margin: 0 0 .6rem; padding: .8rem 1rem;
  background: var(--raised); border-left: .4rem solid var(--dim); overflow-wrap: anywhere; }
.outcome.error { border-color: var(--error); } .outcome.warning { border-color: var(--warning); }
.outcome.notice { border-color: var(--notice); }
ul { padding-left: 1.2rem; } li { overflow-wrap: anywhere; }
dl { display: grid; grid-template-columns: max-content 1fr; gap: .25rem 1.5rem; margin: 1rem 0; }
dt { color: var(--dim); } dd { margin: 0; overflow-wrap: anywhere; }
figure { margin: 0 0 1.6rem; } figcaption { color: var(--dim); font-size: .9rem;
  margin-top: .4rem; }
svg { display: block; width: 100%; height: auto; background: var(--raised); border-radius: .4rem; }
svg text { fill: var(--dim); font: 12px system-ui, sans-serif; } svg .grid { stroke: var(--rule); }
svg .line { fill: none; stroke: var(--line); stroke-width: 2; stroke-linejoin: round; stroke-linecap: round; }
svg line.mark { stroke: var(--error); stroke-dasharray: 4 3; } svg text.mark { fill: var(--error); font-weight: 700; }
table { border-collapse: collapse; width: 100%; font-size: .9rem; }
th, td { text-align: left; vertical-align: top; padding: .35rem .6rem; border-bottom: 1px solid var(--rule); }
th { background: var(--raised); position: sticky; top: 0; } td:last-child { overflow-wrap: anywhere; }
td.time, td.number { white-space: nowrap; font-variant-numeric: tabular-nums; }
figure table { width: auto; }
td.error, li.error { color: var(--error); } td.warning, li.warning { color: var(--warning); }
td.notice { color: var(--notice); } td.error, td.warning { font-weight: 600; }
.search { margin-bottom: .6rem; } label { display: block; margin: .4rem 0; } input { font: inherit; padding: .35rem .6rem; width: min(30rem, 100%);
  color: inherit; background: var(--raised); border: 1px solid var(--dim); border-radius: .3rem; }
summary { cursor: pointer; padding: .3rem 0; } :focus-visible { outline: 3px solid var(--line); outline-offset: 2px; }
pre { background: var(--raised); padding: .8rem; overflow: auto; max-height: 40rem; font-size: .8rem; white-space: pre-wrap;
  overflow-wrap: anywhere; }
@media (max-width: 40rem) { body { padding: .8rem; } svg text { font-size: 17px; }
  .wide { overflow-x: auto; } .wide table { min-width: 56rem; }
  dl { grid-template-columns: 1fr; gap: 0; } dd { margin-bottom: .5rem; } }
@media print { :root { --ground: #fff; --raised: #fff; --text: #000; --dim: #333; --rule: #999; --line: #000;
  --error: #000; --warning: #000; --notice: #000; } body { max-width: none; padding: 0; font-size: 10pt; }
  table { font-size: 8pt; } th { position: static; } .search, details:not([open]) { display: none; }
  figure, tr { break-inside: avoid; } pre { max-height: none; } }
)css";

// Search only: the page is whole without it, so the field stays hidden until the script runs.
inline constexpr std::string_view reportScript = R"js(
const box = document.querySelector('.search');
const field = document.getElementById('search');
const count = document.getElementById('count');
const rows = Array.from(document.querySelectorAll('#events tbody tr'));
const texts = rows.map(row => row.textContent.toLowerCase());
function search() {
  const words = field.value.toLowerCase().split(/\s+/);
  let shown = 0;
  rows.forEach((row, i) => {
    row.hidden = !words.every(word => texts[i].includes(word));
    shown += row.hidden ? 0 : 1;
  });
  count.textContent = shown + ' of ' + rows.length + ' entries';
}
field.addEventListener('input', search);
box.hidden = false;
search();
)js";

}  // namespace sentiq
