#include "tools/transmit/mot/gzip.h"

#include <zlib.h>

#include <new>

namespace dabspi::transmit {

namespace {

constexpr int kGzipWindow = 15 + 16;  // 16: with the header and trailer of gzip
constexpr int kMemoryLevel = 9;
constexpr std::size_t kGzipFrame = 18;  // header and trailer

}  // namespace

spi_object::bytes gzip(spi_object::byte_view of) {
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, kGzipWindow, kMemoryLevel,
                     Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
    spi_object::bytes packed(deflateBound(&stream, static_cast<uLong>(of.size())) + kGzipFrame);
    stream.next_in = const_cast<Bytef*>(of.begin());  // NOLINT: zlib does not write there
    stream.avail_in = static_cast<uInt>(of.size());
    stream.next_out = packed.data();
    stream.avail_out = static_cast<uInt>(packed.size());
    const int result = deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    if (result != Z_STREAM_END) throw std::bad_alloc();
    return packed;
}

}  // namespace dabspi::transmit
