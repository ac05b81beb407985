// Words for tests of the reader and of what is read through it: built bytes under a cursor or a scope.
#pragma once

#include <ostream>
#include <string>

#include "src/parse/mot_date_time.h"
#include "src/parse/reader/read_buffer.h"
#include "src/parse/reader/spi_parseable.h"
#include "src/parse/reader/spi_token_table.h"
#include "src/parse/serv_elem_id.h"
#include "testkit/bodies.h"

// A cursor at the first byte.
inline spi::ReadBuffer buffer_of(const spi_builder::bytes& bytes) {
    return spi::ReadBuffer(body_of(bytes));
}

// The first element in `bytes`, open; what follows it can only be seen by a read that leaves the element.
class element_of {
 public:
    explicit element_of(const spi_builder::bytes& bytes) : buffer(body_of(bytes)), scope(buffer) {}
    operator spi::spi_parseable&() { return scope; }

    spi::ReadBuffer buffer;
    spi::spi_parseable scope;
};

// A name of a programme or a service: an element with one text.
inline spi_builder::bytes name_of(std::uint8_t tag, const char* value) {
    return spi_builder::elem(tag, {spi_builder::text(value)});
}

// A token table as an object would define it.
inline spi::SpiTokenTable table_of(const spi_builder::bytes& element) {
    spi::SpiTokenTable table;
    element_of read(element);
    table.parse(read);
    return table;
}

inline spi::ServElemId service_of(std::uint8_t ecc, std::uint32_t sid, std::uint8_t scids = 0) {
    spi::ServElemId id;
    id.ecc = ecc;
    id.sid = sid;
    id.scids = scids;
    return id;
}

inline spi::MotDateTime date_time_of(unsigned year, unsigned month, unsigned day, unsigned hour = 0,
                                     unsigned minute = 0) {
    spi::MotDateTime t;
    t.year = static_cast<std::uint16_t>(year);
    t.month = static_cast<std::uint8_t>(month);
    t.day = static_cast<std::uint8_t>(day);
    t.hour = static_cast<std::uint8_t>(hour);
    t.minute = static_cast<std::uint8_t>(minute);
    return t;
}

namespace spi {

// How failing tests print these.
inline void PrintTo(const ServElemId& id, std::ostream* out) {
    *out << "ecc " << unsigned{id.ecc} << " sid " << id.sid << " scids " << unsigned{id.scids};
}
inline void PrintTo(const MotDateTime& t, std::ostream* out) {
    *out << unsigned{t.year} << '-' << unsigned{t.month} << '-' << unsigned{t.day} << ' ' << unsigned{t.hour}
         << ':' << unsigned{t.minute};
}

}  // namespace spi
