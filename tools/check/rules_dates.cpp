// Findings that a schedule shows against the clock: a carousel that holds nothing for today, and schedules
// that end soon.

#include <map>
#include <set>
#include <string>

#include "tools/check/input.h"
#include "tools/check/local_day.h"
#include "tools/check/rules.h"

namespace dabspi::check {

namespace {

// What was sent of a service, whether a receiver kept it or not.
struct sent_schedule {
    long first_day = 0;
    long end = 0;  // of the last programme
    bool today = false;
};

std::map<spi::ServElemId, sent_schedule> sent_schedules(const history& in, long today) {
    std::map<spi::ServElemId, sent_schedule> all;
    const long midnight = today * kDayMinutes;
    for (const programme_arrival& each : in.programmes) {
        const bool counts = !each.dropped && (each.filed() || each.decision == spi::filing::minute_taken ||
                                              each.decision == spi::filing::other_day);
        if (!counts || each.unreachable) continue;
        const auto [at, is_new] =
            all.emplace(each.service, sent_schedule{each.start / kDayMinutes, each.end()});
        sent_schedule& of = at->second;
        of.first_day = std::min(of.first_day, each.start / kDayMinutes);
        of.end = std::max(of.end, each.end());
        of.today =
            of.today || each.start / kDayMinutes == today || (each.start < midnight && each.end() > midnight);
    }
    return all;
}

// "3 days", "10 years"
std::string age_text(long minutes) {
    const long days = minutes / kDayMinutes;
    if (days < 2) return minutes_text(minutes);
    return days < 730 ? std::to_string(days) + " days" : std::to_string(days / 365) + " years";
}

std::string nothing_today(long today, const sent_schedule& of, long now) {
    return "for " + day_text(today) + "; " +
           (of.end <= now
                ? "the last one ended " + minute_text(of.end) + ", " + age_text(now - of.end) + " before"
                : "the first one is for " + day_text(of.first_day));
}

}  // namespace

void look_at_dates(const history& in, long ends_within, finding_list& found) {
    if (in.clock.empty()) return;
    const clock_period& now = in.clock.back();
    const long today = now.minute / kDayMinutes;
    const auto schedules = sent_schedules(in, today);
    bool any_today = false;
    sent_schedule whole;
    for (const auto& [service, of] : schedules) {
        any_today = any_today || of.today;
        whole.first_day = whole.end == 0 ? of.first_day : std::min(whole.first_day, of.first_day);
        whole.end = std::max(whole.end, of.end);
    }
    if (!schedules.empty() && !any_today) {
        finding what{finding_code::no_programmes_today, now.line};
        what.text = "no service has a programme " + nothing_today(today, whole, now.minute);
        found.add(what);
    }
    for (const auto& [service, of] : schedules) {
        finding what{finding_code::no_programmes_today, now.line};
        what.service = service;
        if (!of.today) {
            what.text = service_text(service) + " has no programme " + nothing_today(today, of, now.minute);
        } else if (of.end - now.minute < ends_within * 60) {
            what.code = finding_code::schedule_ends;
            what.minute = of.end;
            what.text = service_text(service) + ": the last programme " +
                        (of.end <= now.minute
                             ? "ended " + minute_text(of.end)
                             : "ends " + minute_text(of.end) + ", in " + minutes_text(of.end - now.minute));
        } else {
            continue;
        }
        found.add(what, service_text(service));
    }
}

}  // namespace dabspi::check
