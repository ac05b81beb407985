#include "tools/carousel/carousel_report.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <set>

#include "tools/air/fic/ensemble.h"
#include "tools/air/frame.h"
#include "tools/text/utf8.h"

namespace dabspi::carousel {

namespace {

using namespace transmit;

constexpr double kMillisecondsOfSecond = 1000;
constexpr double kLongSeconds = 600;
constexpr std::size_t kMostSaid = 100;

[[gnu::format(printf, 1, 2)]] std::string formatted(const char* format, ...) {
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    return text;
}

double seconds_of_stretch(const stretch& of) {
    return of.frames * air::kMillisecondsOfFrame / kMillisecondsOfSecond;
}

// Of a class: how many objects, and how often they are sent in one stretch.
struct class_row {
    std::string name;
    std::size_t objects = 0;
    std::size_t bytes = 0;
    std::size_t transmissions = 0;
};

std::vector<class_row> rows_of(const prepared_carousel& of) {
    std::vector<class_row> rows(1 + kImportances);
    rows[0].name = "directory";
    for (std::size_t i = 0; i < kImportances; ++i)
        rows[i + 1].name = importance_text(static_cast<importance>(i));
    std::vector<std::size_t> sent(of.made.carousel.entities.size());
    for (const planned_segment& each : of.made.order)
        if (each.segment == 0) ++sent[each.entity];
    for (std::size_t i = 0; i < of.made.carousel.entities.size(); ++i) {
        const sent_entity& each = of.made.carousel.entities[i];
        class_row& row = rows[each.object ? 1 + static_cast<std::size_t>(of.tuned[*each.object].what) : 0];
        row.bytes += each.size;
        if (each.type == group_type::header) continue;
        ++row.objects;
        row.transmissions += sent[i];
    }
    return rows;
}

std::string classes_text(const prepared_carousel& of) {
    std::string text = formatted("  %-28s %8s %10s %10s\n", "", "objects", "bytes", "every");
    for (const class_row& row : rows_of(of)) {
        if (row.objects == 0) continue;
        const double every = seconds_of_stretch(of.made.sent) * static_cast<double>(row.objects) /
                             static_cast<double>(row.transmissions);
        text += formatted("  %-28s %8zu %10zu %10s\n", row.name.c_str(), row.objects, row.bytes,
                          seconds_text(every).c_str());
    }
    return text;
}

std::string wait_line(const char* what, const wait& ours, const wait& plain) {
    if (!ours.any) return {};
    return formatted("  %-28s %8s %10s   %8s %10s\n", what, seconds_text(ours.median).c_str(),
                     seconds_text(ours.worst).c_str(), seconds_text(plain.median).c_str(),
                     seconds_text(plain.worst).c_str());
}

std::string waits_text(const made_carousel& of) {
    return "A receiver that tunes in has           in this order         one after another\n" +
           formatted("  %-28s %8s %10s   %8s %10s\n", "", "median", "worst", "median", "worst") +
           wait_line("now and next of its service", of.waits.now_next, of.plain_waits.now_next) +
           wait_line("all logos", of.waits.logos, of.plain_waits.logos) +
           wait_line("everything", of.waits.everything, of.plain_waits.everything);
}

std::string images_text(const prepared_carousel& of) {
    if (of.images.empty()) return {};
    const auto written = std::count_if(of.images.begin(), of.images.end(),
                                       [](const image_verdict& each) { return each.written; });
    std::string text = formatted("Images: %zu, of which receivers write %zu\n", of.images.size(),
                                 static_cast<std::size_t>(written));
    for (const image_verdict& each : of.images) {
        const carousel_object& object = of.objects[each.object];
        text += "  " + printable(object.sent.name) +
                formatted(": %s, %u x %u, %zu bytes: ", object.image->kind, object.image->width,
                          object.image->height, object.sent.body->size());
        text += (each.written ? "written" : each.why) + "\n";
        if (!each.remedy.empty()) text += "    " + printable(each.remedy) + "\n";
    }
    return text;
}

std::string compression_text(const prepared_carousel& of) {
    std::size_t packed = 0;
    std::size_t saved = 0;
    for (const carousel_object& each : of.objects) {
        if (each.sent.packed == nullptr) continue;
        ++packed;
        saved += each.sent.body->size() - each.sent.packed->size();
    }
    return formatted(
        "Compressed: %zu of %zu objects, %zu bytes less; some receivers pass compressed objects over\n",
        packed, of.objects.size(), saved);
}

std::string ensemble_line(const prepared_carousel& of) {
    if (!of.ensemble) return {};
    const announced_ensemble& announced = of.announced;
    return "Ensemble " + ensemble_id_text(*of.ensemble) +
           formatted(", %zu services; SPI on %s.0: sub-channel %u, %u kbit/s, address %u, %s\n",
                     announced.services.size(), air::service_id_text(announced.spi_sid, true).c_str(),
                     unsigned{announced.spi.id}, unsigned{announced.spi.bit_rate},
                     unsigned{announced.spi_address}, announced.spi_fec ? "FEC" : "no FEC");
}

}  // namespace

std::string seconds_text(double seconds) {
    if (seconds < kLongSeconds) return formatted("%.1f s", seconds);
    const auto whole = static_cast<long>(seconds + 0.5);
    return formatted("%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60);
}

std::string carousel_report(const prepared_carousel& of, const carousel_options& options) {
    std::string text = ensemble_line(of);
    text += formatted("Carousel in %s mode, %zu objects; it repeats after %s\n", options.mode.c_str(),
                      of.objects.size(), seconds_text(seconds_of_stretch(of.made.sent)).c_str());
    text += classes_text(of);
    if (options.compress) text += compression_text(of);
    return text + waits_text(of.made) + images_text(of);
}

std::string budget_report(const prepared_carousel& of, const left_out_objects& gone, wanted_wait wanted,
                          double seconds) {
    const std::string what = std::string(wanted_wait_text(wanted)) + " within " + seconds_text(seconds);
    std::string text = "Worst case of " + std::string(wanted_wait_text(wanted)) + " at " +
                       std::to_string(of.settings.packets.frame_size / 3) +
                       " kbit/s: " + seconds_text(gone.before) + "\n";
    if (gone.objects.empty() && gone.enough) return text + "Nothing has to go to have " + what + "\n";
    if (!gone.enough)
        text += "Even without all that may go it is " + seconds_text(gone.after) +
                "; use a higher bit rate, or send fewer services\n";
    text += "To go" +
            (gone.enough ? " to have " + what + " (it is " + seconds_text(gone.after) + " then)"
                         : std::string()) +
            ":\n";
    std::size_t size = 0;
    std::size_t said = 0;
    for (const std::size_t each : gone.objects) {
        const std::size_t its = of.objects[each].sent.sent_body().size();
        size += its;
        if (++said > kMostSaid) continue;
        text += formatted("  %8zu  ", its) + printable(of.objects[each].sent.name) + " (" +
                importance_text(of.tuned[each].what) + ", " + printable(of.objects[each].source) + ")\n";
    }
    if (said > kMostSaid) text += formatted("  and %zu more\n", said - kMostSaid);
    return text + formatted("  %8zu  bytes in %zu objects\n", size, gone.objects.size());
}

}  // namespace dabspi::carousel
