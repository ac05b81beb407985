// Queue identifiers and event codes, and their names for log lines.
#pragma once

#include <cstdint>

namespace spi {

// Where an event goes. Values are fixed.
enum _qid : std::uint8_t {
    QID_NONE = 0,    // nowhere: the router drops such events
    QID_ALL = 1,     // every registered queue
    QID_SYS = 2,     // the router's own queue
    QID_SERV = 3,    // the server
    QID_PARSE = 4,   // the parser
    QID_EVTDB = 5,   // the programme database
    QID_LOGODB = 6,  // the logo store
    QID_CBHDL = 7,   // the listener notifier
    QID_MAX = 8,     // bound, never a destination
};

// What an event says. Values are fixed.
enum event_code : std::uint8_t {
    EC_NONE = 0,   // no event: never handed to a worker's handler
    EC_IMAGE = 1,  // carried by no payload; kept so that the values below stay
    EC_SPI = 2,    // carried by no payload; kept so that the values below stay
    EC_TEMPROOT = 3,
    EC_LOGOROOT = 4,
    EC_DATETIME = 5,
    EC_SERV = 6,
    EC_ENS = 7,
    EC_BODYIMG = 8,
    EC_BODYSPI = 9,
    EC_EVTINFO = 10,
    EC_SERVINFO = 11,
    EC_EVTCB = 12,
    EC_NOWNEXT = 13,
    EC_RESEND = 14,
    EC_LOGOCB = 15,
    EC_DBCLEAR = 16,
    EC_TERM = 17,
    EC_MAX = 18,  // bound
};

// "QID_PARSE", "EC_TERM"; "No event" for code 0. "?" for values beyond the bounds.
const char* queue_name(_qid id) noexcept;
const char* event_name(event_code code) noexcept;

}  // namespace spi
