#include "tools/spi/receiver_values.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <utility>

#include "src/parse/ensembles_named.h"
#include "src/parse/reader/spi_parseable.h"

namespace dabspi::spi_object {

namespace {

// An attribute of its own: tag, length and the content's beginning, which is all that the value types look
// at.
spi::MotBody attribute_of(byte_view content) {
    constexpr std::size_t kLongestShortLength = 253;
    const byte_view used = content.part(0, kLongestShortLength);
    std::unique_ptr<unsigned char[]> body(new unsigned char[used.size() + 2]);
    body[0] = 0x80;
    body[1] = static_cast<unsigned char>(used.size());
    std::copy(used.begin(), used.end(), &body[2]);
    return spi::MotBody(static_cast<std::uint32_t>(used.size() + 2), std::move(body));
}

}  // namespace

spi::SpiTimePoint receiver_time(byte_view attribute_content) {
    spi::ReadBuffer buffer(attribute_of(attribute_content));
    spi::spi_parseable attribute(buffer);
    spi::SpiTimePoint time;
    time.parse(attribute);
    return time;
}

spi::ServElemId receiver_service(byte_view attribute_content) {
    spi::ReadBuffer buffer(attribute_of(attribute_content));
    spi::spi_parseable attribute(buffer);
    spi::ServElemId service;
    service.parse(attribute);
    return service;
}

std::uint16_t receiver_ensemble(byte_view attribute_content) {
    spi::ReadBuffer buffer(attribute_of(attribute_content));
    spi::spi_parseable attribute(buffer);
    spi::EnsemblesNamed named;
    spi::ServElemId().parse(attribute, 0, &named);
    return named.received ? 0 : named.first_other;
}

std::string receiver_time_text(const spi::SpiTimePoint& time, std::uint16_t offset_seconds) {
    const spi::MotDateTime local = time.local_time(offset_seconds);
    return local.date() + " " + local.time();
}

std::string receiver_service_text(const spi::ServElemId& service) {
    char text[32];
    std::snprintf(text, sizeof text, "%X.%X.%u", unsigned{service.ecc}, unsigned{service.sid},
                  unsigned{service.scids});
    return text;
}

}  // namespace dabspi::spi_object
