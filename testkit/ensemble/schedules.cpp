// Schedules: programmes that follow each other, leave gaps, overlap, start in the same minute, run past
// midnight, have no title, or last longer than a day has hours left.
#include <algorithm>

#include "testkit/ensemble/calendar.h"
#include "testkit/ensemble/dice.h"
#include "testkit/ensemble/ensemble.h"

namespace soak {
namespace {

constexpr const char* kTokenTexts[] = {"Nachrichten ", "Das Magazin am ", "Konzert: "};

// A title as it is coded and as it is read. Its length depends on `random` alone, not on the day.
struct title {
    std::string coded;
    std::string read;
};

title title_of(dice& random, long day, int serial, int revision) {
    title t;
    if (random.one_in(3)) {
        const int token = random.below(3);
        t.coded += static_cast<char>(token + 1);
        t.read += kTokenTexts[token];
    }
    if (random.one_in(9)) t.coded += '\x13';  // a token that no table defines: nothing
    std::string rest = number_text("%05u.%02u", static_cast<unsigned>(day), static_cast<unsigned>(serial));
    rest += revision == 0 ? " first" : revision == 1 ? " another " : " again";
    rest.append(static_cast<std::size_t>(random.below(random.one_in(10) ? 200 : 30)), 'x');
    t.coded += rest;
    t.read += rest;
    return t;
}

class schedule_maker {
 public:
    schedule_maker(const ensemble& e, int index, long day, int revision)
        : ensemble_(e),
          station_(e.stations[static_cast<std::size_t>(index)]),
          day_(day),
          revision_(revision) {}

    void add(dice& random, int local_minute, int seconds, bool titled) {
        const title t = titled ? title_of(random, day_, serial_++, revision_) : title{};
        const long utc = day_ * kDayMinutes + local_minute - station_.read_offset * 30;
        spi_builder::programme_data coded;
        spi_builder::names& names = coded.name;
        switch (random.below(4)) {
            case 0: names.long_name = t.coded; break;
            case 1: names = {"short", t.coded.empty() ? "" : "medium", t.coded}; break;
            default: names.medium_name = t.coded; break;
        }
        coded.start.day = static_cast<std::uint32_t>(utc / kDayMinutes);
        coded.start.hour = static_cast<unsigned>(utc % kDayMinutes / 60);
        coded.start.minute = static_cast<unsigned>(utc % 60);
        if (station_.coded_offset != kNoOffset) coded.start.offset_half_hours = station_.coded_offset;
        if (random.one_in(6)) coded.start.fraction = spi_builder::utc_fraction{30, 500};
        coded.duration = static_cast<std::uint16_t>(seconds);
        if (random.one_in(2)) coded.short_id = static_cast<std::uint32_t>(serial_);
        out.coded.push_back(coded);

        said_programme said;
        said.ensemble = ensemble_.eid;
        said.service = station_.id;
        said.programme.name = t.read;
        said.programme.time.mjd = coded.start.day;
        said.programme.time.hour = static_cast<std::uint8_t>(coded.start.hour);
        said.programme.time.minute = static_cast<std::uint8_t>(coded.start.minute);
        said.programme.time.lto = static_cast<std::int8_t>(station_.read_offset);
        said.programme.duration = coded.duration;
        out.said.push_back(said);
    }

    day_schedule out;

 private:
    const ensemble& ensemble_;
    const station& station_;
    const long day_;
    const int revision_;
    int serial_ = 0;
};

}  // namespace

day_schedule schedule_of(const ensemble& e, int station_index, long day, int revision) {
    dice random(e.eid, static_cast<std::uint64_t>(station_index), static_cast<std::uint64_t>(day % kPeriod));
    schedule_maker maker(e, station_index, day, revision);
    const bool own_tokens = station_index % 3 != 1;
    // Every third station begins at midnight; the others' night programme runs on until half past.
    const int first = station_index % 3 == 0 ? 0 : 30;
    int minute = first;
    while (minute < kDayMinutes) {
        int length = 5 * random.between(1, random.one_in(6) ? 40 : 15) + (random.one_in(12) ? 1 : 0);
        const bool last = minute + length >= kDayMinutes;
        if (last) {
            // Into the next day's first programme, until midnight exactly, or to a gap before it.
            const int end = random.one_in(4) ? kDayMinutes - random.below(10) : kDayMinutes + first;
            length = std::max(1, end - minute);
        }
        const bool titled = !(station_index == 5 && minute / 300 == 2 && random.one_in(3));
        const int seconds = length * 60 + (random.one_in(8) ? random.between(1, 59) : 0);
        maker.add(random, minute, random.one_in(60) ? 65535 : std::min(seconds, 65535), titled);
        if (random.one_in(20)) maker.add(random, minute, seconds / 2 + 60, true);  // loses its start minute
        if (last) break;
        minute += length;
        if (random.one_in(10)) {
            if (revision == 1) maker.add(random, minute, 300, true);  // a late addition fills the gap
            minute += random.between(5, 30);
        } else if (random.one_in(12) && length > 10) {
            minute -= 5;
        }
    }
    if (own_tokens) {
        for (std::uint8_t i = 0; i < 3; ++i)
            maker.out.tokens.emplace_back(static_cast<std::uint8_t>(i + 1), kTokenTexts[i]);
    } else {
        // Without a table the token bytes stand for nothing.
        for (said_programme& said : maker.out.said)
            for (const char* const text : kTokenTexts)
                if (said.programme.name.rfind(text, 0) == 0)
                    said.programme.name.erase(0, std::string(text).size());
    }
    return std::move(maker.out);
}

void add_schedules(std::vector<carousel_object>& objects, const ensemble& e, long day) {
    for (int index = 0; index < static_cast<int>(e.stations.size()); ++index) {
        const station& s = e.stations[static_cast<std::size_t>(index)];
        for (long of = day; of < day + 3; ++of) {
            carousel_object object;
            const spi::MotDateTime date = date_time_of(of, 0);
            object.name = number_text("%08u_E1%XPI.EHB", date.year * 10000U + date.month * 100U + date.day,
                                      s.id.sid << 4 | s.id.scids);
            object.content_subtype = kProgrammeInformation;
            object.data_service = e.main_service;
            const auto add_version = [&](int from, int revision) {
                const day_schedule schedule = schedule_of(e, index, of, revision);
                spi_builder::schedule_data data;
                data.programmes = schedule.coded;
                if (index % 4 == 3) {  // each programme names its own service
                    for (spi_builder::programme_data& p : data.programmes)
                        p.bearers = {{0xE1, 0x7777, 0x1234}, coded_id(e, s.id)};
                } else {
                    data.scope = coded_id(e, s.id);
                }
                object.versions.push_back(
                    {from, spi_builder::pi_object({data}, schedule.tokens), schedule.said, {}});
            };
            add_version(0, 0);
            // Some are renewed during the day: with more programmes, or with other titles of the same
            // lengths, which nobody can notice.
            if (of == day && index % 4 == 1) add_version(600 + 17 * index, 1);
            if (of == day + 1 && index % 4 == 2) add_version(720, 2);
            objects.push_back(object);
        }
    }
}

}  // namespace soak
