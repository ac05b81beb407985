// What is fed to the library: objects as a broadcaster codes them, made by the tests' builder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "src/parse/mot_body.h"
#include "src/parse/mot_date_time.h"
#include "src/parse/pi_schedule_programme.h"
#include "src/parse/serv_elem_id.h"
#include "testkit/spi_builder_objects.h"

namespace bench {

constexpr std::uint16_t kEnsemble = 0xCE15;
constexpr std::uint8_t kEcc = 0xE1;
constexpr unsigned kMinutesOfTwoDays = 2 * 1440;

// Today is 10 March 2026.
std::uint32_t today();
spi::MotDateTime clock_at(unsigned minute_of_day);

// Stations have the identifiers 0x1000, 0x1001, ...
spi::ServElemId station(unsigned number);

// How a programme object is coded.
struct coding {
    bool tokens = false;       // names use a token table of eight entries
    bool descriptions = true;  // genre and a short description, which are passed over
    bool scope = true;         // without it no programme has a service, and no event is made of it
};

// `count` programmes of one station, spread evenly over today and tomorrow. About 250 bytes a programme with
// its description, 90 without.
spi_builder::bytes programme_object(unsigned station_number, unsigned count, const coding& how);

// `count` services with two names, a bearer and four logos each.
spi_builder::bytes service_object(unsigned count, bool tokens);

// The programme that starts at `minute` of today and the next days, half an hour long, as the database gets
// it.
spi::PiScheduleProgramme programme_at(unsigned minute);

}  // namespace bench
