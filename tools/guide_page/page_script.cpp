#include "tools/guide_page/page_parts.h"

namespace dabspi {

// A day has its first start and its last stop in data-s and data-e, a programme its own, in seconds since
// 1970-01-01T00:00Z. The programmes of a day stand in a <noscript>, which is one text where scripts run, and
// become elements when the day is opened: with all of them a large guide opens slowly. It is markup as this
// program has written it, with every text of the broadcast escaped.
const char* const kGuideScript = R"(
'use strict';
const fill = day => {
  const kept = day.querySelector('noscript');
  if (kept) kept.outerHTML = kept.textContent;
};
const within = (each, now) => Number(each.dataset.s) <= now && now < Number(each.dataset.e);
let opened = false;
function mark() {
  const now = Date.now() / 1000;
  for (const service of document.querySelectorAll('article')) {
    let current = null;
    for (const day of service.querySelectorAll('details.day')) {
      const today = within(day, now);
      if (today) fill(day);
      if (!today && !day.querySelector('.now')) continue;
      for (const each of day.querySelectorAll('li')) {
        const is = within(each, now);
        each.classList.toggle('now', is);
        if (is) { each.setAttribute('aria-current', 'time'); current = each; } else each.removeAttribute('aria-current');
      }
      if (!opened && today) day.open = true;
    }
    const line = service.querySelector('.on');
    line.hidden = !current;
    line.textContent = current ? 'Now: ' + current.querySelector('span').textContent + ' ' + current.querySelector('bdi').textContent : '';
  }
  opened = true;
}
document.addEventListener('toggle', event => { if (event.target.matches('details.day')) fill(event.target); }, true);
for (const day of document.querySelectorAll('details.day[open]')) fill(day);
mark();
setInterval(mark, 20000);
)";

}  // namespace dabspi
