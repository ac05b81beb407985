// A body's bytes, which note the furthest that was read: every read of a tag, a length or a number, and the
// first byte of every string. On one thread, the test's: it calls the parser's handlers itself.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

class noted_bytes {
 public:
    noted_bytes() = default;
    explicit noted_bytes(std::unique_ptr<unsigned char[]> bytes) : bytes_(std::move(bytes)) {}

    unsigned char& operator[](std::size_t index) const {
        furthest_ = std::max(furthest_, static_cast<std::int64_t>(index));
        return bytes_[index];
    }
    unsigned char* get() const { return bytes_.get(); }
    explicit operator bool() const { return bytes_ != nullptr; }

    // Of all bodies since forget(): the index of that byte; -1 when none was read.
    static std::int64_t furthest() { return furthest_; }
    static void forget() { furthest_ = -1; }

 private:
    static inline std::int64_t furthest_ = -1;

    std::unique_ptr<unsigned char[]> bytes_;
};
