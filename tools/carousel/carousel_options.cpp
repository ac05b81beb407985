#include "tools/carousel/carousel_options.h"

#include <array>
#include <cstdlib>
#include <filesystem>

namespace dabspi::carousel {

namespace {

constexpr double kLongest = 366.0 * 86400;
constexpr unsigned kHighestRate = 1136;  // kbit/s: what a multiplex holds beside its other sub-channel

struct named_form {
    const char* name;
    const char* ending;
    const char* words;
    output_form form;
};
constexpr std::array<named_form, 6> kForms = {{
    {"packets", ".packets", "packets of a sub-channel", output_form::packets},
    {"groups", ".groups", "MSC data groups, each behind its length", output_form::groups},
    {"raw", ".eti", "ETI(NI), raw", output_form::raw},
    {"streamed", "", "ETI(NI), streamed", output_form::streamed},
    {"framed", "", "ETI(NI), framed", output_form::framed},
    {"edi", ".edi", "EDI, AF packets", output_form::edi},
}};

// The number in front of a text, which is shortened by it; nothing for none, or one below 0.
std::optional<double> take_number(std::string& text) {
    std::size_t end = 0;
    while (end < text.size() && ((text[end] >= '0' && text[end] <= '9') || text[end] == '.'))
        ++end;
    if (end == 0 || end > 12 || text.front() == '.') return std::nullopt;
    char* after = nullptr;
    const std::string digits = text.substr(0, end);
    const double value = std::strtod(digits.c_str(), &after);
    if (*after != '\0') return std::nullopt;
    text.erase(0, end);
    return value;
}

}  // namespace

std::optional<double> parse_seconds(const std::string& text) {
    std::string unit = text;
    const std::optional<double> number = take_number(unit);
    if (!number) return std::nullopt;
    double seconds = *number;
    if (unit == "min") {
        seconds *= 60;
    } else if (unit == "h") {
        seconds *= 3600;
    } else if (!unit.empty() && unit != "s") {
        return std::nullopt;
    }
    if (seconds <= 0 || seconds > kLongest) return std::nullopt;
    return seconds;
}

std::optional<unsigned> parse_bit_rate(const std::string& text) {
    std::string unit = text;
    const std::optional<double> number = take_number(unit);
    if (!number || (!unit.empty() && unit != "kbit/s") || *number > kHighestRate) return std::nullopt;
    const auto rate = static_cast<unsigned>(*number);
    if (rate == 0 || rate % 8 != 0 || static_cast<double>(rate) < *number) return std::nullopt;
    return rate;
}

std::optional<wanted_time> parse_wanted(const std::string& text) {
    wanted_time wanted;
    const std::size_t sign = text.find('=');
    wanted.what = sign == std::string::npos ? "everything" : text.substr(0, sign);
    if (wanted.what != "everything" && wanted.what != "logos" && wanted.what != "now-next")
        return std::nullopt;
    const std::optional<double> seconds =
        parse_seconds(sign == std::string::npos ? text : text.substr(sign + 1));
    if (!seconds) return std::nullopt;
    wanted.seconds = *seconds;
    return wanted;
}

std::optional<output_form> form_of(const carousel_options& options) {
    for (const named_form& each : kForms)
        if (options.form == each.name) return each.form;
    if (!options.form.empty()) return std::nullopt;
    const std::string ending = std::filesystem::path(options.output).extension().string();
    for (const named_form& each : kForms)
        if (!ending.empty() && ending == each.ending) return each.form;
    return std::nullopt;
}

const char* form_text(output_form of) {
    for (const named_form& each : kForms)
        if (each.form == of) return each.words;
    return "";
}

}  // namespace dabspi::carousel
