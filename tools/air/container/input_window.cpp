#include "tools/air/container/input_window.h"

#include <algorithm>
#include <cstring>

namespace dabspi::air {

namespace {

// Twice what can be seen, so that what is moved to the front was read at least as often.
constexpr std::size_t kSize = 2 * input_window::kMostSeen;

}  // namespace

// Not zeroed: most inputs are smaller.
input_window::input_window(byte_source& from) : from_(from), memory_(new std::uint8_t[kSize]) {}

byte_view input_window::see(std::size_t count) {
    if (end_ - begin_ < count && !ended_) read_until(std::min(count, kMostSeen));
    return {memory_.get() + begin_, end_ - begin_};
}

void input_window::skip(std::size_t count) {
    count = std::min(count, end_ - begin_);
    begin_ += count;
    position_ += count;
}

void input_window::read_until(std::size_t count) {
    if (begin_ >= kSize / 2 || kSize - begin_ < count || begin_ == end_) {
        std::memmove(memory_.get(), memory_.get() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    while (end_ - begin_ < count && !ended_) {
        const std::size_t got = from_.read(memory_.get() + end_, kSize - end_);
        ended_ = got == 0;
        end_ += got;
    }
}

}  // namespace dabspi::air
