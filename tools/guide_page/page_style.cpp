#include "tools/guide_page/page_parts.h"

namespace dabspi {

const char* const kGuideStyle = R"(
body { max-width: 60rem; }
nav summary { padding: .4rem 0; font-weight: 600; overflow-wrap: anywhere; }
nav ul { columns: 14rem; margin: 0; padding: 0; list-style: none; }
nav li { padding: .2rem 0; break-inside: avoid; overflow-wrap: anywhere; }
article { content-visibility: auto; contain-intrinsic-size: auto 12rem; margin: 0 0 1rem; padding: .75rem .9rem;
  background: var(--sheet); border: 1px solid var(--rule); border-radius: .3rem; }
article p { margin: .3rem 0; overflow-wrap: anywhere; }
.head { display: flex; flex-wrap: wrap; gap: .75rem; align-items: center; }
.head img { max-width: 6rem; max-height: 4rem; padding: .2rem; background: var(--plate); }
.head h2 { flex: 1 1 12rem; min-width: 0; margin: 0; padding: 0; border: 0; }
.head h2 small { display: block; font-weight: 400; }
.on { font-weight: 600; }
summary small { font-weight: 400; white-space: nowrap; }
.day > summary { padding: .45rem 0; font-weight: 600; }
.day ol { margin: 0; padding: 0; list-style: none; }
.day li { padding: .45rem .4rem .45rem 1.5rem; border-top: 1px solid var(--rule); border-left: .3rem solid transparent;
  overflow-wrap: anywhere; }
.day li > details { margin-left: -1.1rem; }
.day li > details > p { margin-left: 1.1rem; max-width: 42rem; }
.day li span { font-variant-numeric: tabular-nums; }
.day li bdi { font-weight: 600; }
.day li.now { border-left-color: var(--now); background: var(--cell); color: var(--cell-text); }
.day li.now small { color: inherit; }
.day li.now bdi::after { content: " \00b7  on now"; font-weight: 400; }
)";

}  // namespace dabspi
