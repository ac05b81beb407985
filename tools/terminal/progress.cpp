#include "tools/terminal/progress.h"

#include <unistd.h>

#include <utility>

namespace dabspi {

namespace {

constexpr std::chrono::milliseconds kPatience{1000};
constexpr std::chrono::milliseconds kRefresh{200};

void put(int descriptor, const std::string& text) {
    // A progress line that cannot be written is no loss.
    [[maybe_unused]] const ssize_t written = ::write(descriptor, text.data(), text.size());
}

}  // namespace

progress_line::progress_line(int descriptor, bool shown, std::size_t total, std::string things, clock now)
    : descriptor_(descriptor),
      shown_(shown),
      total_(total),
      things_(std::move(things)),
      now_(std::move(now)),
      next_(now_() + kPatience) {}

void progress_line::update(std::size_t done) {
    if (!shown_) return;
    const auto now = now_();
    if (now < next_) return;
    next_ = now + kRefresh;
    drawn_ = true;
    put(descriptor_, "\rdabspi: " + std::to_string(done) +
                         (total_ == 0 ? "" : " of " + std::to_string(total_)) + " " + things_ + "\033[K");
}

void progress_line::erase() {
    if (!drawn_) return;
    drawn_ = false;
    put(descriptor_, "\r\033[K");
}

}  // namespace dabspi
