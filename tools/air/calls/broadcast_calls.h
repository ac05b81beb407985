// The calls that a receiver's middleware makes while it receives a multiplex: the service listened to, the
// clock whenever the minute changes, each object when it is whole.
//
// Owned by a multiplex_calls, used on its thread. Calls are held back until the service and the clock are
// known, for ten seconds of the broadcast at most: then they begin with SetCurrentService and SetDateTime, as
// a receiver knows both before its data decoder has completed anything. Memory: the calls that were not
// taken yet; objects that do not fit into kMostBytes of these are dropped and counted.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "tools/air/reception/reception_sink.h"
#include "tools/recording/recording.h"

namespace dabspi::air {

// The service of a listener who goes through all of them.
extern const char* const kAllServices;

class broadcast_calls final : public reception_sink {
 public:
    static constexpr std::size_t kMostBytes = std::size_t{32} << 20;

    // `service`: a label, an identifier, kAllServices, or empty for the first with audio.
    explicit broadcast_calls(std::string service) : wanted_(std::move(service)) {}

    void ensemble_changed(const ensemble& now) override;
    void minute(const local_minute& begun) override;
    void object(const spi_component& from, const mot_object& received) override;

    // After each frame: its number.
    void frame_taken(std::uint64_t frame);
    // Nothing follows.
    void finish();

    // The next call; nothing: none yet.
    std::optional<call> take();
    // For the user: why there are no calls. Then nothing follows.
    const std::string& error() const { return error_; }
    std::uint64_t objects_dropped() const { return objects_dropped_; }

 private:
    void begin_holding();
    bool is_ready() const;
    void release();
    void add(decltype(call::what) what, std::uint64_t frame);
    void add_minute(std::uint64_t frame);
    void visit_all(std::uint64_t frame);
    static std::size_t size_of(const call& of);

    const std::string wanted_;
    ensemble ensemble_;
    std::uint64_t frame_ = 0;
    std::uint64_t changed_ = 0;  // the frame in which the description changed last
    bool holding_ = true;
    std::uint64_t holding_since_ = 0;
    std::optional<std::uint16_t> eid_;  // of the calls made
    std::optional<service_id> service_;
    std::optional<local_minute> minute_;
    bool fed_since_visit_ = false;
    std::deque<call> held_;
    std::deque<call> ready_;
    std::size_t bytes_ = 0;  // of bodies in both
    std::uint64_t objects_dropped_ = 0;
    std::string error_;
};

}  // namespace dabspi::air
