#include "tools/recording/notification_text.h"

#include <array>
#include <cstddef>
#include <cstdio>

#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::size_t kClockWidth = 16;    // 2026-03-02 10:30
constexpr std::size_t kServiceWidth = 9;   // E1.C221.0; a 32-bit identifier makes its line longer
constexpr std::size_t kDurationWidth = 4;  // 1092 minutes is the longest there is

std::string padded(std::string text, std::size_t width) {
    if (text.size() < width) text.append(width - text.size(), ' ');
    return text;
}

std::string date_and_time(const spi::MotDateTime& at) {
    return at.date() + " " + at.time();
}

std::string service_text(const service_id& service) {
    char text[32];
    std::snprintf(text, sizeof text, "%X.%X.%u", unsigned{service.ecc}, static_cast<unsigned>(service.sid),
                  unsigned{service.scids});
    return text;
}

// The columns in front of every notification.
std::string columns(const notification_time& at, const std::optional<service_id>& service) {
    const std::string clock = at.clock ? date_and_time(*at.clock) : "-";
    return padded(clock, kClockWidth) + "  " + padded(service ? service_text(*service) : "-", kServiceWidth) +
           "  ";
}

// What the library's formula makes of day 0, the day of a programme that was never set.
bool is_day_zero(const spi::MotDateTime& of) {
    return of.year == 1859 && of.month == 255 && of.day == 19 && of.hour == 0 && of.minute == 0;
}

// An empty programme has no name and no day. Its duration may be an old one and means nothing.
bool is_empty(const programme& of) {
    return of.name.empty() && is_day_zero(of.start);
}

std::string programme_text(const programme& of) {
    if (is_empty(of)) return "-\n";
    std::string minutes = std::to_string(of.duration);
    if (minutes.size() < kDurationWidth) minutes.insert(0, kDurationWidth - minutes.size(), ' ');
    return date_and_time(of.start) + "  " + minutes + " min  " + printable(of.name) + "\n";
}

std::string image_text(const station_logo& logo) {
    static constexpr std::array<const char*, 3> formats = {"unknown", "JPEG", "PNG"};
    static constexpr std::array<const char*, 7> sizes = {
        "of unknown size", "32x32", "112x32", "128x128", "320x240", "600x600", "of other size"};
    const auto format = static_cast<std::size_t>(logo.format);
    const auto size = static_cast<std::size_t>(logo.size_code);
    const std::string format_text =
        format < formats.size() ? formats[format] : "format " + std::to_string(logo.format);
    const std::string size_text =
        size < sizes.size() ? sizes[size] : "size code " + std::to_string(logo.size_code);
    return format_text + " " + size_text;
}

std::string to_text(const now_next& pair, const notification_time& at, const std::string&) {
    const std::string front = columns(at, at.service);
    return front + "now   " + programme_text(pair.now) + std::string(front.size(), ' ') + "next  " +
           programme_text(pair.next);
}

std::string to_text(const station_logo& logo, const notification_time& at, const std::string& logo_root) {
    return columns(at, logo.station) + "logo  " + image_text(logo) + "  " + printable(logo_root + logo.file) +
           "\n";
}

std::string to_text(const programme_info& info, const notification_time& at, const std::string&) {
    return columns(at, info.service) + "item  " + programme_text(info.item);
}

}  // namespace

std::string notification_text(const notification& what, const notification_time& at,
                              const std::string& logo_root) {
    return std::visit([&](const auto& record) { return to_text(record, at, logo_root); }, what);
}

}  // namespace dabspi
