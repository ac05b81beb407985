#include "tools/files/input_kind.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>

#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using namespace std::string_view_literals;

constexpr std::size_t kEtiFrame = 6144;  // of the raw form

bool begins_with(std::string_view text, std::string_view with) {
    return text.substr(0, with.size()) == with;
}

std::uint8_t byte_at(std::string_view of, std::size_t at) {
    return at < of.size() ? static_cast<std::uint8_t>(of[at]) : std::uint8_t{0};
}

std::string_view without_blanks(std::string_view text) {
    if (begins_with(text, "\xEF\xBB\xBF")) text.remove_prefix(3);
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    return text;
}

// FSYNC of ETI(NI), either of the two words that take turns (ETS 300 799).
bool is_sync(std::string_view of, std::size_t at) {
    return of.substr(at < of.size() ? at : of.size(), 3) == "\x07\x3A\xB6"sv ||
           of.substr(at < of.size() ? at : of.size(), 3) == "\xF8\xC5\x49"sv;
}

// A frame in front of which its length stands, in 16 bits with the low byte first; the next one confirms it
// where so much of the input is known, else that the frame is marked as free of errors.
bool is_streamed(std::string_view of, std::size_t at) {
    if (!is_sync(of, at + 3)) return false;
    const std::size_t length = byte_at(of, at) | std::size_t{byte_at(of, at + 1)} << 8;
    const std::size_t next = at + 2 + length;
    if (length < 12 || length > kEtiFrame) return false;
    return next + 6 > of.size() ? byte_at(of, at + 2) == 0xFF : is_sync(of, next + 3);
}

const char* eti_form(std::string_view of) {
    if (is_streamed(of, 0)) return "streamed";
    if (is_streamed(of, 4)) return "framed";
    // A recording may begin anywhere within a frame.
    for (std::size_t at = 1; at + kEtiFrame + 3 <= of.size() && at <= kEtiFrame; ++at)
        if (is_sync(of, at) && is_sync(of, at + kEtiFrame)) return "raw";
    return is_sync(of, 1) && of.size() < 2 * kEtiFrame ? "raw" : nullptr;
}

bool is_capture(std::string_view of) {
    static constexpr std::array<std::string_view, 5> magics = {"\xA1\xB2\xC3\xD4"sv, "\xD4\xC3\xB2\xA1"sv,
                                                               "\xA1\xB2\x3C\x4D"sv, "\x4D\x3C\xB2\xA1"sv,
                                                               "\x0A\x0D\x0D\x0A"sv};
    return std::any_of(magics.begin(), magics.end(),
                       [&](std::string_view each) { return begins_with(of, each); });
}

// AF packets: length, sequence number, and in byte 8 CRC flag and version 1.0 (TS 102 821).
bool is_edi(std::string_view of) {
    if (begins_with(of, "AF")) return of.size() < 10 || (byte_at(of, 8) & 0x7F) == 0x10;
    return begins_with(of, "PF") && of.size() >= 12 && byte_at(of, 4) == 0;
}

const char* image_kind(std::string_view of) {
    if (begins_with(of, "\x89PNG\r\n\x1A\n"sv)) return "a PNG image";
    if (begins_with(of, "\xFF\xD8\xFF"sv)) return "a JPEG image";
    if (begins_with(of, "GIF87a"sv) || begins_with(of, "GIF89a"sv)) return "a GIF image";
    if (begins_with(of, "BM"sv) && of.size() > 26 && of.substr(14, 4) == "\x28\0\0\0"sv) return "a BMP image";
    if (begins_with(of, "RIFF"sv) && of.substr(8 < of.size() ? 8 : of.size(), 4) == "WEBP"sv)
        return "a WebP image";
    return nullptr;
}

bool has_key(std::string_view text, std::string_view key) {
    return text.find("\"" + std::string(key) + "\"") != std::string_view::npos;
}

sniffed_input json_document(std::string_view text) {
    // Lines that begin with # are comments of call recordings.
    std::string_view rest = text;
    while (!rest.empty() && rest.front() == '#') {
        rest.remove_prefix(std::min(rest.find('\n'), rest.size()));
        rest = without_blanks(rest);
    }
    const std::string_view line = rest.substr(0, rest.find('\n'));
    if (has_key(line, "call") || (text.front() == '#' && (rest.empty() || rest.front() == '{')))
        return {input_kind::call_recording, "a call recording (JSON Lines)", "replay, check and inspect"};
    if (has_key(rest, "carousels") || has_key(rest, "steps") || has_key(rest, "data_service"))
        return {input_kind::plan, "a plan of a broadcast (JSON)", "record"};
    return {input_kind::other_json, "a JSON document, neither a call recording nor a plan", ""};
}

sniffed_input xml_document(std::string_view text) {
    const auto within = [&](std::string_view name) { return text.find(name) != std::string_view::npos; };
    if (within("<serviceInformation") || within(":serviceInformation"))
        return {input_kind::xml, "an XML document of service information", "encode"};
    if (within("<epg") || within(":epg"))
        return {input_kind::xml, "an XML document of programme information", "encode"};
    if (within("<html") || within("<!DOCTYPE html") || within("<!doctype html"))
        return {input_kind::xml, "a page of a web server (HTML)", ""};
    if (within("<svg")) return {input_kind::image, "an SVG image", ""};
    return {input_kind::xml, "an XML document", "encode"};
}

bool is_text(std::string_view of) {
    // The last character may be cut.
    const std::string_view whole = of.substr(0, of.size() < kSniffedBytes ? of.size() : of.size() - 3);
    return std::all_of(of.begin(), of.end(),
                       [](unsigned char c) { return c >= 0x20 || c == '\t' || c == '\n' || c == '\r'; }) &&
           is_well_formed_utf8(whole);
}

// The top element of an SPI object and its length (TS 102 371).
bool is_spi_object(std::string_view of) {
    const std::uint8_t tag = byte_at(of, 0);
    return tag == 0x02 || tag == 0x03;
}

}  // namespace

sniffed_input sniff(std::string_view beginning) {
    if (beginning.empty()) return {input_kind::empty, "empty", ""};
    if (const char* const form = eti_form(beginning))
        return {input_kind::eti, "a recording of a multiplex (ETI, " + std::string(form) + " frames)",
                "scan, replay, check, inspect and record"};
    if (is_spi_object(beginning)) return {input_kind::spi_object, "a binary SPI object", "inspect and check"};
    if (const char* const kind = image_kind(beginning)) return {input_kind::image, kind, "inspect and check"};
    if (is_capture(beginning))
        return {input_kind::capture, "a capture of network packets",
                "scan, replay, check, inspect and record"};
    if (is_edi(beginning))
        return {input_kind::edi, "a recording of a multiplex (EDI packets)",
                "scan, replay, check, inspect and record"};
    if (begins_with(beginning, "\x1F\x8B"sv)) return {input_kind::gzip, "compressed with gzip", ""};
    if (begins_with(beginning, "PK\x03\x04"sv)) return {input_kind::zip, "a ZIP archive", ""};
    const std::string_view text = without_blanks(beginning);
    if (text.empty()) return {input_kind::empty, "empty", ""};
    if (text.front() == '<') return xml_document(text);
    if (text.front() == '{' || text.front() == '#') return json_document(text);
    if (is_text(beginning)) return {input_kind::text, "a text", ""};
    return {input_kind::unknown, "of an unknown kind", ""};
}

std::string what_it_is(const sniffed_input& input) {
    std::string text = "it is " + input.what;
    if (input.kind == input_kind::gzip || input.kind == input_kind::zip) return text + "; unpack it first";
    if (!input.taken_by.empty()) {
        // The first of them, as it is typed; the others follow.
        text += "; \"dabspi " + input.taken_by.substr(0, input.taken_by.find_first_of(" ,")) + "\"";
        const std::size_t more = input.taken_by.find_first_of(" ,");
        if (more != std::string::npos) text += input.taken_by.substr(more);
        text += more == std::string::npos ? " takes it" : " take it";
    } else if (input.kind != input_kind::empty) {
        text += ", which no subcommand takes";
    }
    return text;
}

std::string what_a_folder_is() {
    return "it is a folder; \"dabspi check\" and inspect take folders of dumped objects";
}

}  // namespace dabspi
