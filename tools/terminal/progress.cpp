#include "tools/terminal/progress.h"

#include <unistd.h>

#include <utility>

namespace dabspi {

namespace {

constexpr std::chrono::milliseconds kPatience{1000};
constexpr std::chrono::milliseconds kRefresh{200};
constexpr std::chrono::milliseconds kMeasured{4000};

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
      begun_(now_()),
      next_(begun_ + kPatience) {}

// As long again for each part of what is left as for the parts done; nothing while that says little.
std::string progress_line::time_left(std::size_t done, std::chrono::steady_clock::time_point now) const {
    const double passed = std::chrono::duration<double>(now - begun_).count();
    if (total_ == 0 || done == 0 || done > total_ || now - begun_ < kMeasured) return {};
    const auto seconds = static_cast<std::size_t>(
        passed * static_cast<double>(total_ - done) / static_cast<double>(done) + 0.5);
    const std::string minutes = seconds < 60 ? "" : std::to_string(seconds / 60) + " min ";
    return ", " + minutes + std::to_string(seconds % 60) + " s left";
}

void progress_line::update(std::size_t done) {
    if (!shown_) return;
    const auto now = now_();
    if (now < next_) return;
    next_ = now + kRefresh;
    drawn_ = true;
    put(descriptor_, "\rdabspi: " + std::to_string(done) +
                         (total_ == 0 ? "" : " of " + std::to_string(total_)) + " " + things_ +
                         time_left(done, now) + "\033[K");
}

void progress_line::erase() {
    if (!drawn_) return;
    drawn_ = false;
    put(descriptor_, "\r\033[K");
}

}  // namespace dabspi
