#include "tools/check/received_input.h"

#include <unistd.h>

#include <map>
#include <utility>

#include "tools/air/calls/multiplex_calls.h"
#include "tools/air/container/opened_messages.h"
#include "tools/terminal/progress.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

constexpr unsigned kRepetitions = 3;
constexpr std::size_t kMebi = 1024 * 1024;

class call_collector {
 public:
    call_collector(checked_input& to, std::size_t most_bytes) : to_(to), left_(most_bytes) {
        to_.places.emplace_back();  // lines are counted from 1
    }

    // False: no more is taken.
    bool add(call made) {
        if (const auto* const now = std::get_if<set_date_time>(&made.what)) take_clock(*now);
        if (const auto* const fed = std::get_if<feed_mot_body>(&made.what))
            if (!is_wanted(*fed)) return true;
        if (is_full_) return false;
        made.line = to_.places.size();
        to_.places.push_back({made.frame, clock_});
        to_.calls.calls.push_back(std::move(made));
        return true;
    }
    bool is_full() const { return is_full_; }

 private:
    struct version {
        std::shared_ptr<const bytes> body;
        unsigned times = 0;
    };

    void take_clock(const set_date_time& now) {
        clock_ = now.text();
        if (now.date != date_) forget_times();
        date_ = now.date;
    }

    void forget_times() {
        for (auto& [name, known] : known_)
            known.times = 0;
    }

    bool is_wanted(const feed_mot_body& fed) {
        version& known = known_[{fed.service.sid, fed.content_name}];
        if (known.body == nullptr || (known.body != fed.body && *known.body != *fed.body)) {
            is_full_ = is_full_ || fed.body->size() > left_;
            left_ -= is_full_ ? 0 : fed.body->size();
            forget_times();
            known.body = fed.body;
        }
        return ++known.times <= kRepetitions;
    }

    checked_input& to_;
    std::size_t left_;
    bool is_full_ = false;
    std::string clock_;
    std::string date_;
    std::map<std::pair<std::uint32_t, std::string>, version> known_;
};

}  // namespace

checked_input receive(air::opened_frames& in, const std::string& path, const folder_options& options) {
    checked_input to;
    to.calls.name = path == "-" ? "<stdin>" : path;
    const std::string front = printable(to.calls.name) + ": ";
    air::calls_options how;
    how.service = options.service_text;
    air::multiplex_calls calls(*in.frames, how);
    call_collector collected(to, options.limit * kMebi);
    progress_line progress(STDERR_FILENO, ::isatty(STDERR_FILENO) != 0,
                           static_cast<std::size_t>(in.size / kMebi), "MiB");
    while (std::optional<call> next = calls.next()) {
        progress.update(static_cast<std::size_t>(in.frames->position() / kMebi));
        if (!collected.add(std::move(*next))) break;
    }
    progress.erase();
    const std::string why = calls.error().empty() ? air::why_no_frame(in, options.flow) : calls.error();
    if (!why.empty()) to.errors.push_back(front + why);
    if (collected.is_full())
        to.errors.push_back(front + "its objects have more than " + std::to_string(options.limit) +
                            " MiB; --limit raises what is taken");
    for (const std::string& each : {air::flows_to_choose_from(in, options.flow), air::early_end(in)})
        if (!each.empty()) to.said.push_back(each);
    const air::multiplex_reception& reception = calls.reception();
    const auto air = std::make_shared<received_carousels>();
    air->carousels = reception.carousels();
    air->sub_channels = reception.sub_channels();
    air->unreadable = air::unreadable_spi(reception.description());
    air->frames = reception.frames();
    air->has_clock = reception.fic().clock().now().has_value();
    to.air = air;
    return to;
}

}  // namespace dabspi::check
