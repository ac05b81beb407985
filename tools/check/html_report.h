// What was found, as one page that needs nothing from outside: schedules as a grid, logos, what was told on a
// time line, and the findings with links to their places. Everything that comes from the broadcast is
// escaped; the page holds no script.
#pragma once

#include <string>

#include "tools/check/report.h"

namespace dabspi::check {

std::string html_report(const check_report& of);

}  // namespace dabspi::check
