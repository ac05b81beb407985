#include "tools/transmit/mot/directory.h"

#include <algorithm>
#include <stdexcept>

#include "tools/air/mot/object_header.h"
#include "tools/transmit/mot/gzip.h"

namespace dabspi::transmit {

namespace {

constexpr std::size_t kDirectoryFields = 13;
constexpr std::size_t kCompressedFields = 9;
constexpr std::size_t kMostEntries = 0xFFFF;
constexpr std::uint8_t kSortedHeaderInformation = 0;
constexpr std::uint32_t kCompressed = std::uint32_t{1} << 31;

}  // namespace

bytes directory_bytes(std::vector<directory_entry> entries, const directory_facts& facts) {
    if (entries.size() > kMostEntries)
        throw std::length_error("a carousel has 65,535 objects at most, and there are " +
                                std::to_string(entries.size()));
    std::stable_sort(entries.begin(), entries.end(),
                     [](const directory_entry& a, const directory_entry& b) { return a.name < b.name; });
    bytes parameters;
    append_parameter(parameters, kSortedHeaderInformation, {});
    std::size_t size = kDirectoryFields + parameters.size();
    for (const directory_entry& each : entries)
        size += 2 + each.header.size();
    bytes made;
    made.reserve(size);
    append_number(made, size, 4);
    append_number(made, entries.size(), 2);
    append_number(made, facts.period_tenths, 3);
    append_number(made, facts.segment_size, 2);
    append_number(made, parameters.size(), 2);
    append_bytes(made, parameters);
    for (const directory_entry& each : entries) {
        append_number(made, each.transport_id, 2);
        append_bytes(made, each.header);
    }
    return made;
}

bytes compressed_directory_bytes(byte_view plain) {
    const bytes packed = gzip(plain);
    bytes made;
    append_number(made, kCompressed | (kCompressedFields + packed.size()), 4);
    append_number(made, air::kGzip, 1);
    append_number(made, plain.size(), 4);
    append_bytes(made, packed);
    return made;
}

}  // namespace dabspi::transmit
