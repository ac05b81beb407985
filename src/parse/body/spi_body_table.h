// Which SPI objects have been parsed already: a carousel repeats them all day.
//
// On the parser worker's thread only. Grows with every new service and content name, until it is emptied.
// Ordered: a broadcast chooses the keys, and could give them all one hash value.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "src/parse/mot_date_time.h"
#include "src/parse/serv_elem_id.h"

namespace spi {

// What a date from the host does to the table.
enum class date_effect : std::uint8_t { same_day, first_date, emptied };

// A new day empties the table, so that each object is parsed again. Only the day field is compared: from 2
// March to 2 April is deliberately no change. The very first date empties nothing. `last` is the latest date
// that was no same_day; year 0: none yet.
date_effect effect_of_date(const MotDateTime& last, const MotDateTime& now);

class SpiBodyTable {
 public:
    // True when an object of this name and size (bytes) was seen on this service; otherwise it is remembered.
    // Only the size tells a new version: an object that changes without changing its size is deliberately
    // taken as already parsed.
    bool has_body(const std::string& name, unsigned size, const ServElemId& service);

    void clear() { bodies_.clear(); }

 private:
    using name_table = std::map<std::string, std::uint32_t>;
    std::map<ServElemId, name_table> bodies_;
};

}  // namespace spi
