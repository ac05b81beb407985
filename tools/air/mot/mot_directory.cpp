#include "tools/air/mot/mot_directory.h"

namespace dabspi::air {

namespace {

constexpr std::size_t kDirectoryHeader = 13;
constexpr std::size_t kCompressedHeader = 9;
constexpr std::uint32_t kCompressionFlag = 0x80000000;
constexpr std::uint32_t kSizeMask = 0x3FFFFFFF;

}  // namespace

bool read_directory(byte_view plain, std::size_t most_objects, mot_directory& read) {
    read = mot_directory();
    if (plain.size() < kDirectoryHeader) return false;
    const std::uint32_t first = plain.number(0, 4);
    if ((first & kCompressionFlag) != 0) return false;
    const std::size_t size = first & kSizeMask;
    if (size < kDirectoryHeader || size > plain.size()) return false;
    read.objects = static_cast<std::uint16_t>(plain.number(4, 2));
    read.period_tenths = plain.number(6, 3);
    read.segment_size = static_cast<std::uint16_t>(plain.number(9, 2) & 0x1FFF);
    const std::size_t extension = plain.number(11, 2);
    byte_view left = plain.part(0, size).part(kDirectoryHeader);
    if (extension > left.size()) return false;
    read.parameters = left.part(0, extension);
    left = left.part(extension);
    for (std::size_t i = 0; i < read.objects; ++i) {
        if (read.entries.size() == most_objects) {
            read.cut = true;
            break;
        }
        mot_directory::entry entry;
        if (left.size() < 2) return false;
        entry.transport_id = static_cast<std::uint16_t>(left.number(0, 2));
        const std::size_t header = read_object_header(left.part(2), entry.header);
        if (header == 0) return false;
        entry.bytes = left.part(2, header);
        left = left.part(2 + header);
        read.entries.push_back(std::move(entry));
    }
    return true;
}

bool read_compressed_directory(byte_view entity, compressed_directory& read) {
    if (entity.size() < kCompressedHeader) return false;
    const std::uint32_t first = entity.number(0, 4);
    const std::size_t size = first & kSizeMask;
    if ((first & kCompressionFlag) == 0 || size < kCompressedHeader || size > entity.size()) return false;
    read.compression = static_cast<std::uint8_t>(entity.number(4, 1));
    read.plain_size = entity.number(5, 4) & kSizeMask;
    read.coded = entity.part(kCompressedHeader, size - kCompressedHeader);
    return true;
}

}  // namespace dabspi::air
