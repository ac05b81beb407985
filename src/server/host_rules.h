// What the server makes of the host's calls, apart from its workers: which of them an object goes to, and
// what a change of ensemble does.
#pragma once

#include <cstdint>

#include "src/event/event_names.h"
#include "src/parse/mot_content.h"

namespace spi {

// Where a MOT object goes, by its ContentType alone; QID_NONE: it is dropped.
inline _qid destination_of(std::uint8_t content_type) {
    switch (content_type) {
        case kMotImage: return QID_LOGODB;
        case kMotSpiObject: return QID_PARSE;
        default: return QID_NONE;
    }
}

enum class ensemble_change : std::uint8_t {
    none,
    first,    // after none
    another,  // in place of the one before
    lost      // there is none now
};

// 0 stands for no ensemble.
inline ensemble_change change_of_ensemble(std::uint16_t before, std::uint16_t now) {
    if (before == now) return ensemble_change::none;
    if (before == 0) return ensemble_change::first;
    return now == 0 ? ensemble_change::lost : ensemble_change::another;
}

// From one ensemble to another, or to none, everything that was received is forgotten; from none to one
// nothing is. Deliberate.
inline bool forgets_everything(ensemble_change change) {
    return change == ensemble_change::another || change == ensemble_change::lost;
}

// Whether the parser learns the new ensemble: from none it keeps the last one.
inline bool reaches_parser(ensemble_change change) {
    return change == ensemble_change::first || change == ensemble_change::another;
}

}  // namespace spi
