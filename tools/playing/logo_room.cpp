#include "tools/playing/logo_room.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "src/parse/mot_content.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

// 0, or the error's number.
int try_to_write(const std::string& folder, std::size_t size) {
    std::string name = folder + "/.dabspi-room-XXXXXX";
    const int descriptor = ::mkostemp(name.data(), O_CLOEXEC);
    if (descriptor == -1) return errno;
    const std::vector<char> content(std::min<std::size_t>(size, 65536), 'x');
    int error = 0;
    for (std::size_t left = size; left > 0 && error == 0;) {
        const ssize_t written = ::write(descriptor, content.data(), std::min(left, content.size()));
        if (written > 0) left -= static_cast<std::size_t>(written);
        if (written < 0 && errno != EINTR) error = errno;
        if (written == 0) error = ENOSPC;
    }
    if (::close(descriptor) != 0 && error == 0) error = errno;
    ::unlink(name.c_str());
    return error;
}

}  // namespace

std::size_t largest_image(const recording& in) {
    std::size_t largest = 0;
    for (const call& each : in.calls)
        if (const auto* const feed = std::get_if<feed_mot_body>(&each.what))
            if (feed->content_type == spi::kMotImage && feed->body != nullptr)
                largest = std::max(largest, feed->body->size());
    return largest;
}

void require_logo_room(const std::string& storage_path, std::size_t size) {
    if (size == 0) return;
    const std::string logo_root = storage_path + "/HdStationLogo";
    std::error_code unknown;
    const bool made = std::filesystem::is_directory(logo_root, unknown);
    const int error = try_to_write(made ? logo_root : storage_path, size);
    if (error != 0)
        throw std::runtime_error(
            "logos cannot be written to " + printable(logo_root) + ": " +
            std::generic_category().message(error) +
            "; what a receiver is told of logos would be wrong. Set TMPDIR, or give another "
            "directory with --storage");
}

}  // namespace dabspi
