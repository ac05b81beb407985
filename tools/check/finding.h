// One thing that a receiver will not show as it was meant, or that somebody should know: where it is, and
// what it is. Why it is so and how it is remedied stands in the catalogue (tools/check/catalogue.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "src/parse/serv_elem_id.h"
#include "tools/check/catalogue.h"

namespace dabspi::check {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

struct finding {
    finding_code code;
    std::size_t line = 0;        // of the recording; 0: of no single line
    std::size_t object = kNone;  // in history::objects
    std::optional<std::uint32_t> byte = {};
    std::optional<spi::ServElemId> service = {};  // whose programmes or logos are concerned
    std::optional<long> minute = {};              // where in its schedule: minutes since 1858-11-17, local
    std::string text = {};                        // what was found, printable, without a full stop
    std::size_t more = 0;                         // of the same in this object, beyond this one
};

}  // namespace dabspi::check
