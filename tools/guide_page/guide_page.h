// A programme guide as one page for a person: nothing from outside, every text of the broadcast shown as
// text. A small script marks what is on by the reader's clock and opens today; without it all else works.
//
// Linear in the guide. With scripts the programmes of a day are made when it is opened, and services out of
// sight are not laid out, so that hundreds of them open quickly.
#pragma once

#include <string>

#include "tools/guide/programme_guide.h"

namespace dabspi {

std::string guide_page(const guide::programme_guide& of);

}  // namespace dabspi
