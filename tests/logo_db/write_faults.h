// Faults of the disk, on demand: the test's executable sends the library's open, write and close here.
#pragma once

#include <cstddef>
#include <optional>

namespace write_faults {

// What goes wrong until it is reset; nothing by default.
struct plan {
    int open_error = 0;                     // errno of every open for writing
    int write_error = 0;                    // errno of every write to such a file
    std::optional<std::size_t> write_only;  // bytes that a write takes, the rest is left out
    int close_error = 0;                    // errno of its close, which closes all the same
};
void set(const plan& faults);
void reset();

// Opens for writing, and writes to what they opened, since the last set() or reset().
int opens();
int writes();
int last_flags();
// Files opened for writing and not closed again.
int left_open();

struct scope {
    explicit scope(const plan& faults) { set(faults); }
    ~scope() { reset(); }
    scope(const scope&) = delete;
    scope& operator=(const scope&) = delete;
};

}  // namespace write_faults
