#include "tests/tools/check/shown.h"

namespace check_test {

using namespace spi_builder;
using dabspi::check::finding_code;

namespace {

// Programmes without a scope, each with this bearer.
bytes scopeless(std::vector<programme_data> programmes, const std::vector<spi_builder::service_id>& bearers) {
    for (programme_data& each : programmes)
        each.bearers = bearers;
    schedule_data schedule;
    schedule.programmes = programmes;
    return pi_object({schedule});
}

bytes spoilt(const std::function<void(std::vector<programme_data>&)>& how) {
    auto day = whole_day(kToday);
    how(day);
    return schedule_object(day);
}

}  // namespace

std::vector<shown> shown_by_programmes() {
    return {
        {finding_code::no_scope_no_bearer, [] { return with_today(scopeless(whole_day(kToday), {})); },
         kPiLine, "today.ehb", "\"Night\""},
        {finding_code::no_service,
         [] {
             return with_today(scopeless(whole_day(kToday), {{0, kEnsemble, 0xC221, 0}}));
         },
         kPiLine, "today.ehb", "reads as zero"},
        {finding_code::other_ensemble,
         [] {
             return with_today(scopeless(whole_day(kToday), {{0xE1, 0xC181, 0xC221, 0}}));
         },
         kPiLine, "today.ehb", "names ensemble 0xC181, and the receiver is on 0xC185"},
        {finding_code::before_ensemble,
         [] {
             return broadcast().clock("20260310", "0000").pi("early.ehb", schedule_object(whole_day(kToday)));
         },
         2, "early.ehb", "names ensemble 0xC185"},
        {finding_code::before_date,
         [] { return broadcast().listen().pi("early.ehb", schedule_object(whole_day(kToday))); }, 2,
         "early.ehb", "\"Night\", 2026-03-10 00:00 of E1.C221.0"},
        {finding_code::other_day,
         [] { return clean().pi("later.ehb", schedule_object(whole_day(kToday + 2))); }, 9, "later.ehb",
         "2026-03-12 00:00"},
        {finding_code::no_start,
         [] { return with_today(spoilt([](auto& day) {
                  day.front().start = {0, 0, 0, {}, {}};
              })); }, kPiLine,
         "today.ehb", "\"Night\""},
        {finding_code::start_out_of_day,
         [] { return with_today(spoilt([](auto& day) {
                  day.back().start = {kToday + 1, 0, 10, -2, {}};
              })); },
         kPiLine, "today.ehb", "\"Evening\" starts at 2026-03-10 22:40"},
        {finding_code::no_title,
         [] { return with_today(spoilt([](auto& day) {
                  day.front().name = {"Night", "", ""};
              })); }, kPiLine,
         "today.ehb", "2026-03-10 00:00, 6 h"},
        {finding_code::no_duration,
         [] { return with_today(spoilt([](auto& day) { day.front().duration = 59; })); }, kPiLine,
         "today.ehb", "59 s"},
        {finding_code::duration_wrapped,
         [] {
             // 20 hours, cut to 16 bits.
             return with_today(spoilt([](auto& day) {
                 day = {programme("Marathon", kToday, 0, 0, 0), programme("Evening", kToday, 20, 0, 240)};
                 day.front().duration = 72000 - 65536;
             }));
         },
         kPiLine, "today.ehb", "coded 1 h 47 min, and the next programme starts after 20 h"},
        {finding_code::same_start,
         [] {
             return with_today(
                 spoilt([](auto& day) { day.push_back(programme("Special", kToday, 6, 0, 60)); }));
         },
         kPiLine, "today.ehb",
         "\"Special\", 2026-03-10 06:00 for 1 h comes after \"Morning\" for 6 h, line 6"},
    };
}

std::vector<shown> shown_by_schedules() {
    return {
        {finding_code::gap, [] { return with_today(spoilt([](auto& day) { day[1].duration = 359 * 60; })); },
         kPiLine, "today.ehb", "11:59 to 12:00 (1 min): no next while \"Morning\" is on"},
        {finding_code::overlap,
         [] { return with_today(spoilt([](auto& day) { day[1].duration = 361 * 60; })); }, kPiLine,
         "today.ehb",
         "\"Afternoon\" starts 1 min before \"Morning\" ends, which has no next; it is now from 12:01 on"},
        {finding_code::uncovered,
         [] { return with_today(spoilt([](auto& day) { day.erase(day.begin()); })); }, kPiLine, "today.ehb",
         "00:00 to 06:00 (6 h)"},
        {finding_code::no_tomorrow,
         [] { return tuned().pi("today.ehb", schedule_object(whole_day(kToday))); }, 3, "",
         "has programmes for 2026-03-10, and none for the day after", false},
        {finding_code::no_programmes_today,
         [] { return tuned().pi("pi.ehb", schedule_object(whole_day(kToday + 3))); }, 1, "",
         "no service has a programme for 2026-03-10; the first one is for 2026-03-13", false},
        {finding_code::schedule_ends,
         [] { return tuned().clock("20260310", "0100").pi("pi.ehb", schedule_object(whole_day(kToday))); }, 3,
         "", "E1.C221.0: the last programme ends 2026-03-11 00:00, in 23 h", false},
        {finding_code::nothing_on,
         [] {
             return with_today(spoilt([](auto& day) { day[1].duration = 300 * 60; }))
                 .clock("20260310", "1030")
                 .clock("20260310", "1130")
                 .clock("20260310", "1201");
         },
         10, "", "from 2026-03-10 11:30 to 2026-03-10 12:01: kept showing \"Morning\"", false},
    };
}

}  // namespace check_test
