#include "src/event/event_names.h"

#include <array>

namespace spi {
namespace {

// Constant data: worker threads may still log while a host that exits runs the destructors of its statics.
constexpr std::array<const char*, QID_MAX + 1> kQueueNames = {
    "QID_NONE",  "QID_ALL",    "QID_SYS",   "QID_SERV", "QID_PARSE",
    "QID_EVTDB", "QID_LOGODB", "QID_CBHDL", "QID_MAX",
};

constexpr std::array<const char*, EC_MAX + 1> kEventNames = {
    "No event",  "EC_IMAGE",   "EC_SPI",     "EC_TEMPROOT", "EC_LOGOROOT", "EC_DATETIME", "EC_SERV",
    "EC_ENS",    "EC_BODYIMG", "EC_BODYSPI", "EC_EVTINFO",  "EC_SERVINFO", "EC_EVTCB",    "EC_NOWNEXT",
    "EC_RESEND", "EC_LOGOCB",  "EC_DBCLEAR", "EC_TERM",     "EC_MAX",
};

template <std::size_t N>
const char* name_at(const std::array<const char*, N>& names, std::size_t index) {
    return index < N ? names[index] : "?";
}

}  // namespace

const char* queue_name(_qid id) noexcept {
    return name_at(kQueueNames, id);
}
const char* event_name(event_code code) noexcept {
    return name_at(kEventNames, code);
}

}  // namespace spi
