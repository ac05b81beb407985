#include "tools/playing/storage.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "tools/terminal/error_messages.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace fs = std::filesystem;

storage storage::temporary() {
    const char* const set = std::getenv("TMPDIR");
    const std::string parent = set != nullptr && *set != '\0' ? set : "/tmp";
    std::string path = parent + "/dabspi-XXXXXX";
    if (::mkdtemp(path.data()) == nullptr) {
        throw std::runtime_error("cannot make a temporary directory below " + printable(parent) + ": " +
                                 std::generic_category().message(errno) +
                                 "; set TMPDIR, or give a directory with --storage");
    }
    std::error_code error;
    const fs::path full = fs::canonical(path, error);
    return {error ? path : full.string(), true};
}

storage storage::at(const std::string& directory) {
    make_directory(directory);
    return {fs::canonical(directory).string(), false};
}

storage::storage(storage&& other) noexcept
    : path_(std::move(other.path_)), remove_at_end_(std::exchange(other.remove_at_end_, false)) {}

storage::~storage() {
    if (!remove_at_end_) return;
    std::error_code error;
    fs::remove_all(path_, error);
    if (error) print_error("cannot remove " + printable(path_) + ": " + error.message());
}

void make_directory(const std::string& path) {
    std::error_code error;
    fs::create_directories(path, error);
    // Some versions report a directory that was there, named with a "/" at its end, as an error.
    std::error_code unknown;
    if (fs::is_directory(path, unknown)) return;
    throw std::runtime_error("cannot make the directory " + printable(path) + ": " +
                             (error ? error.message() : "something else has that name"));
}

}  // namespace dabspi
