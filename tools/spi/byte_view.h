// A stretch of bytes that somebody else owns, with every look at it bounded: what lies outside reads as 0,
// and a part that reaches outside is cut.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace dabspi::spi_object {

using bytes = std::vector<std::uint8_t>;

class byte_view {
 public:
    byte_view() = default;
    byte_view(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    // NOLINTNEXTLINE: a vector is a view of its bytes; the view must not outlive it.
    byte_view(const bytes& all) : data_(all.data()), size_(all.size()) {}

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    std::uint8_t operator[](std::size_t at) const { return at < size_ ? data_[at] : std::uint8_t{0}; }

    byte_view part(std::size_t from, std::size_t count = static_cast<std::size_t>(-1)) const {
        const std::size_t begin = std::min(from, size_);
        return {data_ + begin, std::min(count, size_ - begin)};
    }

    // Most significant byte first; at most four bytes.
    std::uint32_t number(std::size_t from, std::size_t count) const {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < count; ++i)
            value = value << 8 | (*this)[from + i];
        return value;
    }

    std::string_view text() const { return {reinterpret_cast<const char*>(data_), size_}; }
    const std::uint8_t* begin() const { return data_; }
    const std::uint8_t* end() const { return data_ + size_; }

 private:
    const std::uint8_t* data_ = nullptr;
    std::size_t size_ = 0;
};

}  // namespace dabspi::spi_object
