// The parts of the catalogue, each in a file of its own. Only catalogue.cpp joins them.
#pragma once

#include <vector>

#include "tools/check/catalogue.h"

namespace dabspi::check {

const std::vector<catalogue_entry>& object_entries();
const std::vector<catalogue_entry>& programme_entries();
const std::vector<catalogue_entry>& schedule_entries();
const std::vector<catalogue_entry>& logo_entries();
const std::vector<catalogue_entry>& carousel_entries();

}  // namespace dabspi::check
