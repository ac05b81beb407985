#include "tools/guide_page/page_parts.h"

namespace dabspi {

// A day has its first start and its last stop in data-s and data-e, a programme its own, in seconds since
// 1970-01-01T00:00Z. Texts of the broadcast are copied as text.
const char* const kGuideScript = R"(
'use strict';
const within = (each, now) => Number(each.dataset.s) <= now && now < Number(each.dataset.e);
let opened = false;
function mark() {
  const now = Date.now() / 1000;
  for (const service of document.querySelectorAll('article')) {
    let current = null;
    for (const day of service.querySelectorAll('details.day')) {
      if (!within(day, now) && !day.querySelector('.now')) continue;
      for (const each of day.querySelectorAll('li')) {
        const is = within(each, now);
        each.classList.toggle('now', is);
        if (is) { each.setAttribute('aria-current', 'time'); current = each; } else each.removeAttribute('aria-current');
      }
      if (!opened && day.querySelector('.now')) day.open = true;
    }
    const line = service.querySelector('.on');
    line.hidden = !current;
    line.textContent = current ? 'Now: ' + current.querySelector('time').textContent + ' ' + current.querySelector('b').textContent : '';
  }
  opened = true;
}
mark();
setInterval(mark, 20000);
)";

}  // namespace dabspi
