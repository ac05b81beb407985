// What was found, as text for people: the services and their days, then each kind of finding with its places.
#pragma once

#include <string>

#include "tools/check/report.h"
#include "tools/terminal/colours.h"

namespace dabspi::check {

struct text_settings {
    colouring colours{false};
    bool all = false;  // every place; else some of each kind
};

std::string text_report(const check_report& of, const text_settings& how);

}  // namespace dabspi::check
