// Small recordings: the change of the day.
#include "examples/generator/scene.h"

namespace generator {

using namespace spi_builder;

namespace {

constexpr int one_hour_east = 2;  // half-hours

void across_midnight(file_set& files) {
    scene s("programme-across-midnight",
            "A programme that runs past midnight is followed by the one that starts at its end minute on the "
            "next\n"
            "day. The change of the date retires the old day's schedule; the programme itself goes on.\n"
            "Times are coded in UTC with an offset of one hour: local midnight is 23:00 UTC.");
    s.clock(today, "2230");
    s.listen(quillhaven());
    s.pi("pi-1a01-10",
         schedule_of(quillhaven(), {local_show(today, "2200", 60, "Evening Tide", one_hour_east),
                                    local_show(today, "2300", 120, "Night Ferry", one_hour_east)}));
    s.pi("pi-1a01-11",
         schedule_of(quillhaven(), {local_show(tomorrow, "0100", 60, "Small Hours", one_hour_east),
                                    local_show(tomorrow, "0200", 60, "Slow Air", one_hour_east)}));
    s.note("Night Ferry; Small Hours is found in tomorrow's schedule.");
    s.clock(today, "2300");
    s.clock(today, "2301");
    s.clock(today, "2359");
    s.note("The new day changes nothing while Night Ferry lasts.");
    s.clock(tomorrow, "0000");
    s.clock(tomorrow, "0001");
    s.clock(tomorrow, "0100");
    s.clock(tomorrow, "0101");
    s.save(files);
}

void until_midnight(file_set& files) {
    scene s("programme-until-midnight",
            "A programme that ends exactly at midnight is followed by the one that starts at minute 0 of the "
            "next\n"
            "day. Midnight is its end minute and still belongs to it.");
    s.clock(today, "2330");
    s.listen(quillhaven());
    s.pi("pi-1a01-10", schedule_of(quillhaven(), {show(today, "2300", 60, "Small Print")}));
    s.note("What follows is known only with tomorrow's schedule.");
    s.pi("pi-1a01-11", schedule_of(quillhaven(), {show(tomorrow, "0000", 60, "Night Currents"),
                                                  show(tomorrow, "0100", 60, "Slow Air")}));
    s.clock(today, "2359");
    s.clock(tomorrow, "0000");
    s.clock(tomorrow, "0001");
    s.save(files);
}

void overlap_at_midnight(file_set& files) {
    scene s("overlap-at-midnight-shows-tomorrows-programme",
            "Once now runs past midnight the search goes on in tomorrow's schedule, for now as well as for "
            "next. If\n"
            "nothing there starts at the end minute, the next arriving programme starts a search that takes "
            "what\n"
            "tomorrow's schedule has at this time of the day.");
    s.clock(today, "2330");
    s.listen(quillhaven());
    s.pi("pi-1a01-10", schedule_of(quillhaven(), {show(today, "2300", 120, "Night Ferry")}));
    s.note(
        "Small Hours overlaps Night Ferry (it should start at 01:00): no next, but the search has moved to\n"
        "tomorrow. Evening Tide, tomorrow from 22:00 to 23:45, then counts as now.");
    s.pi("pi-1a01-11", schedule_of(quillhaven(), {show(tomorrow, "0030", 60, "Small Hours"),
                                                  show(tomorrow, "2200", 105, "Evening Tide")}));
    s.clock(today, "2331");
    s.note("After midnight it stays until a programme has begun.");
    s.clock(tomorrow, "0000");
    s.clock(tomorrow, "0029");
    s.clock(tomorrow, "0030");
    s.save(files);
}

void switch_after_midnight(file_set& files) {
    scene s("service-change-after-midnight-misses-the-night-programme",
            "The programme that began yesterday was retired with yesterday's schedule. Who tunes in after "
            "midnight\n"
            "gets no now before a programme of the new day has begun.");
    s.clock(today, "2330");
    s.listen(fennmark());
    s.pi("pi-1a01-10", schedule_of(quillhaven(), {show(today, "2300", 90, "Night Ferry")}));
    s.pi("pi-1a01-11", schedule_of(quillhaven(), {show(tomorrow, "0030", 60, "Small Hours"),
                                                  show(tomorrow, "0130", 60, "Slow Air")}));
    s.note("Tuning in before midnight finds Night Ferry and what follows it.");
    s.listen(quillhaven());
    s.listen(fennmark());
    s.clock(tomorrow, "0000");
    s.note("After midnight: nothing, until Small Hours begins (reported at its first minute).");
    s.listen(quillhaven());
    s.clock(tomorrow, "0029");
    s.clock(tomorrow, "0030");
    s.save(files);
}

void only_today_and_tomorrow(file_set& files) {
    scene s("only-today-and-tomorrow",
            "Programmes of the host's date and of the day after are kept, all others are dropped. After "
            "midnight\n"
            "the broadcaster's repetition is read again, and what was too far ahead now counts as tomorrow.");
    const bytes four_days = schedule_of(
        quillhaven(),
        {show("20260309", "0900", 60, "Monday at Nine"), show("20260310", "1000", 60, "Tuesday at Ten"),
         show("20260311", "1300", 60, "Wednesday at One"), show("20260312", "1400", 60, "Thursday at Two")});
    s.clock(today, "1015");
    s.listen(quillhaven());
    s.note("Tuesday, 10 March: Tuesday's and Wednesday's programmes are kept.");
    s.pi("pi-1a01", four_days);
    s.note("The same object again on the same day is not read again.");
    s.pi("pi-1a01", four_days);
    s.note(
        "Wednesday: the repetition is read. Thursday's programme is new, Wednesday's is there already. "
        "Nothing\n"
        "covers the time, so Tuesday at Ten stays.");
    s.clock(tomorrow, "0000");
    s.pi("pi-1a01", four_days);
    s.clock(tomorrow, "1300");
    s.save(files);
}

void same_start_minute(file_set& files) {
    scene s("same-start-minute-on-the-next-day-is-no-change",
            "Whether now has changed is judged by the start minute of the day alone. A programme that starts "
            "at the\n"
            "same minute as the last known one, a day later, is taken for the same and not reported.");
    s.clock(today, "1015");
    s.listen(quillhaven());
    s.pi("pi-1a01-10", schedule_of(quillhaven(), {show(today, "1000", 60, "Morning Post")}));
    s.pi("pi-1a01-11", schedule_of(quillhaven(), {show(tomorrow, "1000", 60, "Another Morning"),
                                                  show(tomorrow, "1200", 60, "Midday Table")}));
    s.clock(today, "1101");
    s.clock(tomorrow, "0000");
    s.note("Another Morning runs, but Morning Post of yesterday stays.");
    s.clock(tomorrow, "1000");
    s.clock(tomorrow, "1030");
    s.note("Midday Table starts at another minute.");
    s.clock(tomorrow, "1200");
    s.save(files);
}

}  // namespace

void add_midnight_scenes(file_set& files) {
    across_midnight(files);
    until_midnight(files);
    overlap_at_midnight(files);
    switch_after_midnight(files);
    only_today_and_tomorrow(files);
    same_start_minute(files);
}

}  // namespace generator
