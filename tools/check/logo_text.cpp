#include "tools/check/logo_text.h"

#include <array>

#include "tools/check/input.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

const char* size_text(std::uint8_t size_code) {
    static constexpr std::array<const char*, 7> names = {
        "of unknown size", "32x32", "112x32", "128x128", "320x240", "600x600", "of other size"};
    return size_code < names.size() ? names[size_code] : names.back();
}

const char* format_text(std::uint8_t format) {
    return format == spi::LOGO_FORMAT_PNG    ? "PNG"
           : format == spi::LOGO_FORMAT_JPEG ? "JPEG"
                                             : "unknown format";
}

std::string logo_text(const announcement& of) {
    return in_quotes(of.content_name) + ", " + format_text(of.format) + " " + size_text(of.size_code) +
           " of " + service_text(of.station);
}

}  // namespace dabspi::check
