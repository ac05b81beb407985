// Recordings and multiplexes.
#include "tools/air/calls/multiplex_calls.h"
#include "tools/air/calls/open_calls.h"
#include "tools/air/container/opened_messages.h"
#include "tools/replay/replay_input.h"
#include "tools/terminal/interrupt.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::size_t kBytesOfMebibyte = 1024 * 1024;
// What a logo may have: those of a multiplex are not known before.
constexpr std::size_t kLogo = 64 * 1024;

struct played_multiplex {
    air::opened_frames in;
    std::unique_ptr<air::multiplex_calls> calls;
    std::string name;
    std::string flow;
};

// The calls belong to the multiplex.
class calls_of_multiplex final : public call_source {
 public:
    explicit calls_of_multiplex(std::shared_ptr<played_multiplex> of) : of_(std::move(of)) {}
    std::optional<call> next() override { return of_->calls->next(); }
    std::string error() const override {
        std::string text = of_->calls->error();
        if (text.empty() && interrupt_watch::noted() == 0) text = air::why_no_frame(of_->in, of_->flow);
        return text.empty() ? text : printable(of_->name) + ": " + text;
    }

 private:
    std::shared_ptr<played_multiplex> of_;
};

std::vector<std::string> remarks_on(const played_multiplex& of) {
    std::vector<std::string> all;
    const std::string front = printable(of.name) + ": ";
    const std::string flows = air::flows_to_choose_from(of.in, of.flow);
    if (!flows.empty()) all.push_back(front + flows);
    const std::string early = air::early_end(of.in);
    if (!early.empty()) all.push_back(front + early);
    if (of.calls->reception().carousels().empty() && of.calls->error().empty() &&
        of.in.frames->statistics().frames != 0)
        all.push_back(front + "no SPI that can be read is announced; \"dabspi scan\" says what there is");
    if (of.calls->objects_dropped() != 0)
        all.push_back(front + std::to_string(of.calls->objects_dropped()) +
                      " objects were dropped: too much came at a time");
    return all;
}

}  // namespace

replay_input open_replay_input(const replay_input_options& options) {
    air::open_options how;
    how.flow = options.flow;
    how.fic = options.fic;
    how.address = options.address;
    how.given_up = [] { return interrupt_watch::noted() != 0; };
    air::opened_calls opened = air::open_calls(options.path, how, recording_limits::of(options.limit));
    if (!opened.error.empty()) {
        replay_input none;
        none.errors.push_back(opened.error);
        return none;
    }
    if (!opened.is_multiplex())
        return replay_of_recording(std::make_shared<recording>(std::move(opened.recorded)), options);
    const auto of = std::make_shared<played_multiplex>();
    of->in = std::move(opened.multiplex);
    of->name = options.path == "-" ? "<stdin>" : options.path;
    of->flow = options.flow;
    air::calls_options calls;
    calls.service = options.service;
    calls.which = options.deliver_once ? air::delivery::once : air::delivery::every;
    calls.given_up = how.given_up;
    of->calls = std::make_unique<air::multiplex_calls>(*of->in.frames, calls);
    replay_input in;
    in.calls = std::make_unique<calls_of_multiplex>(of);
    in.endless = true;
    in.largest_image = kLogo;
    in.total = static_cast<std::size_t>(of->in.size / kBytesOfMebibyte);
    in.things = "MiB";
    in.position = [of] { return static_cast<std::size_t>(of->in.frames->position() / kBytesOfMebibyte); };
    in.remarks = [of] { return remarks_on(*of); };
    in.owner = of;
    return in;
}

}  // namespace dabspi
