#include "tools/inspect/image_header.h"

#include <string_view>

#include "src/parse/mot_content.h"

namespace dabspi {

namespace {

using spi_object::byte_view;
using namespace std::string_view_literals;

bool begins_with(byte_view body, std::string_view magic) {
    return body.text().substr(0, magic.size()) == magic;
}

// ISO 15948: signature, then the chunk IHDR, which begins with width and height.
image_header png(byte_view body) {
    if (body.size() < 24 || body.part(12, 4).text() != "IHDR") return {"PNG"};
    return {"PNG", body.number(16, 4), body.number(20, 4)};
}

// ISO 10918-1: segments up to the first start of frame, which holds height and width.
image_header jpeg(byte_view body) {
    for (std::size_t at = 2; at + 9 <= body.size() && body[at] == 0xFF;) {
        const std::uint8_t marker = body[at + 1];
        if (marker == 0xFF) {  // a fill byte
            ++at;
            continue;
        }
        const bool frame =
            marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (frame) return {"JPEG", body.number(at + 7, 2), body.number(at + 5, 2)};
        if (marker == 0xD9 || marker == 0xDA) break;  // end of image, start of scan
        at += 2 + body.number(at + 2, 2);
    }
    return {"JPEG"};
}

std::uint32_t little_endian(byte_view body, std::size_t at, std::size_t count) {
    std::uint32_t number = 0;
    for (std::size_t i = count; i-- > 0;)
        number = number << 8 | body[at + i];
    return number;
}

}  // namespace

std::optional<image_header> read_image_header(byte_view body) {
    if (begins_with(body, "\x89PNG\r\n\x1A\n"sv)) return png(body);
    if (begins_with(body, "\xFF\xD8\xFF"sv)) return jpeg(body);
    if (begins_with(body, "GIF87a"sv) || begins_with(body, "GIF89a"sv))
        return image_header{"GIF", little_endian(body, 6, 2), little_endian(body, 8, 2)};
    if (begins_with(body, "BM"sv) && body.size() > 26 && little_endian(body, 14, 4) == 40)
        return image_header{"BMP", little_endian(body, 18, 4), little_endian(body, 22, 4)};
    return std::nullopt;
}

std::uint16_t mot_subtype(const image_header& image) {
    const std::string_view kind = image.kind;
    return kind == "PNG"    ? spi::kMotPng
           : kind == "BMP"  ? spi::kMotBmp
           : kind == "JPEG" ? spi::kMotJfif
                            : spi::kMotGif;
}

}  // namespace dabspi
