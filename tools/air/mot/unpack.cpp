#include "tools/air/mot/unpack.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <new>

namespace dabspi::air {

namespace {

constexpr int kGzipOrZlib = 15 + 32;  // the largest window, and zlib finds out

// zlib's state, released with it. zlib reads the input without changing it, and owns nothing of it.
class inflater {
 public:
    explicit inflater(byte_view input) {
        stream_.next_in = const_cast<Bytef*>(input.begin());
        stream_.avail_in = static_cast<uInt>(input.size());
        if (inflateInit2(&stream_, kGzipOrZlib) != Z_OK) throw std::bad_alloc();
    }
    ~inflater() { inflateEnd(&stream_); }
    inflater(const inflater&) = delete;
    inflater& operator=(const inflater&) = delete;
    z_stream& stream() { return stream_; }

 private:
    z_stream stream_{};
};

}  // namespace

unpack_fault unpack(byte_view packed, std::size_t limit, std::vector<std::uint8_t>& to) {
    inflater state(packed);
    z_stream& stream = state.stream();
    std::vector<std::uint8_t> all;
    std::array<std::uint8_t, 16384> portion;
    for (;;) {
        stream.next_out = portion.data();
        stream.avail_out = static_cast<uInt>(portion.size());
        const int result = inflate(&stream, Z_NO_FLUSH);
        if (result != Z_OK && result != Z_STREAM_END) return unpack_fault::damaged;
        const std::size_t made = portion.size() - stream.avail_out;
        if (made > limit - all.size()) return unpack_fault::too_large;
        all.insert(all.end(), portion.begin(), portion.begin() + static_cast<std::ptrdiff_t>(made));
        if (result != Z_STREAM_END) continue;
        // Filling may follow; another gzip file begins with its magic number.
        if (stream.avail_in < 2 || stream.next_in[0] != 0x1F || stream.next_in[1] != 0x8B) break;
        if (inflateReset(&stream) != Z_OK) return unpack_fault::damaged;
    }
    to = std::move(all);
    return unpack_fault::none;
}

}  // namespace dabspi::air
