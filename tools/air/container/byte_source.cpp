#include "tools/air/container/byte_source.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace dabspi::air {

descriptor_source::descriptor_source(int descriptor, std::function<bool()> given_up)
    : descriptor_(descriptor), given_up_(std::move(given_up)) {}

descriptor_source::~descriptor_source() {
    if (descriptor_ != STDIN_FILENO) ::close(descriptor_);
}

std::size_t descriptor_source::read(std::uint8_t* to, std::size_t space) {
    for (;;) {
        if (error_ != 0 || (given_up_ && given_up_())) return 0;
        const ssize_t count = ::read(descriptor_, to, space);
        if (count >= 0) return static_cast<std::size_t>(count);
        if (errno != EINTR) error_ = errno;
    }
}

std::size_t memory_source::read(std::uint8_t* to, std::size_t space) {
    const byte_view given = left_.part(0, std::min(space, step_));
    std::copy(given.begin(), given.end(), to);
    left_ = left_.part(given.size());
    return given.size();
}

}  // namespace dabspi::air
