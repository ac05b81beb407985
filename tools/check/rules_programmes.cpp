// Findings in single programmes: those that are dropped, and those that are kept and not shown as they were
// meant.

#include <string>

#include "tools/check/input.h"
#include "tools/check/local_day.h"
#include "tools/check/rules.h"
#include "tools/text/hexadecimal.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

std::string shown(const programme_arrival& of) {
    return (of.name.empty() ? "a programme without a title" : in_quotes(of.name)) +
           (of.time.mjd == 0 ? "" : ", " + minute_text(of.start));
}

void note_without_service(const programme_arrival& of, const spi::no_service& why, finding what,
                          finding_list& found) {
    const std::string names = shown(of) + " names ensemble " + hexadecimal(why.ensemble, 4);
    switch (why.reason) {
        case spi::no_service::not_named:
            what.code = finding_code::no_scope_no_bearer;
            what.text = shown(of);
            break;
        case spi::no_service::zero_identifier:
            what.code = finding_code::no_service;
            what.text = shown(of) + ": its SId or ECC reads as zero";
            break;
        case spi::no_service::other_ensemble:
            what.code = of.ensemble == 0 ? finding_code::before_ensemble : finding_code::other_ensemble;
            what.text = names;
            if (of.ensemble != 0) what.text += ", and the receiver is on " + hexadecimal(of.ensemble, 4);
            break;
    }
    found.add_of_object(what, std::to_string(of.offset));
}

void note_taken_minute(const history& in, const programme_arrival& of, finding what, finding_list& found) {
    const programme_arrival& holder = in.programmes[of.holder];
    const bool same = holder.name == of.name && holder.duration / 60 == of.duration / 60;
    const bool repeated = same && (holder.line != of.line || holder.offset == of.offset);
    if (repeated) return;
    what.code = finding_code::same_start;
    what.text = shown(of) + " for " + minutes_text(of.duration / 60) + " comes after " +
                in_quotes(holder.name) + " for " + minutes_text(holder.duration / 60) + ", " +
                place_words(in.places, holder.line);
    found.add(what, std::to_string(of.offset));
}

void note_filed(const programme_arrival& of, finding what, finding_list& found) {
    const std::string key = std::to_string(of.offset);
    if (of.unreachable) {
        what.code = finding_code::start_out_of_day;
        what.text = in_quotes(of.name) + " starts at " + minute_text(of.start) +
                    ", before the day that its time is coded with; it is reported as " +
                    of.time.local_time(0).time();
        found.add(what, key);
    }
    if (of.name.empty()) {
        what.code = finding_code::no_title;
        what.text = minute_text(of.start) + ", " + minutes_text(of.duration / 60);
        found.add(what, key);
    }
    if (of.duration < 60) {
        what.code = finding_code::no_duration;
        what.text = shown(of) + ": " + std::to_string(of.duration) + " s";
        found.add(what, key);
    }
}

}  // namespace

void look_at_programmes(const history& in, finding_list& found) {
    for (const programme_arrival& each : in.programmes) {
        finding what{finding_code::other_day, each.line, each.object, each.offset};
        const std::string key = std::to_string(each.offset);
        if (each.dropped) {
            note_without_service(each, *each.dropped, what, found);
            continue;
        }
        what.service = each.service;
        what.minute = each.start;
        switch (each.decision) {
            case spi::filing::filed: note_filed(each, what, found); break;
            case spi::filing::minute_taken: note_taken_minute(in, each, what, found); break;
            case spi::filing::before_date:
                what.code = finding_code::before_date;
                what.text = shown(each) + " of " + service_text(each.service);
                found.add_of_object(what, key);
                break;
            case spi::filing::without_start:
                what.code = finding_code::no_start;
                what.text = shown(each) + " of " + service_text(each.service);
                what.minute.reset();
                found.add_of_object(what, key);
                break;
            case spi::filing::other_day:
                what.code = finding_code::other_day;
                what.text = shown(each) + " of " + service_text(each.service);
                found.add_of_object(what, key);
                break;
        }
    }
}

}  // namespace dabspi::check
