// One MOT object (EN 301 234; TS 102 371, 6.4) as it is sent: its header and its body.
//
// Plain values and pure functions. What cannot be sent throws std::length_error with a text for the user.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "tools/transmit/mot/parameters.h"

namespace dabspi::transmit {

constexpr std::size_t kLargestBody = (std::size_t{1} << 28) - 1;
constexpr std::size_t kLargestHeader = (std::size_t{1} << 13) - 1;

struct sent_object {
    std::string name;  // ContentName, UTF-8
    std::uint8_t content_type = 0;
    std::uint16_t content_subtype = 0;
    std::shared_ptr<const bytes> body;              // as its users have it
    std::shared_ptr<const bytes> packed = nullptr;  // the same as it is sent, where it is compressed
    // Of programme information.
    std::optional<spi_object::time_value> scope_start = {};
    std::optional<spi_object::time_value> scope_end = {};
    bytes scope_id = {};  // of service information ECC and EId, of programme information a content ID

    const bytes& sent_body() const { return packed != nullptr ? *packed : *body; }
};

// Compresses the body if it is sent with fewer bytes then, the header's parameter counted. Receivers that do
// not know compressed bodies pass them over.
void compress_where_it_helps(sent_object& object);

// With content name, version of the body, compression and scope.
bytes header_bytes(const sent_object& of, name_charset charset);

// Changes when the body does, and is the same whenever it is the same: UniqueBodyVersion.
std::uint32_t version_of(byte_view body);

}  // namespace dabspi::transmit
