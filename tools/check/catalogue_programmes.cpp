// Single programmes: which are dropped, and which are not what they seem.

#include "tools/check/catalogue_entries.h"

namespace dabspi::check {

const std::vector<catalogue_entry>& programme_entries() {
    static const std::vector<catalogue_entry> entries = {
        {finding_code::no_scope_no_bearer, "no-scope-no-bearer", severity::error,
         "no schedule scope and no bearer",
         "Nothing in the object says which service the programme belongs to, so it is dropped.",
         "Give the schedule a scope with a serviceScope, or each programme a bearer in its location.",
         "A receiver takes the service of a programme from the schedule's scope, else from the "
         "programme's own bearer. The data service and the content name of the object are not looked at, "
         "however clearly the name of a file may say what is meant."},
        {finding_code::no_service, "no-service", severity::error, "no usable service",
         "The programme names a service on this ensemble whose SId or ECC reads as zero, and is dropped.",
         "Code ECC and SId of the service in the scope or in the bearer.",
         "A service identifier counts only when neither its SId nor its ECC is zero. Encoders that fill "
         "in the ECC from a setting nobody made send zeros."},
        {finding_code::other_ensemble, "other-ensemble", severity::warning, "for another ensemble",
         "Identifiers are accepted only when they name the ensemble that is being received; the "
         "programme has no other and is dropped.",
         "Send each ensemble's schedules with that ensemble's EId.",
         "An object may carry scopes or bearers for several ensembles; the receiver keeps those of the "
         "ensemble that the host names with the current service. It remembers the object as read all the "
         "same: after a change of ensemble everything is forgotten and read anew.\n"
         "\n"
         "Note that the EId of the scope is compared, not that of the service information, and that a "
         "wrong EId in a regional copy of a schedule makes the whole schedule disappear."},
        {finding_code::before_ensemble, "before-ensemble", severity::warning, "before the ensemble is known",
         "Until the host has named an ensemble no identifier is accepted; the object is dropped and "
         "remembered as read.",
         "Nothing on the broadcaster's side: the host should set the current service before it feeds "
         "objects.",
         "The object's repetitions are passed over too, because name and size are known by then, until "
         "the day changes or the ensemble does. From no ensemble to the first one nothing is forgotten."},
        {finding_code::before_date, "before-date", severity::warning, "before the first date",
         "Programmes that arrive before the host has set a date are dropped, and their object is not "
         "read again.",
         "Nothing on the broadcaster's side: the host should set date and time before it feeds objects.",
         "The database needs the date to tell today and tomorrow from other days. The first date does "
         "not make objects be read again; only the next change of the day does. So a receiver that gets "
         "the clock late shows nothing until midnight."},
        {finding_code::other_day, "other-day", severity::note, "neither today nor tomorrow",
         "Receivers of this kind keep today and tomorrow; programmes of other days are dropped, and read "
         "again when the day changes.",
         "Nothing needs to be done, as long as today and tomorrow are among what is sent.",
         "The local date of the start decides, by the object's own offset. At a change of day all "
         "objects are read again when the carousel repeats them, and what was ahead then finds its "
         "place. Programmes of past days only cost capacity."},
        {finding_code::no_start, "no-start", severity::error, "a programme without a start time",
         "Without a time element, or with day 0, a programme has no place in a schedule and is dropped.",
         "Give each programme a location with a time.",
         "The start is the time attribute of the time element in the location. A programme with relative "
         "times only, or with an empty location, has none."},
        {finding_code::start_out_of_day, "start-out-of-day", severity::error,
         "a start that no search reaches",
         "The local start lies before midnight of the coded day, and is filed under a minute that is "
         "never looked for.",
         "West of Greenwich, code the time in UTC without an offset, or accept that these programmes are "
         "not shown.",
         "With a negative offset the local start of a programme early in the UTC day falls on the day "
         "before. The day is found correctly, but the minute of the day becomes negative and wraps to "
         "more than 65,000. Such a programme is kept and reported, with an impossible time, and is never "
         "now or next."},
        {finding_code::no_title, "no-title", severity::warning, "a programme without a title",
         "Only long and medium names are read for programmes; one without counts as not set, is reported "
         "again every minute, and has no next.",
         "Give each programme a medium name; short names alone are not enough.",
         "A programme whose title is empty is found as now at every tick of the clock and reported again "
         "each time, since an empty now counts as none. Next is not looked for."},
        {finding_code::no_duration, "no-duration", severity::warning, "a programme without a duration",
         "A programme of no minutes never covers the time, so it is never now.",
         "Code the duration attribute of the time element, in seconds.",
         "Durations are cut to whole minutes: less than 60 seconds counts as none. The programme can be "
         "next, and then disappears when its time has come."},
        {finding_code::duration_wrapped, "duration-wrapped", severity::error, "a duration that wrapped",
         "A duration has 16 bits; beyond 65,535 seconds it starts from zero again and the programme ends "
         "too early.",
         "Split programmes that last longer than 18 hours and 12 minutes.",
         "The coded duration and the start of the following programme differ by exactly 65,536 seconds "
         "(or a multiple), within a minute: the encoder kept the low 16 bits. The receiver shows the "
         "programme as ended, keeps it on the display and has no next."},
        {finding_code::same_start, "same-start", severity::warning, "two programmes for one start minute",
         "The first programme for a start minute wins; later ones are neither shown nor reported.",
         "Remove the duplicate; to change a title within the day, nothing helps but another start minute.",
         "The database keeps one programme for each start minute of a day. A corrected title in a new "
         "version of the object comes too late: the first one stays until the receiver changes the "
         "ensemble. This is also how a changed duration is lost."},
    };
    return entries;
}

const std::vector<catalogue_entry>& schedule_entries() {
    static const std::vector<catalogue_entry> entries = {
        {finding_code::gap, "gap", severity::warning, "a gap between two programmes",
         "Next is the programme that starts in the very minute in which now ends; after a gap of one "
         "minute there is none.",
         "Let each programme end when the next one starts; adjust durations rather than starts.",
         "While the programme before the gap is on, the receiver shows no next at all. During the gap it "
         "keeps showing the programme that has ended. Encoders that round durations down to five "
         "minutes, or take the news out of the schedule, make such gaps all day."},
        {finding_code::overlap, "overlap", severity::warning, "programmes that overlap",
         "The programme that started first is now until its end, and unless another one starts exactly "
         "there it has no next.",
         "Cut the earlier programme's duration at the start of the later one.",
         "The search for now takes the first programme in the order of start minutes that covers the "
         "time. The later programme appears only when the earlier one has ended, if it still runs then. "
         "Around midnight there is more: once now runs past midnight the search goes on in tomorrow's "
         "schedule, and tomorrow's programme can appear before its time."},
        {finding_code::uncovered, "uncovered", severity::note, "part of a day without programmes",
         "At these times of the day nothing is in the schedule; the receiver shows what was on before, "
         "or nothing.",
         "Cover the whole day, 00:00 to 24:00, if the station is on air.",
         "Only the time before the first programme and after the last one is named here; what lies "
         "between two programmes is a gap. A last programme that ends before midnight has no next."},
        {finding_code::no_tomorrow, "no-tomorrow", severity::warning, "a last day with no tomorrow behind it",
         "The programme that runs to or past midnight looks for its next in tomorrow's schedule, and "
         "there is none.",
         "Send tomorrow's schedule in time, at the latest when the last programme of the day begins.",
         "Receivers keep today and tomorrow. When now ends at midnight or later, next is looked for in "
         "the service's second day. If that has not been received, there is no next, and at the change "
         "of day the service has no schedule at all until the new day's objects are received."},
        {finding_code::no_programmes_today, "no-programmes-today", severity::error, "nothing for today",
         "What is sent holds no programme for the day of the receiver's clock; a service shows nothing, "
         "whatever else its schedule says.",
         "Look whether the carousel is still fed: what it holds is old, or dated wrongly.",
         "Looked at is the last day of a call recording's clock, or the day that --date gives; where the "
         "date "
         "of a folder is guessed nothing can be stale. It is said of each service that has programmes for "
         "other "
         "days only, and once of all when none has programmes for this day."},
        {finding_code::schedule_ends, "schedule-ends", severity::warning, "a schedule that ends soon",
         "The last programme that is sent for the service ends within a day (or within --ends-within HOURS), "
         "and then the receiver has nothing more to show.",
         "Send the following days in time.",
         "Counted is from the end of a call recording's clock, or from the date and time that --date gives, "
         "to "
         "the end of the last programme of the service, on whatever day. A carousel that is not fed any more "
         "shows here first."},
        {finding_code::nothing_on, "nothing-on", severity::warning,
         "nothing, or something else, while listening",
         "No stored programme covers the time; the receiver keeps what it showed before, or shows "
         "nothing.",
         "Send the schedule of the service, without gaps.",
         "This is what the replay showed on the service that was being listened to, from one clock tick "
         "to another. Reasons are a gap in the schedule, a schedule that had not been received yet, and "
         "a night programme that began yesterday: after a change of service past midnight it is not "
         "found any more, because yesterday was dropped. Programmes that overlap at midnight can show "
         "tomorrow's programme before its time."},
    };
    return entries;
}

}  // namespace dabspi::check
