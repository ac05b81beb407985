// The guide as JSON; docs/export.schema.json describes it.
#pragma once

#include <string>

#include "tools/guide/programme_guide.h"

namespace dabspi {

std::string guide_json(const guide::programme_guide& of);

}  // namespace dabspi
