#include "tools/files/content_kind.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <optional>
#include <string_view>

#include "tools/air/container/container_form.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using spi_object::byte_view;

constexpr const char* kReceiveFirst =
    "demodulate them first: receivers that write ETI can be piped in with -";

bool begins_with(byte_view first, std::string_view word, std::size_t at = 0) {
    return first.part(at, word.size()).text() == word;
}

content something_else(const char* words, const char* remedy = "") {
    return {content_kind::something_else, words, remedy};
}

content of_form(air::container_form form) {
    using air::container_form;
    const std::string words = air::form_words(form);
    switch (form) {
        case container_form::raw_eti: return {content_kind::raw_eti, words, ""};
        case container_form::streamed_eti: return {content_kind::streamed_eti, words, ""};
        case container_form::framed_eti: return {content_kind::framed_eti, words, ""};
        case container_form::edi: return {content_kind::edi, words, ""};
        case container_form::capture: break;
    }
    return {content_kind::capture, "a packet capture", ""};
}

std::string_view without_blanks(std::string_view text) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    return text;
}

// Comments, then an object that names its call.
bool is_recording(std::string_view text) {
    while (!text.empty() && text.front() == '#') {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos) return true;
        text = without_blanks(text.substr(end));
    }
    const std::string_view line = text.substr(0, text.find('\n'));
    return text.empty() || (text.front() == '{' && line.find("\"call\"") != std::string_view::npos);
}

std::optional<content> of_text(byte_view first) {
    const std::string_view text = without_blanks(first.text());
    if (text.empty()) return std::nullopt;
    if (text.front() == '<') return content{content_kind::document, "an XML document", ""};
    if (is_recording(text)) return content{content_kind::recording, "a recording (JSON Lines)", ""};
    if (text.front() == '{') return content{content_kind::plan, "a JSON document", ""};
    // The end of what was seen may cut a character.
    const std::string_view inside = text.substr(0, text.size() > 8 ? text.size() - 4 : text.size());
    const bool readable =
        is_well_formed_utf8(inside) && std::all_of(inside.begin(), inside.end(), [](char c) {
            return static_cast<unsigned char>(c) >= 0x20 || c == '\n' || c == '\r' || c == '\t';
        });
    if (readable && inside.size() >= 16) return something_else("text");
    return std::nullopt;
}

bool is_transport_stream(byte_view first) {
    for (const std::size_t packet : {188U, 192U, 204U}) {
        for (std::size_t begin = 0; begin < packet; ++begin) {
            std::size_t count = 0;
            while (begin + count * packet < first.size() && first[begin + count * packet] == 0x47)
                ++count;
            if (count >= 5 && begin + count * packet >= first.size()) return true;
        }
    }
    return false;
}

std::optional<content> of_wave(byte_view first) {
    if (!begins_with(first, "RIFF") && !begins_with(first, "RF64")) return std::nullopt;
    if (!begins_with(first, "WAVE", 8)) return std::nullopt;
    constexpr std::uint32_t kLowestOfReceivers = 1000000;
    std::uint32_t rate = 0;  // little-endian, behind "fmt " and its length, form and channels
    for (std::size_t i = 4; i-- != 0;)
        rate = rate << 8 | first[24 + i];
    if (rate >= kLowestOfReceivers) return something_else("IQ samples in a WAV file", kReceiveFirst);
    return something_else("an audio file (WAV)");
}

std::optional<content> of_known_file(byte_view first) {
    struct magic {
        const char* word;
        std::size_t size;
        const char* words;
        const char* remedy;
    };
    static constexpr std::array<magic, 12> kMagic = {{
        {"ID3", 3, "an audio file (MP3)", ""},
        {"fLaC", 4, "an audio file (FLAC)", ""},
        {"OggS", 4, "an audio file (Ogg)", ""},
        {"FORM", 4, "an audio file (AIFF)", ""},
        {"\x1F\x8B", 2, "a gzip file", "unpack it first, or pipe it in: zcat FILE | dabspi ... -"},
        {"\xFD"
         "7zXZ",
         5, "an xz file", "unpack it first, or pipe it in: xzcat FILE | dabspi ... -"},
        {"\x28\xB5\x2F\xFD", 4, "a zstd file", "unpack it first, or pipe it in: zstdcat FILE | dabspi ... -"},
        {"BZh", 3, "a bzip2 file", "unpack it first, or pipe it in: bzcat FILE | dabspi ... -"},
        {"PK\x03\x04", 4, "a zip file", "unpack it first"},
        {"7z\xBC\xAF", 4, "a 7z file", "unpack it first"},
        {"%PDF", 4, "a PDF document", ""},
        {"\x7F"
         "ELF",
         4, "a program", ""},
    }};
    for (const magic& each : kMagic)
        if (begins_with(first, {each.word, each.size})) return something_else(each.words, each.remedy);
    if (begins_with(first, "ftyp", 4)) return something_else("an audio or video file (MP4)");
    if (first.size() >= 4 && first[0] == 0xFF && (first[1] & 0xF6) == 0xF0)
        return something_else("audio frames (AAC)");
    if (begins_with(first, "\xFF\xD8\xFF") || begins_with(first, "\x89PNG\r\n") || begins_with(first, "GIF8"))
        return content{content_kind::image, "an image", ""};
    return of_wave(first);
}

// epg or serviceInformation, with a length that fits.
bool is_spi_object(byte_view first, bool whole) {
    if (first.size() < 2 || (first[0] != 0x02 && first[0] != 0x03)) return false;
    const std::size_t header = first[1] == 0xFE ? 4 : first[1] == 0xFF ? 5 : 2;
    const std::size_t length = header == 2 ? first[1] : first.number(2, header - 2);
    if (whole) return header + length == first.size();
    return header + length > first.size();
}

std::string lower_ending(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    std::string ending = dot == std::string::npos ? "" : path.substr(dot + 1);
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending;
}

// Samples of a tuner lie around their middle value.
const char* samples_of(byte_view first) {
    const std::size_t count = first.size() / 4 * 4;
    if (count < 4096) return nullptr;
    double sum = 0;
    double squares = 0;
    std::size_t near_zero = 0;     // high bytes of 16-bit samples, little-endian
    std::size_t small_floats = 0;  // the same of 32-bit floats below 2
    std::array<std::size_t, 256> low{};
    for (std::size_t i = 0; i < count; ++i) {
        sum += first[i];
        squares += double{1} * first[i] * first[i];
        if (i % 2 == 0) ++low[first[i]];
        if (i % 2 == 1 && (first[i] < 0x10 || first[i] >= 0xF0)) ++near_zero;
        if (i % 4 == 3 && (first[i] & 0x7F) >= 0x37 && (first[i] & 0x7F) < 0x40) ++small_floats;
    }
    if (small_floats > count / 4 * 95 / 100) return "IQ samples (floating point)";
    const auto used = static_cast<std::size_t>(
        std::count_if(low.begin(), low.end(), [](std::size_t times) { return times != 0; }));
    const double size = static_cast<double>(count);
    const double mean = sum / size;
    const double spread = std::sqrt(std::max(0.0, squares / size - mean * mean));
    if (used > 8 && mean > 118 && mean < 138 && spread < 55) return "IQ samples (8 bits)";
    // The highest entropy is in the low bytes.
    const std::size_t most = *std::max_element(low.begin(), low.end());
    if (used > 200 && most < count / 2 / 16 && near_zero > count / 2 * 95 / 100)
        return "IQ samples (16 bits)";
    return nullptr;
}

std::optional<content> of_samples(byte_view first, const std::string& path) {
    static constexpr std::array<const char*, 9> kEndings = {"iq",    "cu8", "cs8", "cs16", "cf32",
                                                            "cfile", "sdr", "uff", "iqw"};
    if (const char* const words = samples_of(first)) return something_else(words, kReceiveFirst);
    const std::string ending = lower_ending(path);
    if (std::find(kEndings.begin(), kEndings.end(), ending) != kEndings.end())
        return something_else("IQ samples (by its name)", kReceiveFirst);
    return std::nullopt;
}

}  // namespace

const char* const kMultiplexes =
    "ETI(NI) (raw, streamed, framed), EDI (AF packets, PF fragments), and packet captures of EDI";

const char* short_name(content_kind kind) {
    switch (kind) {
        case content_kind::raw_eti: return "raw";
        case content_kind::streamed_eti: return "streamed";
        case content_kind::framed_eti: return "framed";
        case content_kind::edi: return "edi";
        case content_kind::capture: return "pcap";
        case content_kind::sub_channel: return "sub-channel";
        case content_kind::recording: return "recording";
        case content_kind::plan: return "json";
        case content_kind::document: return "xml";
        case content_kind::spi_object: return "object";
        case content_kind::image: return "image";
        case content_kind::folder: return "folder";
        case content_kind::empty: return "empty";
        case content_kind::something_else:
        case content_kind::unknown: break;
    }
    return "unknown";
}

content content_of_folder() {
    return {content_kind::folder, "a folder", ""};
}

content content_of(byte_view first, bool whole, const std::string& path) {
    if (first.empty() && whole) return {content_kind::empty, "an empty file", ""};
    // Frames first: one that begins with its ERR byte looks like audio.
    if (const auto form = air::form_of(first, whole)) return of_form(*form);
    if (const auto known = of_known_file(first)) return *known;
    if (is_transport_stream(first)) return something_else("an MPEG transport stream");
    if (is_spi_object(first, whole)) return {content_kind::spi_object, "a binary SPI object", ""};
    if (const auto text = of_text(first)) return *text;
    if (const auto samples = of_samples(first, path)) return *samples;
    return {content_kind::unknown, "nothing that is known here", ""};
}

std::string refusal(const std::string& path, const content& found, const std::string& taken) {
    const std::string name = printable(path == "-" ? "<stdin>" : path);
    std::string text =
        name + ": it " + (found.kind == content_kind::unknown ? "is " : "looks like ") + found.words;
    if (!found.remedy.empty()) text += " (" + found.remedy + ")";
    return text + "; taken are " + taken;
}

}  // namespace dabspi
