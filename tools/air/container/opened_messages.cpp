#include "tools/air/container/opened_messages.h"

#include <system_error>

#include "tools/text/utf8.h"

namespace dabspi::air {

namespace {

std::string destinations(const capture_reader& capture) {
    std::string text;
    for (const edi_flow& each : capture.flows())
        text += " " + destination_text(each.flow);
    return text;
}

}  // namespace

std::string why_no_frame(const opened_frames& in, const std::string& flow) {
    if (in.frames->statistics().frames != 0) return {};
    if (in.capture == nullptr) return "there is no whole frame in it";
    if (in.capture->flows().empty()) return "the capture holds no EDI (AF packets or PF fragments in UDP)";
    if (in.capture->chosen() != nullptr)
        return "the flow " + destination_text(in.capture->chosen()->flow) + " gives no frame";
    return "no flow of EDI goes to " + printable(flow) + "; there are" + destinations(*in.capture);
}

std::string flows_to_choose_from(const opened_frames& in, const std::string& flow) {
    if (in.capture == nullptr || in.capture->flows().size() < 2 || !flow.empty() ||
        in.capture->chosen() == nullptr)
        return {};
    return "the capture holds " + std::to_string(in.capture->flows().size()) + " flows of EDI; " +
           destination_text(in.capture->chosen()->flow) + " is read. Choose with --flow from" +
           destinations(*in.capture);
}

std::string early_end(const opened_frames& in) {
    if (in.read_error() != 0)
        return "cannot be read to its end: " + std::generic_category().message(in.read_error());
    if (in.capture != nullptr && !in.capture->error().empty())
        return "the capture ends early: " + printable(in.capture->error());
    return {};
}

}  // namespace dabspi::air
