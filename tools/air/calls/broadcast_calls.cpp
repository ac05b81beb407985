#include "tools/air/calls/broadcast_calls.h"

#include <cstdio>

#include "tools/air/calls/service_choice.h"
#include "tools/air/frame.h"
#include "tools/text/utf8.h"

namespace dabspi::air {

namespace {

constexpr std::uint64_t kLongestHold = 10'000 / kMillisecondsOfFrame;
// A FIC says all of an ensemble's services within this time: what is new after it is a change.
constexpr std::uint64_t kSettled = 500 / kMillisecondsOfFrame;

std::string digits(unsigned value, int count) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*u", count, value);
    return text;
}

set_date_time date_time_of(const local_minute& of) {
    return {digits(static_cast<unsigned>(of.year), 4) + digits(of.month, 2) + digits(of.day, 2),
            digits(of.hour, 2) + digits(of.minute, 2)};
}

}  // namespace

const char* const kAllServices = "all";

void broadcast_calls::ensemble_changed(const ensemble& now) {
    ensemble_ = now;
    changed_ = frame_;
    if (!holding_ && now.eid && now.eid != eid_) begin_holding();
}

// Another ensemble: what comes is held until its service and its clock are known.
void broadcast_calls::begin_holding() {
    holding_ = true;
    holding_since_ = frame_;
    minute_.reset();
}

void broadcast_calls::minute(const local_minute& begun) {
    minute_ = begun;
    if (!holding_) add_minute(frame_);
}

void broadcast_calls::object(const spi_component& from, const mot_object& received) {
    if (bytes_ + received.body->size() > kMostBytes) {
        ++objects_dropped_;
        return;
    }
    feed_mot_body fed;
    fed.content_type = received.header.content_type;
    fed.content_subtype = received.header.content_subtype;
    fed.content_name = received.header.name.value_or(std::string());
    fed.service = data_service_of(from, ensemble_.ecc.value_or(0));
    fed.body = received.body;
    bytes_ += received.body->size();
    call made;
    made.frame = received.frame;
    made.what = std::move(fed);
    (holding_ ? held_ : ready_).push_back(std::move(made));
    fed_since_visit_ = true;
}

void broadcast_calls::frame_taken(std::uint64_t frame) {
    frame_ = frame;
    if (!holding_) return;
    if (is_ready() || frame_ - holding_since_ >= kLongestHold || bytes_ > kMostBytes / 2) release();
}

bool broadcast_calls::is_ready() const {
    const std::string wanted = wanted_ == kAllServices ? "" : wanted_;
    return ensemble_.eid && ensemble_.ecc && minute_ && frame_ - changed_ >= kSettled &&
           choose_service(ensemble_, wanted).has_value();
}

void broadcast_calls::release() {
    const std::string wanted = wanted_ == kAllServices ? "" : wanted_;
    const auto chosen = choose_service(ensemble_, wanted);
    if (!chosen && !wanted.empty() && !service_) {
        const std::string there = services_text(ensemble_);
        error_ = "there is no service " + in_quotes(wanted_) + " in this multiplex; there " +
                 (there.empty() ? "is none at all" : "are " + there);
        return;
    }
    // Without audio the ensemble alone counts: programmes are read for it.
    if (chosen || wanted.empty()) service_ = chosen.value_or(service_id{0, ensemble_.ecc.value_or(0), 0});
    holding_ = false;
    eid_ = ensemble_.eid;
    if (eid_) add(set_current_service{*service_, *eid_}, frame_);
    if (minute_) add_minute(frame_);
    fed_since_visit_ = !held_.empty();
    while (!held_.empty()) {
        ready_.push_back(std::move(held_.front()));
        held_.pop_front();
    }
}

void broadcast_calls::add(decltype(call::what) what, std::uint64_t frame) {
    call made;
    made.frame = frame;
    made.what = std::move(what);
    ready_.push_back(std::move(made));
}

void broadcast_calls::add_minute(std::uint64_t frame) {
    add(date_time_of(*minute_), frame);
    if (wanted_ == kAllServices) visit_all(frame);
}

void broadcast_calls::visit_all(std::uint64_t frame) {
    if (!eid_) return;
    for (const service_id& each : audio_services(ensemble_))
        add(set_current_service{each, *eid_}, frame);
    fed_since_visit_ = false;
}

void broadcast_calls::finish() {
    if (holding_) release();
    // What came in the last minute is looked at as well.
    if (error_.empty() && wanted_ == kAllServices && fed_since_visit_) visit_all(frame_);
}

std::size_t broadcast_calls::size_of(const call& of) {
    const auto* const fed = std::get_if<feed_mot_body>(&of.what);
    return fed == nullptr ? 0 : fed->body->size();
}

std::optional<call> broadcast_calls::take() {
    if (ready_.empty()) return std::nullopt;
    call next = std::move(ready_.front());
    ready_.pop_front();
    bytes_ -= size_of(next);
    return next;
}

}  // namespace dabspi::air
