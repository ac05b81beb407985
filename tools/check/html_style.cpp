#include "tools/check/html_parts.h"

namespace dabspi::check::html {

const char* const kStyle = R"(
nav ul { display: flex; flex-wrap: wrap; gap: .25rem 1.25rem; padding: 0; margin: .75rem 0 0; list-style: none; }

.banner { padding: .6rem .9rem; border: 2px solid var(--error); border-radius: .3rem; color: var(--error);
  background: var(--error-tint); font-size: 1.1rem; }
header .banner { color: var(--error); margin: .75rem 0; }
.said { margin: .5rem 0; padding-left: 1.25rem; color: var(--faint); overflow-wrap: anywhere; }
.part { margin: 0 0 .75rem; }
.part > summary { font-weight: 600; padding: .2rem 0; }
.matrix { width: auto; }
.matrix th, .matrix td { padding-right: 1rem; overflow-wrap: break-word; }
.matrix th[scope="row"] { font-weight: 400; min-width: 9rem; max-width: 22rem; }
.matrix .written { color: var(--text); font-weight: 600; }
.matrix .sent { color: var(--faint); }
.matrix .missing { color: var(--warning); }
.names { columns: 16rem; margin: .25rem 0; padding-left: 1.25rem; }

.line { white-space: nowrap; }
.kind { margin: 0 0 .75rem; padding: .6rem .9rem; background: var(--sheet); border: 1px solid var(--rule);
  border-left: .35rem solid var(--note); border-radius: .3rem; }
.kind.error { border-left-color: var(--error); }
.kind.warning { border-left-color: var(--warning); }
.kind p { margin: .4rem 0; max-width: 60rem; }
.kind ol { margin: .5rem 0 .25rem; padding-left: 1.75rem; }
.kind li { margin: .3rem 0; overflow-wrap: anywhere; }
.badge, .chip { display: inline-block; padding: 0 .5em; border-radius: 1em; font-size: .85rem; color: var(--note);
  background: var(--note-tint); }
.badge.error, .chip.error { color: var(--error); background: var(--error-tint); }
.badge.warning, .chip.warning { color: var(--warning); background: var(--warning-tint); }
.chips { margin: 0 0 .4rem; }

article { margin: 0 0 1rem; padding: .75rem .9rem; background: var(--sheet); border: 1px solid var(--rule);
  border-radius: .3rem; }
.scroll { overflow-x: auto; }
.row { display: grid; grid-template-columns: 5.6rem 1fr; align-items: stretch; min-width: 66rem; margin-bottom: .35rem; }
.row h4 { position: sticky; left: 0; z-index: 3; margin: 0; padding: .3rem .4rem 0 0; font-size: .8rem; font-weight: 600;
  background: var(--sheet); }
.row h4 span { display: block; white-space: nowrap; font-weight: 400; }
.hours { margin-bottom: 0; }
.scale { position: relative; height: 1.3rem; }
.scale span { position: absolute; padding-left: .2rem; border-left: 1px solid var(--rule); font-size: .75rem;
  color: var(--faint); }
.track { position: relative; height: calc(.8rem + 2.3rem * var(--rows, 1)); margin: 0; padding: 0; list-style: none; overflow: clip; }
.track li { position: absolute; top: 0; height: 100%; }
.free { background: repeating-linear-gradient(135deg, transparent 0 5px, var(--hatch) 5px 6px); }
.cell { overflow: hidden; padding: .15rem 0; border: 1px solid var(--cell-edge); border-radius: .2rem;
  background: var(--cell); color: var(--cell-text); font-size: .75rem; line-height: 1.35; }
.cell .time, .cell .title { display: block; padding-left: .3rem; overflow: hidden; white-space: nowrap; }
.cell .time { font-variant-numeric: tabular-nums; }
.cell .title { text-overflow: ellipsis; color: inherit; }
.cell.reported { border-top: .25rem solid var(--reported); }
.cell.now { background: var(--now); color: var(--now-text); }
.cell.continued { border-left-style: dashed; }
.cell.error, .cell.warning { border-bottom: .25rem solid var(--warning); }
.cell.error { border-bottom-color: var(--error); }
.gap { min-width: 2px; border: 1px dashed var(--warning); background: var(--warning-tint); }
.gap a { display: block; height: 100%; overflow: hidden; color: var(--warning); font-size: .75rem; padding-top: .15rem; }
.gap .label { padding-left: .3rem; white-space: nowrap; }
.cell a:focus-visible { outline-offset: -3px; }
.clock { width: 0; border-left: 2px solid var(--focus); z-index: 2; }
.legend { display: flex; flex-wrap: wrap; gap: .4rem 1rem; font-size: .85rem; color: var(--faint); }
.key::before { content: ""; display: inline-block; width: 1.6rem; height: 1rem; margin-right: .4rem; vertical-align: -.15rem;
  border: 1px solid var(--cell-edge); background: var(--cell); }
.key.reported::before { border-top: .25rem solid var(--reported); }
.key.now::before { background: var(--now); }
.key.warning::before { border-bottom: .25rem solid var(--warning); }
.key.hatched::before { background: repeating-linear-gradient(135deg, transparent 0 5px, var(--hatch) 5px 6px); }
table { border-collapse: collapse; width: 100%; margin-top: .4rem; font-size: .9rem; }
th, td { padding: .2rem .75rem .2rem 0; text-align: left; vertical-align: top; border-bottom: 1px solid var(--rule);
  overflow-wrap: anywhere; }
.scroll table { min-width: 34rem; }
.objects td:first-child { min-width: 12rem; }
.objects td { min-width: 4rem; overflow-wrap: break-word; }
.objects td:first-child, .objects td:last-child { overflow-wrap: anywhere; }
.objects td:last-child { min-width: 10rem; }
.number { font-variant-numeric: tabular-nums; }

.figures { display: grid; grid-template-columns: repeat(auto-fill, minmax(min(15rem, 100%), 1fr)); gap: .9rem; }
figure { margin: 0; padding: .75rem; background: var(--sheet); border: 1px solid var(--rule); border-radius: .3rem; }
.plate { display: grid; place-items: center; min-height: 9rem; padding: .5rem; background: var(--plate); }
.plate img { max-width: 100%; max-height: 15rem; }
.no-image { display: grid; place-items: center; min-height: 9rem; margin: 0; color: var(--faint); border: 1px dashed var(--rule); }
figcaption { margin-top: .5rem; font-size: .85rem; overflow-wrap: anywhere; }

#timeline h3 { margin: 1rem 0 .5rem; }
.reported-list { margin: 0; padding: 0; list-style: none; }
.reported-list li { display: grid; grid-template-columns: 3.5rem 1fr; gap: 1.4rem; font-size: .9rem; }
.reported-list li > time { padding-top: .35rem; font-variant-numeric: tabular-nums; text-align: right; }
.reported-list li > div { position: relative; padding: .35rem 0 .35rem 1.4rem; border-left: 2px solid var(--rule);
  overflow-wrap: anywhere; }
.reported-list li > div::before { content: ""; position: absolute; left: -7px; top: .75rem; width: 12px; height: 12px;
  border-radius: 50%; background: var(--reported); }
.reported-list .stored > div::before { background: var(--ground); border: 2px solid var(--faint); }
.reported-list .logo > div::before { border-radius: 2px; background: var(--warning); }
.reported-list b { display: inline-block; min-width: 2.6rem; font-weight: 600; }
@media (max-width: 40rem) {
  .reported-list li { gap: .7rem; }
  article, .kind, figure { padding: .6rem; }
}
.kind details, .more { margin: .4rem 0; }
@media print { .skip, nav { display: none; } }
)";

}  // namespace dabspi::check::html
