// What is on an SPI carousel, for a person.
#include <cstdio>

#include "tools/scan/columns.h"
#include "tools/scan/report.h"
#include "tools/scan/verdict.h"
#include "tools/text/utf8.h"

namespace dabspi::scan {

namespace {

constexpr std::size_t kDirectoriesShown = 12;
constexpr std::size_t kNamesOfChange = 4;

std::string percent(double share) {
    char text[16];
    std::snprintf(text, sizeof text, "%.1f%%", share);
    return text;
}

std::string time_at(std::uint64_t frame) {
    return seconds_text(air::seconds_of(frame));
}

std::string mode_words(const air::carousel_statistics& of) {
    switch (of.mode) {
        case air::carousel_mode::directory:
            return "directory, received " + std::to_string(of.directory_times.count) + " times";
        case air::carousel_mode::headers: return "headers";
        case air::carousel_mode::unknown: break;
    }
    return "no directory and no header";
}

std::string segments_words(const air::object_statistics& of) {
    return std::to_string(of.segments_held) + "/" + (of.segments == 0 ? "?" : std::to_string(of.segments));
}

std::string object_line(const air::object_statistics& of, std::uint64_t bytes_of_all) {
    const double share =
        bytes_of_all == 0 ? 0
                          : 100.0 * static_cast<double>(of.bytes_on_air) / static_cast<double>(bytes_of_all);
    std::string text = "    " + padded(kind_words(of), 22) + right(std::to_string(of.body_size), 8) +
                       right(segments_words(of), 10) +
                       right(of.times.count == 0 ? "-" : time_at(of.times.first), 10) +
                       right(std::to_string(of.times.count), 7) + right(percent(share), 8) + "  " +
                       (of.name.empty() ? "(without a name)" : printable(of.name));
    if (of.compressed) text += ", compressed";
    if (of.state == air::object_state::scrambled) text += ", under conditional access";
    if (of.state == air::object_state::unusable) text += std::string(", dropped: ") + drop_text(of.cause);
    if (of.versions > 1) text += ", " + std::to_string(of.versions) + " versions";
    if (of.gone) text += ", gone at " + time_at(*of.gone);
    return text + "\n";
}

std::string objects_text(const air::carousel_statistics& of, std::uint64_t bytes_of_all) {
    if (of.objects.empty() && of.gone.empty()) return {};
    std::string text = "    " + padded("kind", 22) + right("bytes", 8) + right("segments", 10) +
                       right("whole at", 10) + right("times", 7) + right("share", 8) + "  name\n";
    for (const air::object_statistics& each : of.objects)
        text += object_line(each, bytes_of_all);
    for (const air::object_statistics& each : of.gone)
        text += object_line(each, bytes_of_all);
    if (of.gone_count > of.gone.size())
        text += "    and " + std::to_string(of.gone_count - of.gone.size()) + " more that are gone\n";
    return text;
}

std::string names_text(const char* what, const air::directory_version::names& of) {
    if (of.count == 0) return {};
    std::string text = std::string("; ") + what + " " + std::to_string(of.count) + ":";
    for (std::size_t i = 0; i < of.first.size() && i < kNamesOfChange; ++i)
        text += (i == 0 ? " " : ", ") + printable(of.first[i]);
    return text + (of.count > kNamesOfChange ? ", ..." : "");
}

std::string directories_text(const air::carousel_statistics& of) {
    if (of.directories.empty()) return {};
    std::string text = "    directory versions: " + std::to_string(of.directory_versions) + "\n";
    const std::size_t left_out =
        of.directories.size() > kDirectoriesShown ? of.directories.size() - kDirectoriesShown : 0;
    for (std::size_t i = left_out; i < of.directories.size(); ++i) {
        const air::directory_version& each = of.directories[i];
        text += "      at " + time_at(each.frame) + ": " + std::to_string(each.objects) +
                " objects, transport " + std::to_string(each.transport_id) +
                (each.compressed ? ", compressed" : "");
        if (of.directory_versions != 1)
            text += names_text("added", each.added) + names_text("removed", each.removed) +
                    names_text("changed", each.changed);
        text += "\n";
    }
    return text;
}

template <class Counts, class Drop>
std::string drops_text(const Counts& of, Drop end) {
    std::string text;
    for (unsigned i = 0; i < static_cast<unsigned>(end); ++i) {
        const std::uint64_t count = of.of(static_cast<Drop>(i));
        if (count != 0)
            text += "    " + padded(std::to_string(count), 8) + drop_text(static_cast<Drop>(i)) + "\n";
    }
    return text;
}

std::string fec_text(const air::packet_counts& of) {
    if (of.fec_sets == 0 && of.fec_packets == 0) return {};
    return "    FEC: " + std::to_string(of.fec_sets) + " sets, " + std::to_string(of.fec_sets_used) +
           " needed, " + std::to_string(of.fec_sets_repaired) + " of these repaired everything\n";
}

}  // namespace

std::string seconds_text(double seconds) {
    char text[64];
    if (seconds < 120) {
        std::snprintf(text, sizeof text, "%.1f s", seconds);
    } else {
        const auto whole = static_cast<unsigned long>(seconds);
        std::snprintf(text, sizeof text, "%lu:%02lu:%02lu", whole / 3600, whole / 60 % 60, whole % 60);
    }
    return text;
}

std::string carousel_text(const air::carousel_report& of, const air::packet_counts& packets) {
    std::string text;
    for (const std::string& each : verdict_of(of, packets))
        text += "    " + printable(each) + "\n";
    const air::carousel_statistics& carousel = of.carousel;
    text += "    carousel: " + mode_words(carousel) + "; " + std::to_string(carousel.counts.groups) +
            " data groups";
    if (const auto cycle = carousel.cycle()) text += "; cycle " + seconds_text(air::seconds_of(*cycle));
    text += "\n" + fec_text(packets);
    text += objects_text(carousel, packets.cells * air::kCell) + directories_text(carousel);
    const std::string drops =
        drops_text(packets, air::packet_drop::count) + drops_text(carousel.counts, air::carousel_drop::count);
    return text + (drops.empty() ? "" : "    dropped or lost\n" + drops);
}

}  // namespace dabspi::scan
