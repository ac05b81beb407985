// Where an input's bytes come from, in order and once: no source is asked to go back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "tools/spi/byte_view.h"

namespace dabspi::air {

using spi_object::byte_view;

class byte_source {
 public:
    byte_source() = default;
    virtual ~byte_source() = default;
    byte_source(const byte_source&) = delete;
    byte_source& operator=(const byte_source&) = delete;

    // Puts at most `space` bytes there, as soon as there are any. 0: the input has ended, or was given up.
    virtual std::size_t read(std::uint8_t* to, std::size_t space) = 0;
    // A system error number that ended the input, or 0.
    virtual int error() const { return 0; }
};

// A file or a pipe. `given_up` is asked when a signal interrupts a read, and before each one; true ends the
// input.
class descriptor_source final : public byte_source {
 public:
    // Takes the descriptor over and closes it, unless it is standard input.
    explicit descriptor_source(int descriptor, std::function<bool()> given_up = {});
    ~descriptor_source() override;
    std::size_t read(std::uint8_t* to, std::size_t space) override;
    int error() const override { return error_; }

 private:
    int descriptor_;
    std::function<bool()> given_up_;
    int error_ = 0;
};

// Bytes in memory, which must outlive it. Not more than `step` at a time, as a pipe may give them.
class memory_source final : public byte_source {
 public:
    explicit memory_source(byte_view all, std::size_t step = static_cast<std::size_t>(-1))
        : left_(all), step_(step) {}
    std::size_t read(std::uint8_t* to, std::size_t space) override;

 private:
    byte_view left_;
    std::size_t step_;
};

}  // namespace dabspi::air
