#include "tools/transmit/mot/sent_object.h"

#include <zlib.h>

#include <stdexcept>

#include "tools/air/mot/object_header.h"
#include "tools/text/utf8.h"
#include "tools/transmit/mot/gzip.h"

namespace dabspi::transmit {

namespace {

using air::header_parameter;

constexpr std::size_t kHeaderCore = 7;
constexpr std::size_t kCompressionParameter = 2;

void append(bytes& to, header_parameter id, byte_view value) {
    append_parameter(to, static_cast<std::uint8_t>(id), value);
}

}  // namespace

void compress_where_it_helps(sent_object& object) {
    auto packed = std::make_shared<const bytes>(gzip(*object.body));
    object.packed =
        packed->size() + kCompressionParameter < object.body->size() ? std::move(packed) : nullptr;
}

std::uint32_t version_of(byte_view body) {
    return static_cast<std::uint32_t>(
        crc32(crc32(0, nullptr, 0), body.begin(), static_cast<uInt>(body.size())));
}

bytes header_bytes(const sent_object& of, name_charset charset) {
    const std::optional<std::string> name = in_charset(of.name, charset);
    if (!name)
        throw std::length_error("the content name " + in_quotes(of.name) +
                                " has characters that this character set does not have; send names as UTF-8");
    bytes parameters;
    append(parameters, header_parameter::content_name, content_name_bytes(*name, charset));
    bytes version;
    append_number(version, version_of(*of.body), 4);
    append(parameters, header_parameter::unique_body_version, version);
    if (of.packed != nullptr) append(parameters, header_parameter::compression_type, bytes{air::kGzip});
    if (of.scope_start) append(parameters, header_parameter::scope_start, mot_time_bytes(*of.scope_start));
    if (of.scope_end) append(parameters, header_parameter::scope_end, mot_time_bytes(*of.scope_end));
    if (!of.scope_id.empty()) append(parameters, header_parameter::scope_id, of.scope_id);

    const std::size_t body = of.sent_body().size();
    const std::size_t size = kHeaderCore + parameters.size();
    if (body > kLargestBody)
        throw std::length_error(in_quotes(of.name) + " is larger than a MOT body can be");
    if (size > kLargestHeader)
        throw std::length_error("the content name " + in_quotes(of.name) + " is too long for a MOT header");
    bytes made;
    append_number(made,
                  std::uint64_t{body} << 28 | std::uint64_t{size} << 15 |
                      std::uint64_t{of.content_type & 0x3FU} << 9 | (of.content_subtype & 0x1FFU),
                  kHeaderCore);
    append_bytes(made, parameters);
    return made;
}

}  // namespace dabspi::transmit
