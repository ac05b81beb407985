// Findings in the schedule of a service: what lies between its programmes, and around them.

#include <algorithm>
#include <cstdlib>
#include <string>

#include "tools/check/input.h"
#include "tools/check/local_day.h"
#include "tools/check/rules.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

constexpr long kWrap = 65536;  // seconds

std::string title(const programme_arrival& of) {
    return of.name.empty() ? "a programme without a title" : in_quotes(of.name);
}

finding finding_at(finding_code code, const programme_arrival& of) {
    finding what{code, of.line, of.object, of.offset};
    what.service = of.service;
    what.minute = of.start;
    return what;
}

// The following programme starts where this one would end, had its duration more bits.
bool wrapped(const programme_arrival& of, const programme_arrival& next) {
    const long missing = (next.start - of.start) * 60 - static_cast<long>(of.duration);
    const long wraps = (missing + kWrap / 2) / kWrap;
    return wraps >= 1 && wraps <= 3 && std::labs(missing - wraps * kWrap) < 60;
}

class schedule_rules {
 public:
    schedule_rules(const history& in, const service_schedule& schedule, finding_list& found)
        : in_(in), schedule_(schedule), found_(found) {}

    void look() {
        for (const schedule_boundary& each : boundaries_of(in_, schedule_))
            between(in_.programmes[each.first], in_.programmes[each.second]);
        if (!schedule_.programmes.empty()) around();
    }

 private:
    const programme_arrival& at(std::size_t i) const { return in_.programmes[schedule_.programmes[i]]; }

    std::string name() const { return service_text(schedule_.service); }

    bool starts_at(long minute) const {
        const auto found =
            std::partition_point(schedule_.programmes.begin(), schedule_.programmes.end(),
                                 [&](std::size_t i) { return in_.programmes[i].start < minute; });
        return found != schedule_.programmes.end() && in_.programmes[*found].start == minute;
    }

    void between(const programme_arrival& of, const programme_arrival& next) {
        if (of.end() > next.start) return overlap(of, next);
        if (wrapped(of, next)) {
            finding what = finding_at(finding_code::duration_wrapped, of);
            what.text = title(of) + ", " + minute_text(of.start) + ": coded " +
                        minutes_text(of.duration / 60) + ", and the next programme starts after " +
                        minutes_text(next.start - of.start);
            found_.add(what, std::to_string(of.offset));
            return;
        }
        finding what = finding_at(finding_code::gap, of);
        what.minute = of.end();
        what.text = name() + ", " + minute_text(of.end()) + " to " +
                    (next.start / kDayMinutes == of.end() / kDayMinutes ? clock_text(next.start)
                                                                        : minute_text(next.start)) +
                    " (" + minutes_text(next.start - of.end()) + "): no next while " + title(of) + " is on";
        found_.add(what, std::to_string(of.offset));
    }

    void overlap(const programme_arrival& of, const programme_arrival& next) {
        finding what = finding_at(finding_code::overlap, next);
        const bool has_next = starts_at(of.end());
        what.text = name() + ", " + minute_text(next.start) + ": " + title(next) + " starts " +
                    minutes_text(of.end() - next.start) + " before " + title(of) + " ends" +
                    (has_next ? "" : ", which has no next") +
                    (next.end() <= of.end() ? "; it is never now"
                                            : "; it is now from " + clock_text(of.end()) + " on");
        found_.add(what, std::to_string(next.offset));
    }

    void around() {
        const programme_arrival& first = at(0);
        const programme_arrival* last = &first;
        for (const std::size_t i : schedule_.programmes)
            if (in_.programmes[i].end() > last->end()) last = &in_.programmes[i];
        long from = first.start / kDayMinutes * kDayMinutes;
        // Before its first clock, the receiver missed nothing.
        for (const clock_period& each : in_.clock)
            if (each.minute / kDayMinutes == first.start / kDayMinutes) {
                from = std::max(from, each.minute);
                break;
            }
        if (first.start > from) uncovered(first, from, first.start);
        const long midnight = (last->end() + kDayMinutes - 1) / kDayMinutes * kDayMinutes;
        if (last->end() < midnight && last->start / kDayMinutes == last->end() / kDayMinutes)
            uncovered(*last, last->end(), midnight);
    }

    void uncovered(const programme_arrival& beside, long from, long to) {
        finding what = finding_at(finding_code::uncovered, beside);
        what.minute = from;
        what.text = name() + ", " + minute_text(from) + " to " +
                    (to % kDayMinutes == 0 ? "24:00" : clock_text(to)) + " (" + minutes_text(to - from) + ")";
        found_.add(what, name() + minute_text(from));
    }

    const history& in_;
    const service_schedule& schedule_;
    finding_list& found_;
};

}  // namespace

void look_at_schedules(const history& in, const std::vector<service_schedule>& schedules,
                       finding_list& found) {
    for (const service_schedule& each : schedules)
        schedule_rules(in, each, found).look();
    for (const missing_tomorrow& each : in.missing_tomorrows) {
        finding what{finding_code::no_tomorrow, each.line};
        what.service = each.service;
        what.minute = each.day * kDayMinutes;
        what.text = service_text(each.service) + " has programmes for " + day_text(each.day) +
                    ", and none for the day after";
        found.add(what, service_text(each.service) + day_text(each.day));
    }
}

}  // namespace dabspi::check
