// References that several benchmarks share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "testkit/spi_builder.h"

namespace bench {

// Reads every byte once, each behind a test against the end, and adds them up: what a reader of single bytes
// does at the least.
class byte_scan {
 public:
    explicit byte_scan(const spi_builder::bytes& bytes) : data_(bytes.data()), size_(bytes.size()) {}
    std::uint32_t sum() {
        std::uint32_t total = 0;
        for (std::size_t i = 0; i < size_; ++i)
            total += next();
        return total;
    }

 private:
    std::uint8_t next() {
        const std::uint8_t byte = pos_ < size_ ? data_[pos_++] : std::uint8_t{255};
        // Each byte is seen by itself: otherwise the compiler would add sixteen at a time, without any test.
        asm volatile("" : : "r"(byte));
        return byte;
    }
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t pos_ = 0;
};

// Copies into memory that is there and has been used before.
class warm_copy {
 public:
    explicit warm_copy(std::size_t capacity) : buffer_(new unsigned char[capacity + 1]) {
        std::memset(buffer_.get(), 1, capacity);
    }
    void operator()(const void* bytes, std::size_t count) {
        if (count != 0) std::memcpy(buffer_.get(), bytes, count);
        asm volatile("" : : "r"(buffer_.get()) : "memory");
    }

 private:
    std::unique_ptr<unsigned char[]> buffer_;
};

}  // namespace bench
