// Remembers which of some directories are missing, and later removes those that have appeared.
//
// The host-facing layer of the library makes "/temp/dab" when it starts. That belongs on a receiver; a desk
// should not keep it. Two replays at once must not take it from one another half-way: look and remove under
// one lock.
#pragma once

#include <string>
#include <vector>

namespace dabspi {

class created_directories {
 public:
    // Outermost first.
    explicit created_directories(const std::vector<std::string>& paths);

    // Removes what was missing then, innermost first; only while it is empty. Failures are ignored: somebody
    // uses it.
    void remove() noexcept;

 private:
    std::vector<std::string> missing_;
};

}  // namespace dabspi
