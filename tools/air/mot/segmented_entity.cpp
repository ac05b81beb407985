#include "tools/air/mot/segmented_entity.h"

#include <algorithm>
#include <utility>

namespace dabspi::air {

namespace {

constexpr std::size_t kMemoryOfSlot = sizeof(std::pair<std::uint16_t, std::uint64_t[2]>) + 40;

}  // namespace

segmented_entity::taken segmented_entity::take(std::uint16_t number, bool last, byte_view data) {
    taken result;
    auto found = slots_.find(number);
    if (!fits(number, last, data.size()) || (found != slots_.end() && !equal(found->second, data))) {
        result.restarted = true;
        result.misfit = !fits(number, last, data.size());
        restart();
        found = slots_.end();
    }
    if (found != slots_.end() && previous_ == number && segments() != 1) return result;  // repeated at once
    slot& at = found != slots_.end() ? found->second : append(number, last, data);
    result.received = note(number, at);
    return result;
}

bool segmented_entity::fits(std::uint16_t number, bool last, std::size_t size) const {
    if (last_ >= 0 && (number > last_ || last != (number == last_))) return false;
    if (last) return (last_ >= 0 || highest_ < number) && (segment_size_ == 0 || size <= segment_size_);
    if (last_ >= 0 && size < last_size_) return false;
    return segment_size_ == 0 || size == segment_size_;
}

bool segmented_entity::equal(const slot& held, byte_view data) const {
    if (held.size != data.size()) return false;
    const bytes& all = body_ != nullptr ? *body_ : held_;
    return std::equal(data.begin(), data.end(), all.begin() + static_cast<std::ptrdiff_t>(held.offset));
}

void segmented_entity::restart() {
    const std::uint32_t version = version_ + 1;
    *this = segmented_entity();
    version_ = version;
}

segmented_entity::slot& segmented_entity::append(std::uint16_t number, bool last, byte_view data) {
    in_order_ = in_order_ && number == slots_.size();
    highest_ = std::max<int>(highest_, number);
    if (last) {
        last_ = number;
        last_size_ = data.size();
    } else {
        segment_size_ = data.size();
    }
    slot& made = slots_[number];
    made.offset = static_cast<std::uint32_t>(held_.size());
    made.size = static_cast<std::uint32_t>(data.size());
    held_.insert(held_.end(), data.begin(), data.end());
    if (last_ >= 0 && slots_.size() == segments()) join();
    return made;
}

// Counts the segment for its reception and its round. True when a reception is complete.
bool segmented_entity::note(std::uint16_t number, slot& at) {
    bool received = false;
    if (at.round == round_) {  // it is the next round's
        received = finish();
        begin_round();
    }
    if (in_round_ != 0 && number < previous_) ascending_ = false;
    previous_ = number;
    at.round = round_;
    ++in_round_;
    if (at.reception != reception_) {
        at.reception = reception_;
        ++in_reception_;
    }
    if (last_ < 0) return received;
    // Where the order is that of the numbers, a round with gaps ends with the last; in any other order it has
    // no end that could be seen, and the last one may come early.
    const bool in_order_with_gaps = number == last_ && ascending_ && in_round_ > segments() / 2;
    const bool end_of_round = in_round_ == segments() || in_order_with_gaps;
    waiting_ = in_reception_ == segments();
    if (!end_of_round) return received;
    received = finish() || received;
    begin_round();
    return received;
}

bool segmented_entity::finish() {
    if (!waiting_) return false;
    begin_reception();
    return true;
}

void segmented_entity::begin_reception() {
    waiting_ = false;
    ++reception_;
    in_reception_ = 0;
}

void segmented_entity::begin_round() {
    ++round_;
    in_round_ = 0;
    ascending_ = true;
}

void segmented_entity::join() {
    if (!in_order_) {
        bytes joined;
        joined.reserve(held_.size());
        for (int number = 0; number <= last_; ++number) {
            slot& at = slots_[static_cast<std::uint16_t>(number)];
            const auto from = held_.begin() + static_cast<std::ptrdiff_t>(at.offset);
            at.offset = static_cast<std::uint32_t>(joined.size());
            joined.insert(joined.end(), from, from + static_cast<std::ptrdiff_t>(at.size));
        }
        held_ = std::move(joined);
    }
    held_.shrink_to_fit();
    body_ = std::make_shared<const bytes>(std::move(held_));
    held_ = bytes();
}

std::size_t segmented_entity::memory() const {
    return sizeof *this + held_.capacity() + (body_ != nullptr ? body_->capacity() : 0) +
           slots_.size() * kMemoryOfSlot + slots_.bucket_count() * sizeof(void*);
}

}  // namespace dabspi::air
