// The simulated ensembles: their services, and the objects that they send on a day.
//
// Shapes (numbers, times, lengths of texts, sizes of images) repeat every kPeriod days and only titles and
// dates go on, so that the library holds as much on one day as on the same day of the next period.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "testkit/ensemble/carousel_object.h"
#include "testkit/spi_builder_objects.h"

namespace soak {

constexpr int kPeriod = 10;  // days
constexpr std::uint8_t kPngFormat = 2;

struct station {
    spi::ServElemId id;
    int coded_offset;  // half-hours; kNoOffset: none is coded
    // A negative offset is read one half-hour longer than it is coded.
    int read_offset;
};
constexpr int kNoOffset = 99;

struct ensemble {
    std::uint16_t eid;
    std::vector<station> stations;
    spi::ServElemId main_service;    // carries the schedules, the common description and most logos
    spi::ServElemId second_service;  // carries a description of each station with a logo of its own
};

ensemble home_ensemble();     // twelve stations
ensemble foreign_ensemble();  // five others

spi_builder::service_id coded_id(const ensemble& e, const spi::ServElemId& id);

// A station's programmes of a local day, in the order in which they are sent, and the same as they are read.
// `revision` 1 has other titles and further programmes, 2 has other titles of the same lengths.
struct day_schedule {
    std::vector<spi_builder::programme_data> coded;
    std::vector<said_programme> said;
    spi_builder::tokens tokens;
};
day_schedule schedule_of(const ensemble& e, int station_index, long day, int revision);

// Every object of a day, in the order of the carousel.
std::vector<carousel_object> carousel_of(const ensemble& e, long day);

// The parts of it: schedules of three days; descriptions and their images; what is broken or hostile.
void add_schedules(std::vector<carousel_object>& objects, const ensemble& e, long day);
void add_descriptions(std::vector<carousel_object>& objects, const ensemble& e, long day);
void add_junk(std::vector<carousel_object>& objects, const ensemble& e, long day);

// As printf does.
[[gnu::format(printf, 1, 2)]] std::string number_text(const char* format, ...);

}  // namespace soak
