#include "examples/generator/day_on_air.h"

#include <functional>
#include <map>

#include "examples/generator/carousel.h"
#include "examples/generator/scene.h"

namespace generator {

using namespace spi_builder;

namespace {

constexpr int objects_a_minute = 5;
constexpr int day_minutes = 1440;

constexpr int at(int hour, int minute) {
    return hour * 60 + minute;
}
constexpr int next_day(int hour, int minute) {
    return day_minutes + at(hour, minute);
}

// Minutes count from the first day's midnight. What happens in a minute happens after its clock tick, in the
// order in which it was planned.
class day_plan {
 public:
    explicit day_plan(file_set& files) : files_(files) {}

    void note(int minute, const std::string& text) {
        plan(minute, [text](recording& out) { out.comment(text); });
    }

    void listen(int minute, const service_id& service, const std::string& why) {
        note(minute, why);
        plan(minute, [service](recording& out) { out.set_current_service(service); });
    }

    void home_carousel(int minute) { carousel(minute, home_round(date_of(minute), files_)); }
    void other_carousel(int minute) { carousel(minute, other_round(date_of(minute), files_)); }

    // Ticks every minute from `first` to `last`.
    void play(int first, int last, recording& out) const {
        for (int minute = first; minute <= last; ++minute) {
            out.set_date_time(date_of(minute), time_of(minute));
            const auto here = plan_.equal_range(minute);
            for (auto step = here.first; step != here.second; ++step)
                step->second(out);
        }
    }

 private:
    using action = std::function<void(recording&)>;

    static std::string date_of(int minute) { return minute < day_minutes ? today : tomorrow; }

    static std::string time_of(int minute) {
        const int shown = minute % day_minutes / 60 * 100 + minute % 60;
        const std::string digits = std::to_string(shown);
        return std::string(4 - digits.size(), '0') + digits;
    }

    void plan(int minute, action what) { plan_.emplace(minute, std::move(what)); }

    void carousel(int minute, const std::vector<carousel_object>& round) {
        int sent = 0;
        for (const carousel_object& object : round) {
            plan(minute + sent++ / objects_a_minute,
                 [object](recording& out) { out.feed_file(object.header, object.path); });
        }
    }

    file_set& files_;
    std::multimap<int, action> plan_;
};

}  // namespace

void add_day_on_air(file_set& files) {
    day_plan day(files);
    const auto station = [](std::size_t number) { return home_stations().at(number - 1).id; };

    day.listen(at(5, 0), station(1), "The receiver starts on Quillhaven One.");
    day.note(at(5, 0),
             "The carousel's first round. The service information comes in its middle: of the stations "
             "before it the\n"
             "logos are lost for now, of those after it they are written.");
    day.home_carousel(at(5, 0));
    day.note(at(8, 0), "The second round brings the logos that the first one lost. Nothing else is new.");
    day.home_carousel(at(8, 0));
    day.listen(at(8, 40), station(12), "Orbitale News: half-hours, titles made of tokens.");
    day.listen(at(9, 40), station(8), "Tidepool Jazz: a gap from 10:00 to 10:05, an overlap at 12:00.");
    day.home_carousel(at(11, 30));
    day.listen(at(12, 10), station(3), "Radio Zwölfklang.");
    day.listen(at(12, 11), station(3), "The same service again: nothing.");
    day.home_carousel(at(15, 0));
    day.listen(at(15, 45), station(6),
               "Pine & Copper: names with quotation marks, backslash and angle brackets.");
    day.listen(at(17, 40), station(4), "Café Nocturne.");
    day.home_carousel(at(19, 0));
    day.listen(at(20, 30), station(5), "Lanternfish Talk: odd minutes.");
    day.listen(at(21, 50), station(9), "Kitestring Kids is off the air since 19:00: no now, no next.");
    day.listen(at(22, 15), station(10), "Anvilwood Rock: Night Shift runs from 22:00 to 01:00.");
    day.home_carousel(at(22, 45));
    day.listen(at(23, 20), station(1),
               "Quillhaven One: Small Print ends at midnight, Night Currents follows.");
    day.note(next_day(0, 0),
             "Midnight has struck. Small Print's end minute; the change is reported at 00:01.");
    day.note(next_day(0, 2),
             "The carousel of the new day: yesterday's schedules are gone, those of tomorrow are new. The "
             "service\n"
             "information is read again, so logos are written again.");
    day.home_carousel(next_day(0, 2));
    day.listen(
        next_day(0, 20), station(7),
        "Řeka Radio: its Mlha (23:30 to 00:45) was retired with yesterday, so there is no now before 00:45.");
    day.listen(next_day(1, 30), station(11), "Blåtimen through the night, until after its change at 06:00.");
    day.home_carousel(next_day(4, 30));
    day.listen(next_day(6, 10), station(1), "Quillhaven One.");
    day.listen(next_day(7, 0), gullmere(), "Another ensemble: everything of the first one is forgotten.");
    day.other_carousel(next_day(7, 1));
    day.other_carousel(next_day(7, 20));
    day.listen(next_day(7, 40), station(12),
               "Back on the first ensemble, whose carousel starts from nothing.");
    day.home_carousel(next_day(7, 41));
    day.home_carousel(next_day(8, 10));

    recording out;
    out.comment(
        "A day on air: from 05:00 on Tuesday, 10 March 2026, to 09:00 on the next day, local time (UTC and "
        "one hour).\n"
        "Twelve invented stations on one ensemble, three on another. The clock ticks every minute; the "
        "carousel\n"
        "repeats its objects every few hours.");
    day.play(at(5, 0), next_day(9, 0), out);
    files.add("day-on-air.jsonl", out.text());
}

}  // namespace generator
