// The fixed parts of the page of a programme guide.
#pragma once

namespace dabspi {

extern const char* const kGuideStyle;   // follows the base style of pages
extern const char* const kGuideScript;  // the only one that runs: its hash stands in the page's policy

}  // namespace dabspi
