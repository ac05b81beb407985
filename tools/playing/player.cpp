#include "tools/playing/player.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <stdexcept>

#include "src/server/spi_server.h"
#include "tools/playing/library_interface.h"
#include "tools/playing/notification_queue.h"

namespace dabspi {

namespace {

using std::chrono::milliseconds;

// Long waits come in pieces, so that a user who has seen enough is not kept waiting for a library that hangs.
constexpr milliseconds kWaitStep{500};

// What one more call may add to the wait at the end when there was none before.
constexpr milliseconds kUnwaitedCall{100};

class player {
 public:
    player(const player_settings& settings, const player_hooks& hooks)
        : settings_(settings),
          hooks_(hooks),
          library_((settings.api == library_api::wrapper ? start_wrapper : start_core)(settings.storage_path,
                                                                                       queue_)) {}

    play_end play(call_source& from) {
        if (settings_.wait_after_each_call && !settle()) return end_;
        std::size_t unwaited = 0;
        while (const std::optional<call> next = from.next()) {
            at_.line = next->line;
            std::visit([this](const auto& what) { feed(what); }, next->what);
            ++fed_;
            ++unwaited;
            if (settings_.wait_after_each_call ? !settle() : !settle_unwaited(unwaited, false)) return end_;
            if (!go_on()) return end_;
        }
        if (!settings_.wait_after_each_call && !settle_unwaited(unwaited, true)) return end_;
        return play_end::finished;
    }

 private:
    void feed(const set_date_time& call) {
        spi::MotDateTime now;
        now.put_date(call.date);
        now.put_time(call.time);
        at_.clock = now;
        library_->set_date_time(now);
    }
    void feed(const set_current_service& call) {
        at_.service = call.service;
        library_->set_current_service(call.service, call.ensemble);
    }
    void feed(const feed_mot_body& call) { library_->feed(call); }
    void feed(const resend_now_next&) { library_->resend_now_next(); }

    bool go_on() {
        if (!hooks_.go_on || hooks_.go_on(fed_)) return true;
        end_ = play_end::stopped;
        return false;
    }

    // Of `unwaited` calls, when there are many, or at the end.
    bool settle_unwaited(std::size_t& unwaited, bool at_end) {
        if (!at_end && (settings_.most_unwaited == 0 || unwaited < settings_.most_unwaited)) return true;
        at_ = {};  // the notifications came at moments that nobody knows
        const bool quiet = settle(settings_.longest_wait + unwaited * kUnwaitedCall);
        unwaited = 0;
        return quiet;
    }

    // Waits for quiet and passes on what has come. False with end_ set when that is the end.
    bool settle() { return settle(settings_.longest_wait); }
    bool settle(milliseconds left) {
        bool quiet = false;
        for (; !quiet && left > milliseconds(0); left -= kWaitStep) {
            quiet = spi::wait_until_quiet(std::min(left, kWaitStep));
            if (!quiet && !go_on()) break;
        }
        if (!quiet) {
            library_->abandon();
            if (end_ != play_end::stopped) end_ = play_end::not_quiet;
        }
        for (const notification& what : queue_->take()) {
            if (hooks_.notify(what, at_)) continue;
            end_ = play_end::stopped;
            return false;
        }
        return quiet;
    }

    const player_settings& settings_;
    const player_hooks& hooks_;
    std::shared_ptr<notification_queue> queue_ = std::make_shared<notification_queue>();
    std::unique_ptr<library_interface> library_;
    notification_time at_;
    std::size_t fed_ = 0;
    play_end end_ = play_end::finished;
};

}  // namespace

play_end play(call_source& from, const player_settings& settings, const player_hooks& hooks) {
    return player(settings, hooks).play(from);
}

play_end play(const recording& from, const player_settings& settings, const player_hooks& hooks) {
    if (!from.errors.empty()) throw std::invalid_argument("a recording with errors cannot be played");
    recorded_calls calls(from);
    return play(calls, settings, hooks);
}

void refuse_missing_calls(recording& in, library_api api) {
    if (api == library_api::core) return;
    for (const call& each : in.calls) {
        if (std::holds_alternative<resend_now_next>(each.what))
            in.errors.push_back(
                {each.line, "ResendNowNext exists on the core interface only; use --api core"});
    }
    std::stable_sort(in.errors.begin(), in.errors.end(),
                     [](const recording_error& a, const recording_error& b) { return a.line < b.line; });
}

}  // namespace dabspi
