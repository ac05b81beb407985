#include "tools/scan/verdict.h"

#include <algorithm>

#include "tools/air/reception/carousel_words.h"
#include "tools/text/utf8.h"

namespace dabspi::scan {

namespace {

constexpr std::size_t kNamesShown = 10;

std::string name_of(const air::object_statistics& of) {
    return of.name.empty() ? "(without a name)" : in_quotes(of.name, 200);
}

std::string missing_objects(const air::carousel_statistics& of) {
    std::string text;
    std::size_t count = 0;
    for (const air::object_statistics& each : of.objects) {
        if (each.times.count != 0) continue;
        if (++count > kNamesShown) continue;
        text += (count == 1 ? "" : ", ") + name_of(each) + " (" + air::why_not_received(each) + ")";
    }
    if (count > kNamesShown) text += ", and " + std::to_string(count - kNamesShown) + " more";
    return text;
}

std::string nothing_sent(const air::carousel_report& of, const air::packet_counts& packets) {
    if (packets.packets != 0 && packets.padding == packets.packets)
        return "announced, but only padding is sent";
    if (of.packets.packets != 0) return "announced, but no whole data group was received on its address";
    if (packets.packets == 0) return "announced, but its sub-channel carries no packets";
    return "announced, but nothing is sent on its address";
}

std::string completeness(const air::carousel_report& of, const air::packet_counts& packets) {
    const air::carousel_statistics& carousel = of.carousel;
    if (carousel.counts.groups == 0) return nothing_sent(of, packets);
    if (carousel.mode == air::carousel_mode::unknown)
        return "data groups were received, but no whole directory and no whole header";
    if (carousel.objects.empty())
        return carousel.mode == air::carousel_mode::directory ? "the directory is empty"
                                                              : "there is no object";
    const std::size_t all = carousel.objects.size();
    const std::size_t received = objects_received(carousel);
    if (received == all) return "complete: all objects were received, " + std::to_string(all);
    return std::to_string(received) + " of " + std::to_string(all) +
           " objects; these are missing: " + missing_objects(carousel);
}

}  // namespace

std::size_t objects_received(const air::carousel_statistics& of) {
    return static_cast<std::size_t>(
        std::count_if(of.objects.begin(), of.objects.end(),
                      [](const air::object_statistics& each) { return each.times.count != 0; }));
}

std::vector<std::string> verdict_of(const air::carousel_report& carousel, const air::packet_counts& packets) {
    std::vector<std::string> all = {completeness(carousel, packets)};
    // One set goes by in 103 cells.
    constexpr std::uint64_t kCellsForSets = 3 * 103;
    if (carousel.component.fec_scheme != 0 && packets.fec_sets == 0 && packets.cells > kCellsForSets)
        all.emplace_back("forward error correction is signalled, but not sent");
    if (carousel.component.fec_scheme == 0 && packets.fec_packets >= 9)
        all.emplace_back("forward error correction is sent, but not signalled");
    if (!carousel.present) all.emplace_back("no longer announced at the end");
    return all;
}

std::string kind_words(const air::object_statistics& of) {
    constexpr unsigned kImage = 2;
    constexpr unsigned kSpi = 7;
    if (of.content_type == kSpi && of.content_subtype == 0) return "service information";
    if (of.content_type == kSpi && of.content_subtype == 1) return "programme information";
    if (of.content_type == kSpi && of.content_subtype == 2) return "group information";
    if (of.content_type == kImage && of.content_subtype == 1) return "JPEG image";
    if (of.content_type == kImage && of.content_subtype == 3) return "PNG image";
    const std::string types = std::to_string(of.content_type) + "/" + std::to_string(of.content_subtype);
    return (of.content_type == kImage ? "image, type " : "type ") + types;
}

}  // namespace dabspi::scan
