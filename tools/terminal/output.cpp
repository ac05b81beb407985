#include "tools/terminal/output.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "tools/terminal/error_messages.h"

namespace dabspi {

namespace {
constexpr std::size_t kMuch = 64 * 1024;
}

output::output(int descriptor, std::function<bool()> interrupted)
    : descriptor_(descriptor), interrupted_(std::move(interrupted)) {}

bool output::write(std::string_view text) {
    if (error_ != 0) return false;
    kept_ += text;
    return kept_.size() < kMuch || flush();
}

bool output::flush() {
    std::size_t done = 0;
    while (error_ == 0 && done < kept_.size()) {
        const ssize_t written = ::write(descriptor_, kept_.data() + done, kept_.size() - done);
        if (written >= 0) {
            done += static_cast<std::size_t>(written);
        } else if (errno != EINTR || (interrupted_ && interrupted_())) {
            error_ = errno;
        }
    }
    kept_.clear();
    return error_ == 0;
}

bool print(std::string_view text, int descriptor) {
    output out(descriptor);
    out.write(text);
    out.flush();
    if (out.error() != 0) print_output_error(out.error());
    return out.error() == 0;
}

}  // namespace dabspi
