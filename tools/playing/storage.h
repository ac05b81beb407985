// Where a replay's logos go: a directory of the user's, or a temporary one that goes away with the replay.
#pragma once

#include <string>

namespace dabspi {

class storage {
 public:
    // A fresh directory below TMPDIR (or /tmp), removed with all its content by the destructor unless keep()
    // was called.
    static storage temporary();
    // The user's directory, made if it is missing and never removed.
    static storage at(const std::string& directory);
    // Both throw std::runtime_error with a text for the user when the directory cannot be had.

    storage(storage&& other) noexcept;
    storage& operator=(storage&&) = delete;
    ~storage();

    void keep() { remove_at_end_ = false; }

    const std::string& path() const { return path_; }  // full, without links
    // What the library makes of the path; it writes logos there.
    std::string logo_root() const { return path_ + "/HdStationLogo/"; }

 private:
    storage(std::string path, bool remove_at_end) : path_(std::move(path)), remove_at_end_(remove_at_end) {}

    std::string path_;
    bool remove_at_end_;
};

// Throws std::runtime_error with a text for the user unless the directory is there or can be made.
void make_directory(const std::string& path);

}  // namespace dabspi
