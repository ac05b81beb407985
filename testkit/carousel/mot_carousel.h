// Builds what a MOT encoder sends (EN 301 234): headers and directories of objects, their segments, the data
// groups of one round. For tests; independent of tools/.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "testkit/carousel/packet_mode.h"

namespace carousel_kit {

bytes text(const std::string& of);

bytes gzip(const bytes& of);         // RFC 1952
bytes zlib_packed(const bytes& of);  // RFC 1950

// With the shortest form that its length fits (6.2.1); `long_form` uses the one with a length field.
bytes parameter(unsigned id, const bytes& value, bool long_form = false);
bytes name_parameter(const std::string& name, unsigned charset = 15);

struct object {
    unsigned transport_id = 1;
    unsigned content_type = 7;
    unsigned content_subtype = 1;
    std::optional<std::string> name = "object";
    unsigned name_charset = 15;
    bytes body;
    bytes more_parameters;              // behind the name
    std::optional<unsigned> body_size;  // a false one
};

bytes header(const object& of);

struct directory_fields {
    unsigned period_tenths = 0;
    unsigned segment_size = 0;
    bytes parameters;
};
bytes directory(const std::vector<object>& objects, const directory_fields& fields = {});
bytes compressed_directory(const bytes& plain, unsigned compression = 1);

constexpr unsigned kHeaderGroup = 3;
constexpr unsigned kBodyGroup = 4;
constexpr unsigned kScrambledGroup = 5;
constexpr unsigned kDirectoryGroup = 6;
constexpr unsigned kCompressedGroup = 7;

// One segment's data group.
bytes segment_group(unsigned type, unsigned transport_id, unsigned number, bool last, const bytes& data);

// All of an entity, in order. An empty one is one empty segment.
std::vector<bytes> segment_groups(unsigned type, unsigned transport_id, const bytes& entity,
                                  std::size_t segment_size = 100);

void append(std::vector<bytes>& to, const std::vector<bytes>& more);

// One round: the directory, then each body; or each header with its body.
std::vector<bytes> directory_round(unsigned directory_id, const std::vector<object>& objects,
                                   std::size_t segment_size = 100, bool compressed = false);
std::vector<bytes> header_round(const std::vector<object>& objects, std::size_t segment_size = 100);

}  // namespace carousel_kit
