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
    EC_NONE = 0,       // no event: never handed to a worker's handler
    EC_IMAGE = 1,      // carried by no payload; kept so that the values below stay
    EC_SPI = 2,        // carried by no payload; kept so that the values below stay
    EC_TEMPROOT = 3,   // the directory for temporary files
    EC_LOGOROOT = 4,   // the directory for logos
    EC_DATETIME = 5,   // the host's clock
    EC_SERV = 6,       // the service that is being listened to
    EC_ENS = 7,        // the ensemble that is being received
    EC_BODYIMG = 8,    // an image
    EC_BODYSPI = 9,    // a binary SPI object
    EC_EVTINFO = 10,   // a programme
    EC_SERVINFO = 11,  // a described service
    EC_EVTCB = 12,     // the listener
    EC_NOWNEXT = 13,   // now and next have changed
    EC_RESEND = 14,    // asks for now and next once more
    EC_LOGOCB = 15,    // a logo has been written
    EC_DBCLEAR = 16,   // forget everything that was received
    EC_TERM = 17,      // wind up; and the answer
    EC_MAX = 18,       // bound
};

// "QID_PARSE"; "?" for values beyond the bound.
const char* queue_name(_qid id) noexcept;
// "EC_TERM"; "No event" for code 0, "?" for values beyond the bound.
const char* event_name(event_code code) noexcept;

}  // namespace spi
