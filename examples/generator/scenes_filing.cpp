// Small recordings: which programmes and which objects are taken at all.
#include "examples/generator/scene.h"

namespace generator {

using namespace spi_builder;

namespace {

void first_programme_wins(file_set& files) {
    scene s("first-programme-for-a-minute-wins",
            "One programme is kept for each start minute of a service's day: the first that came. A later "
            "one for\n"
            "the same minute is dropped, whatever its title or length.");
    s.clock(today, "1015");
    s.listen(quillhaven());
    s.pi("pi-1a01-a", schedule_of(quillhaven(), {show(today, "1000", 60, "First Title"),
                                                 show(today, "1100", 60, "Quay Notes")}));
    s.note("Another object: a changed title for 10:00 (dropped), a new programme for 12:00 (kept).");
    s.pi("pi-1a01-b", schedule_of(quillhaven(), {show(today, "1000", 120, "Changed Title"),
                                                 show(today, "1200", 60, "Midday Table")}));
    s.clock(today, "1101");
    s.save(files);
}

void changed_object_of_equal_size(file_set& files) {
    scene s("changed-object-of-equal-size",
            "An object counts as already read when its service, its content name and its size are known. A "
            "changed\n"
            "object of the same size is therefore passed over; one byte more and it is read.");
    s.clock(today, "1015");
    s.listen(quillhaven());
    s.pi("pi-1a01", schedule_of(quillhaven(), {show(today, "1000", 60, "Morning Post")}));
    s.note("Another time and title, the same size: passed over.");
    s.pi("pi-1a01", schedule_of(quillhaven(), {show(today, "1100", 60, "Evening Post")}));
    s.note("One byte more: read.");
    s.pi("pi-1a01", schedule_of(quillhaven(), {show(today, "1100", 60, "Evening Posts")}));
    s.note("The first size again: read again (only the last size is remembered), 10:00 is there already.");
    s.pi("pi-1a01", schedule_of(quillhaven(), {show(today, "1000", 60, "Morning Post")}));
    s.save(files);
}

void too_early(file_set& files) {
    scene s("objects-before-ensemble-or-date-are-lost",
            "Before a service has been set no ensemble is known, and an object's programmes are not "
            "accepted; before\n"
            "a date has been set no programme can be filed. Each object was read all the same, so its "
            "repetitions are\n"
            "passed over until the day changes.");
    const bytes schedule = schedule_of(
        quillhaven(), {show(tomorrow, "0800", 60, "Morning Post"), show(tomorrow, "0900", 60, "Quay Notes")});
    s.note("No ensemble, no date: lost.");
    s.pi("pi-1a01-early", schedule);
    s.listen(quillhaven());
    s.note("The ensemble is known, the date is not: lost as well.");
    s.pi("pi-1a01", schedule);
    s.clock(today, "1030");
    s.note("Repetitions of both: passed over.");
    s.pi("pi-1a01-early", schedule);
    s.pi("pi-1a01", schedule);
    s.note("On the next day the repetition is read.");
    s.clock(tomorrow, "0830");
    s.pi("pi-1a01", schedule);
    s.save(files);
}

void cut_short(file_set& files) {
    scene s("object-cut-short",
            "Of an object that was cut short, everything that stood whole before the cut is used. What is "
            "missing\n"
            "reads as all ones; a programme without a start day is dropped.");
    const bytes whole = schedule_of(
        quillhaven(), {show(today, "1000", 60, "Morning Post"), show(today, "1100", 60, "Quay Notes"),
                       show(today, "1200", 60, "Midday Table")});
    s.clock(today, "1030");
    s.listen(quillhaven());
    s.note("Cut inside the third name: two programmes.");
    constexpr std::size_t time_and_duration = 14;  // location, time and duration with their tags and lengths
    s.pi("pi-1a01", cut(whole, whole.size() - time_and_duration - 5));
    s.note("Cut inside the third duration: it reads as 65535 seconds, 1092 minutes.");
    s.pi("pi-1a01", cut(whole, whole.size() - 1));
    s.note("The whole object: its programmes are there already, the first for a minute wins.");
    s.pi("pi-1a01", whole);
    s.clock(today, "1101");
    s.note("Midday Table now seems to last until 06:12 tomorrow; tomorrow's schedule is not known.");
    s.clock(today, "1201");
    s.save(files);
}

void negative_offset(file_set& files) {
    scene s("negative-local-time-offset",
            "A negative local time offset is read one half-hour larger than it was coded: one hour west of "
            "UTC comes\n"
            "out as one and a half. A programme that this moves before midnight belongs to the day before, "
            "but its\n"
            "minute of the day wraps around and it can never be now.");
    constexpr int one_hour_west = -2;
    s.clock(today, "0845");
    s.listen(quillhaven());
    s.note("Coded for 09:00 local time (10:00 UTC); read as 08:30.");
    s.pi("pi-1a01",
         schedule_of(quillhaven(), {local_show(today, "0900", 60, "Morning Post", one_hour_west)}));
    s.note(
        "Coded for 23:30 on the 10th (00:30 UTC on the 11th); read as one hour before the 11th began:\n"
        "it is filed for the 10th and its time comes out as 67:16.");
    s.pi("pi-1a01-late",
         schedule_of(quillhaven(), {local_show(today, "2330", 30, "Night Ferry", one_hour_west)}));
    s.clock(today, "2315");
    s.save(files);
}

}  // namespace

void add_filing_scenes(file_set& files) {
    first_programme_wins(files);
    changed_object_of_equal_size(files);
    too_early(files);
    cut_short(files);
    negative_offset(files);
}

}  // namespace generator
