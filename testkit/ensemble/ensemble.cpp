#include "testkit/ensemble/ensemble.h"

#include <cstdarg>
#include <cstdio>

namespace soak {
namespace {

station make_station(std::uint32_t sid, std::uint8_t scids, int coded_offset) {
    int read = coded_offset == kNoOffset ? 0 : coded_offset;
    if (read < 0) read -= 1;
    return {{sid, 0xE1, scids}, coded_offset, read};
}

}  // namespace

std::string number_text(const char* format, ...) {
    char text[120];
    va_list values;
    va_start(values, format);
    std::vsnprintf(text, sizeof text, format, values);
    va_end(values);
    return text;
}

ensemble home_ensemble() {
    ensemble e{0xC181, {}, {0xE1C00221, 0xE1, 0}, {0xE1C00222, 0xE1, 0}};
    constexpr int offsets[] = {2, kNoOffset, 2, -3, 11, 2, 0, -20, 2, 24, 2, 2};
    for (unsigned i = 0; i < 12; ++i)
        e.stations.push_back(make_station(0xC221 + i, 0, offsets[i]));
    e.stations[3].id = {0xC223, 0xE1, 1};       // a secondary component of the station before
    e.stations[10].id = {0xE1234567, 0xE1, 0};  // a data service: its logos are never written
    return e;
}

ensemble foreign_ensemble() {
    ensemble e{0xD3A7, {}, {0xE1D00331, 0xE1, 0}, {0xE1D00332, 0xE1, 0}};
    for (unsigned i = 0; i < 5; ++i)
        e.stations.push_back(make_station(0xD310 + i, 0, i == 2 ? -2 : 2));
    return e;
}

spi_builder::service_id coded_id(const ensemble& e, const spi::ServElemId& id) {
    return {id.ecc, e.eid, id.sid, id.scids};
}

std::vector<carousel_object> carousel_of(const ensemble& e, long day) {
    std::vector<carousel_object> objects;
    add_schedules(objects, e, day);
    add_descriptions(objects, e, day);
    add_junk(objects, e, day);
    return objects;
}

}  // namespace soak
