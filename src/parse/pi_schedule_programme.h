// One programme of a schedule: what programme information gives, what the database stores, what now and next
// are.
#pragma once

#include <cstdint>
#include <string>

#include "src/parse/mot_date_time.h"
#include "src/parse/serv_elem_id.h"
#include "src/parse/spi_time_point.h"

namespace spi {

struct EnsemblesNamed;
class spi_parseable;
class SpiTokenTable;

struct PiScheduleProgramme {
    // The ensemble that the object was received on; bearers on others are not accepted.
    std::uint16_t eid = 0;
    // Programme short identifier, 24 bits. 0 if absent, 0xFFFFFF if its attribute is shorter than three
    // bytes, 0xFFFFFFFF if the attribute is among the last three bytes of the body.
    std::uint32_t crid = 0;
    ServElemId bearer;           // the service that the programme itself names; zero if none was accepted
    std::string name;            // after token expansion; empty if none
    SpiTimePoint time;           // start
    std::uint16_t duration = 0;  // seconds; 0 if absent, 65535 if its attribute is too short

    // Reads a programme element (TS 102 371, 0x1C). These all return 0: what is short or missing leaves its
    // mark in the fields, see above. `named` notes which ensembles the bearers name.
    int parse(spi_parseable& programme, SpiTokenTable& tokens, EnsemblesNamed* named = nullptr);
    int parse_name(spi_parseable& name_element, SpiTokenTable& tokens);
    int parse_crid(spi_parseable& attr);
    int parse_location(spi_parseable& location, EnsemblesNamed* named = nullptr);
    int parse_time(spi_parseable& time_element);
    int parse_bearer(spi_parseable& bearer_element, EnsemblesNamed* named = nullptr);

    // One line for logs: "09:05 Morning news (30min)".
    std::string sig() const;

    // True when `now` (local time) lies within the programme, its start and its end minute included. Both
    // ends count: at the end minute of one programme and the start of the next, both match. Deliberate; it is
    // why now changes one minute after the end.
    bool match_tp(const MotDateTime& now) const;
};

}  // namespace spi
