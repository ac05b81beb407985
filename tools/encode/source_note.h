// Something to say about a place in a source file: an error, a warning, or what was left out.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace dabspi {

struct source_note {
    std::size_t line = 0;    // from 1; 0: the file as a whole
    std::size_t column = 0;  // in characters, from 1
    std::string where;       // "epg/schedule/programme/@shortId"; may be empty
    std::string text;        // what is wrong, without a full stop
    std::string remedy;      // what to do about it; may be empty
};

// "pi.xml:12:8: schedule/programme/@shortId: what is wrong; what to do about it", safe for a terminal.
std::string note_text(const std::string& file, const source_note& note);

}  // namespace dabspi
