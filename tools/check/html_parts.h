// The parts of the page, each a section of its own.
#pragma once

#include <optional>
#include <string>

#include "tools/check/html_anchors.h"
#include "tools/check/report.h"

namespace dabspi::check::html {

// Follows the base style of pages.
extern const char* const kStyle;

std::string overview_section(const check_report& of);
std::string findings_section(const check_report& of, const anchors& where);
std::string schedules_section(const check_report& of, const anchors& where);
std::string logos_section(const check_report& of, const anchors& where);
std::string timeline_section(const check_report& of);
std::string objects_section(const check_report& of, const anchors& where);

// What the receiver showed last: the end of the clock. Nothing without one.
std::optional<long> last_minute(const check_report& of);

// "Quillhaven One", or the identifier where no name is known; markup.
std::string service_markup(const check_report& of, const spi::ServElemId& service);

}  // namespace dabspi::check::html
