// What the replay showed on the service that was being listened to, tick by tick: times at which it showed
// nothing, or a programme that was over.

#include <optional>
#include <string>

#include "tools/check/input.h"
#include "tools/check/local_day.h"
#include "tools/check/rules.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

bool is_set(const programme& of) {
    return !of.name.empty() || of.start != spi::SpiTimePoint().local_time(0);
}

class listening {
 public:
    explicit listening(finding_list& found) : found_(found) {}

    void tune(const set_current_service& call) {
        const spi::ServElemId service = id_of(call.service);
        if (service == service_ && call.ensemble == ensemble_) return;
        end(clock_);
        service_ = service;
        ensemble_ = call.ensemble;
        now_.reset();
    }

    void show(const now_next& pair) { now_ = pair.now; }

    void tick(std::size_t line, const spi::MotDateTime& clock) {
        if (clock.year == 0) return;
        clock_ = minute_of(clock);
        if (service_.sid == 0 || service_.ecc == 0) return;
        if (covers(clock_)) return end(clock_);
        if (since_ && showing(clock_) == showed_) return;
        end(clock_);
        since_ = clock_;
        line_ = line;
        showed_ = showing(clock_);
    }

    void end(long minute) {
        if (since_) {
            finding what{finding_code::nothing_on, line_};
            what.service = service_;
            what.minute = *since_;
            what.text = service_text(service_) + ", from " + minute_text(*since_) +
                        (minute > *since_ ? " to " + minute_text(minute) : "") + ": " + showed_;
            found_.add(what, std::to_string(line_));
        }
        since_.reset();
    }

    long clock() const { return clock_; }

 private:
    bool covers(long minute) const {
        if (!now_ || !is_set(*now_)) return false;
        const long start = minute_of(now_->start);
        return minute >= start && minute <= start + now_->duration;
    }

    std::string showing(long minute) const {
        if (!now_ || !is_set(*now_)) return "showed nothing";
        const long start = minute_of(now_->start);
        // Its start minute is all that a receiver compares: it may be tomorrow's.
        if (start > minute)
            return "showed " + in_quotes(now_->name) + ", which starts at " + minute_text(start);
        return "kept showing " + in_quotes(now_->name);
    }

    finding_list& found_;
    spi::ServElemId service_;
    std::uint16_t ensemble_ = 0;
    std::optional<programme> now_;  // as told; of no service, nothing
    long clock_ = 0;
    std::optional<long> since_;
    std::size_t line_ = 0;
    std::string showed_;  // when it began
};

}  // namespace

void look_at_listening(const recording& played, const replay_result& replayed, finding_list& found) {
    listening receiver(found);
    auto next = replayed.all.begin();
    for (const call& each : played.calls) {
        if (const auto* tuned = std::get_if<set_current_service>(&each.what)) receiver.tune(*tuned);
        for (; next != replayed.all.end() && next->line <= each.line; ++next)
            if (const auto* pair = std::get_if<now_next>(&next->what)) receiver.show(*pair);
        if (const auto* ticked = std::get_if<set_date_time>(&each.what)) {
            spi::MotDateTime clock;
            clock.put_date(ticked->date);
            clock.put_time(ticked->time);
            receiver.tick(each.line, clock);
        }
    }
    receiver.end(receiver.clock());
}

}  // namespace dabspi::check
