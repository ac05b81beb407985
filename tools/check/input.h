// What there is to check: a recording as it is, a multiplex or a folder of bodies turned into one.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "src/parse/mot_date_time.h"
#include "src/parse/serv_elem_id.h"
#include "tools/check/call_place.h"
#include "tools/recording/recording.h"
#include "tools/text/dab_identifier.h"

namespace dabspi::check {

// For a folder, which has neither clock nor ensemble of its own. What is not given is guessed.
struct folder_options {
    std::optional<spi::MotDateTime> clock = {};
    std::optional<dab_identifier> service = {};
    std::optional<dab_identifier> ensemble = {};
    std::size_t limit = 256;  // MiB that are read; of a recording, too
    // Of a multiplex: as multiplex_calls take it, a label or "all" as well; and of a capture.
    std::string service_text = {};
    std::string flow = {};
    std::string fic = {};  // see air::open_options
    int address = -1;
};

struct received_carousels;

// Where the clock comes from: only a true one tells whether a schedule is stale.
enum class clock_source { none, guessed, true_clock };

struct checked_input {
    recording calls;                                // playable; of a folder: clock, service, then its objects
    bool folder = false;                            // no line means anything: the names below do
    std::vector<call_place> places;                 // of a multiplex, by line
    std::shared_ptr<const received_carousels> air;  // of a multiplex
    std::vector<std::string> files;                 // of a folder: the body's file by line
    std::vector<std::string> said;                  // what was guessed or left out, printable, in words
    clock_source clock = clock_source::true_clock;
    std::optional<std::uint8_t> ecc;  // of the ensemble, of a folder
    std::set<std::string>
        cannot_tell;                  // content names of which a folder does not tell whether they were sent
    std::vector<std::string> errors;  // printable; with any, nothing can be checked

    // "day.jsonl:12", "dump/si.bin", "a.eti, frame 7"; the name of the whole for line 0.
    std::string location(std::size_t line) const;
};

// `path` is a recording, a multiplex, a folder of bodies, one body, or "-" for a recording or a multiplex on
// standard input. A tree of
// folders gives one input for each ensemble; everything else gives one.
std::vector<checked_input> read_inputs(const std::string& path, const folder_options& options);

// The same for a recording in memory.
checked_input input_of(recording from);

// "2026-03-10" (then at noon), "2026-03-10T07:00", also without "-" and ":"; "today" (at noon) and "now" by
// this computer's clock. Nothing for another text.
std::optional<spi::MotDateTime> parse_clock(const std::string& text);
std::string service_text(const spi::ServElemId& service);
// As the library has it.
spi::ServElemId id_of(const service_id& service);

}  // namespace dabspi::check
