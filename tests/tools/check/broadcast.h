// Small broadcasts for the tests of `dabspi check`: a clean one, in which nothing is found, and the pieces to
// spoil it with.
//
// The station is E1.C221.0 on ensemble C185, the data service 0xE1C00098, the day 10 March 2026, local time
// is UTC and one hour.
#pragma once

#include <string>
#include <vector>

#include "testkit/spi_builder_objects.h"
#include "tools/check/report.h"
#include "tools/recording/recording.h"

namespace check_test {

using spi_builder::bytes;

constexpr std::uint16_t kEnsemble = 0xC185;
const spi_builder::service_id kStation{0xE1, kEnsemble, 0xC221, 0};
const std::uint32_t kToday = spi_builder::mjd(2026, 3, 10);

// Calls of a host, a line each.
class broadcast {
 public:
    broadcast& clock(const std::string& date, const std::string& time);
    broadcast& listen(std::uint32_t sid = 0xC221, std::uint16_t ensemble = kEnsemble);
    broadcast& pi(const std::string& name, const bytes& object) { return feed(7, 1, name, object); }
    broadcast& si(const std::string& name, const bytes& object) { return feed(7, 0, name, object); }
    broadcast& image(const std::string& name, const bytes& body, std::uint16_t subtype = 3) {
        return feed(2, subtype, name, body);
    }
    broadcast& feed(std::uint8_t type, std::uint16_t subtype, const std::string& name, const bytes& body,
                    std::uint32_t data_service = 0xE1C00098);

    std::size_t lines() const { return calls_.calls.size(); }
    const dabspi::recording& calls() const { return calls_; }

    // Played and looked at, as the command does it.
    dabspi::check::check_report check(dabspi::check::severity from = dabspi::check::severity::note) const;

 private:
    template <class Call>
    broadcast& add(Call what);

    dabspi::recording calls_;
};

spi_builder::programme_data programme(const std::string& name, std::uint32_t day, unsigned hour,
                                      unsigned minute, unsigned minutes);
// Four programmes from midnight to midnight: "Night", "Morning", "Afternoon", "Evening".
std::vector<spi_builder::programme_data> whole_day(std::uint32_t day);
// A schedule object of these programmes for the station.
bytes schedule_object(const std::vector<spi_builder::programme_data>& programmes,
                      const spi_builder::tokens& table = {});

spi_builder::logo_data logo(const std::string& name, std::uint16_t width, std::uint16_t height);
spi_builder::service_data station_with(const std::vector<spi_builder::logo_data>& logos);
bytes information_object(const spi_builder::service_data& service);

bytes png(unsigned width, unsigned height);

// Clock, service: what every broadcast begins with, at 00:00.
broadcast tuned();
// Service information with two logos, the logos, today and tomorrow.
broadcast clean();
// The same with other schedules for today.
broadcast with_today(const bytes& object);

// The names of the codes that were found, in order, each once.
std::vector<std::string> codes(const dabspi::check::check_report& of);
// The first finding of a code; null when there is none.
const dabspi::check::finding* find(const dabspi::check::check_report& of, dabspi::check::finding_code code);

}  // namespace check_test
