// What became of everything in a recording, as a receiver took it: each object when it was read or passed
// over, each programme when it was stored or dropped, each logo when it was announced, written or refused.
// receiver_model.h makes it; the rules that look for findings read it. Records refer to each other by their
// indices.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "src/event_db/filing_rules.h"
#include "src/logo_db/logo_rules.h"
#include "src/parse/body/spi_body_listener.h"
#include "src/parse/serv_elem_id.h"
#include "src/parse/spi_logo_info.h"
#include "src/parse/spi_time_point.h"
#include "tools/check/call_place.h"
#include "tools/recording/recording.h"
#include "tools/spi/tree.h"

namespace dabspi::check {

// One body under one name; its repetitions are further lines.
struct sent_object {
    std::string content_name;
    std::uint8_t type = 0;      // MOT ContentType
    std::uint16_t subtype = 0;  // MOT ContentSubType
    spi::ServElemId data_service;
    std::shared_ptr<const bytes> body;
    std::vector<std::size_t> lines;
    spi_object::object tree;  // of a binary SPI object
};

struct object_arrival {
    enum outcome_t {
        read,
        repeated,      // name and size are known, and so are the bytes
        changed,       // name and size are known, the bytes are others: not read
        blocked,       // name and size are known from an object of a sub-type that is not read
        subtype,       // of a sub-type that is not read
        content_type,  // neither an SPI object nor an image
        image,         // see image_arrival
    };
    std::size_t line;
    std::size_t object;
    outcome_t outcome;
    std::size_t before;  // changed, blocked: the object that stands in the way
};

struct programme_arrival {
    std::size_t line;
    std::size_t object;
    std::uint32_t offset;                    // of the programme element
    std::optional<spi::no_service> dropped;  // by the parser; else the database decides
    spi::filing decision = spi::filing::filed;
    std::uint16_t ensemble = 0;  // that was received; 0: none yet
    spi::ServElemId service;
    std::string name;
    spi::SpiTimePoint time;
    unsigned duration = 0;      // seconds
    long start = 0;             // local, minutes since 1858-11-17
    bool unreachable = false;   // filed under a minute that is never looked for
    std::size_t holder = 0;     // minute_taken: the programme that has the minute
    std::size_t reception = 0;  // counts up whenever everything that was received is forgotten

    bool filed() const { return !dropped && decision == spi::filing::filed; }
    long end() const { return start + static_cast<long>(duration / 60); }
};

struct announced_service {
    std::size_t line;
    std::size_t object;
    std::uint32_t offset;
    spi::ServElemId service;
    std::string name;
};

struct announcement {
    std::size_t line;
    std::size_t object;
    std::uint32_t offset;  // of the multimedia element
    std::size_t service;   // in history::services
    spi::ServElemId station;
    std::uint8_t format;
    std::uint8_t size_code;
    std::string content_name;
    std::string file;
    spi::ServElemId data_service;
};

struct image_arrival {
    struct use {
        std::size_t announcement;
        spi::logo_refusal refusal;  // none: written
    };
    std::size_t line;
    std::size_t object;
    bool subtype_used = true;    // JFIF or PNG; else it is dropped unseen
    std::vector<use> uses = {};  // empty: no announcement was waiting
};

// A service that had programmes for a day while the clock was in it, and none for the day behind it.
struct missing_tomorrow {
    spi::ServElemId service;
    long day;
    std::size_t line;  // at which the day, or the recording, ended
};

struct clock_period {
    std::size_t line;
    long minute;
};

struct history {
    std::vector<sent_object> objects;
    std::vector<object_arrival> arrivals;
    std::vector<programme_arrival> programmes;
    std::vector<announced_service> services;
    std::vector<announcement> announcements;
    std::vector<image_arrival> images;
    std::vector<missing_tomorrow> missing_tomorrows;
    std::vector<clock_period> clock;               // each SetDateTime with a date
    std::map<spi::ServElemId, std::string> names;  // the latest of each service
    std::set<spi::ServElemId> listened;            // services that were current
    std::vector<call_place> places;                // of a multiplex, by line: see place_words()
    std::set<std::string> cannot_tell;  // content names of which the input does not tell whether they came
    bool cut = false;                   // an object held more records than were looked at

    // The images and programmes of other indices stay in place: nothing is ever removed.
};

}  // namespace dabspi::check
