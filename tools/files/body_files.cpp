#include "tools/files/body_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <system_error>

#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::size_t kLongestBody = std::numeric_limits<std::uint32_t>::max();  // a body's size has 32 bits

body_files::result refused(const std::string& file, const std::string& path, const std::string& why) {
    std::string text = "cannot read the body file " + in_quotes(file, 200);
    if (path != file) text += " (" + printable(path) + ")";
    return {nullptr, text + ": " + why};
}

std::string system_text(int error) {
    return std::generic_category().message(error);
}

body_files::result read_regular_file(const std::string& file, const std::string& path, std::size_t most) {
    // Without O_NONBLOCK, opening a named pipe would wait for somebody to write to it.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) return refused(file, path, system_text(errno));
    struct closer {
        int descriptor;
        ~closer() { ::close(descriptor); }
    } const close_at_end{descriptor};

    struct stat status {};
    if (::fstat(descriptor, &status) != 0) return refused(file, path, system_text(errno));
    if (!S_ISREG(status.st_mode)) return refused(file, path, "it is not a regular file");

    bytes content;
    std::size_t filled = 0;
    // One byte more than the file holds, so that its end is met without growing the buffer.
    if (static_cast<std::uint64_t>(status.st_size) <= most)
        content.resize(static_cast<std::size_t>(status.st_size) + 1);
    while (filled <= most && !content.empty()) {
        if (filled == content.size())
            content.resize(std::min(2 * content.size(), most + 1));  // it grows while it is read
        const ssize_t got = ::read(descriptor, content.data() + filled, content.size() - filled);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return refused(file, path, system_text(errno));
        if (got == 0) {
            content.resize(filled);
            return {std::make_shared<const bytes>(std::move(content)), {}};
        }
        filled += static_cast<std::size_t>(got);
    }
    return refused(file, path,
                   "with it the bodies hold more than is taken, " + std::to_string(most) +
                       " bytes more; --limit raises that");
}

}  // namespace

const body_files::result& body_files::read(const std::string& file) {
    const auto known = read_.find(file);
    if (known != read_.end()) return known->second;
    result outcome;
    if (file.empty() || file.find('\0') != std::string::npos) {
        outcome = refused(file, file, "this is not a file's name");
    } else {
        const std::string path = (std::filesystem::path(directory_) / file).string();
        outcome = read_regular_file(file, path, std::min(most_bytes_ - held_, kLongestBody - 1));
        if (outcome.body != nullptr) held_ += outcome.body->size();
    }
    return read_.emplace(file, std::move(outcome)).first->second;
}

}  // namespace dabspi
