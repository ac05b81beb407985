#include "src/parse/si_media_info.h"

#include <utility>

#include "src/parse/reader/spi_parseable.h"
#include "src/parse/reader/spi_tags.h"
#include "src/parse/reader/spi_token_table.h"

namespace spi {
namespace {

constexpr std::size_t kLongestExtension = 8;

}  // namespace

int SiMediaInfo::parse_mime(spi_parseable& attr, SpiTokenTable& tokens) {
    if (mime.empty()) attr.buf.read_string(mime, attr.content_left(), tokens);
    return 0;
}

int SiMediaInfo::parse_url(spi_parseable& attr, SpiTokenTable& tokens) {
    if (url.empty()) attr.buf.read_string(url, attr.content_left(), tokens);
    return 0;
}

void SiMediaInfo::set_type(unsigned char type) {
    if (type == logo_colour_square) {
        width = 32;
        height = 32;
    } else if (type == logo_colour_rectangle) {
        width = 112;
        height = 32;
    }
}

int SiMediaInfo::get_fmt() {
    if (height == 0) {
        height = width;
    } else if (width == 0) {
        width = height;
    }
    const auto is = [this](int w, int h) { return width == w && height == h; };
    if (is(32, 32)) return LOGO_SIZE_32x32;
    if (is(112, 32)) return LOGO_SIZE_112x32;
    if (is(128, 128)) return LOGO_SIZE_128x128;
    if (is(320, 240)) return LOGO_SIZE_320x240;
    if (is(600, 600)) return LOGO_SIZE_600x600;
    if (is(0, 0)) return LOGO_SIZE_UNKNOWN;
    return LOGO_SIZE_OTHER;
}

std::string SiMediaInfo::get_ext() const {
    const std::size_t dot = url.rfind('.');
    return url.substr(dot == std::string::npos ? 0 : dot + 1, kLongestExtension);
}

SpiLogoInfo SiMediaInfo::logo_info() & {
    SpiLogoInfo logo = classified();
    logo.name = url;
    return logo;
}

SpiLogoInfo SiMediaInfo::logo_info() && {
    SpiLogoInfo logo = classified();
    logo.name = std::move(url);
    return logo;
}

SpiLogoInfo SiMediaInfo::classified() {
    SpiLogoInfo logo;
    logo.service = id;
    if (mime == "image/jpeg") {
        logo.image_format = LOGO_FORMAT_JPEG;
    } else if (mime == "image/png") {
        logo.image_format = LOGO_FORMAT_PNG;
    } else {
        const std::string ext = get_ext();
        if (ext == "png" || ext == "PNG") {
            logo.image_format = LOGO_FORMAT_PNG;
        } else if (ext == "JPG" || ext == "jpg" || ext == "jpeg") {
            logo.image_format = LOGO_FORMAT_JPEG;
        } else {
            logo.image_format = LOGO_FORMAT_UNKNOWN;
        }
    }
    logo.size_code = static_cast<std::uint8_t>(get_fmt());
    return logo;
}

}  // namespace spi
