#include "tools/inspect/receiver_text.h"

#include <cstdio>
#include <iterator>

#include "tools/spi/receiver_values.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using namespace spi_object;

std::string offset_column(std::uint32_t offset) {
    char text[16];
    std::snprintf(text, sizeof text, "%8u", static_cast<unsigned>(offset));
    return text;
}

std::string ensemble_text(const object_report& of) {
    char eid[24];
    std::snprintf(eid, sizeof eid, " on ensemble %X", unsigned{of.taken.ensemble});
    return of.ensemble_from == ensemble_source::none ? "" : eid;
}

std::string programme_line(const taken_programme& of, const std::string& ensemble) {
    char minutes[16];
    std::snprintf(minutes, sizeof minutes, "%4u", of.programme.duration / 60U);
    std::string text = offset_column(of.offset) + "  ";
    std::string service = of.dropped ? "dropped" : receiver_service_text(of.service);
    if (service.size() < 9) service.append(9 - service.size(), ' ');
    text += service + "  " + receiver_time_text(of.programme.time) + "  " + minutes + " min  " +
            printable(of.programme.name);
    if (of.dropped) text += "  (no scope and no bearer names a service" + ensemble + ")";
    return text + "\n";
}

std::string service_lines(const taken_service& of) {
    static constexpr const char* kFormats[] = {"unknown format", "JPEG", "PNG"};
    static constexpr const char* kSizes[] = {"of unknown size", "32x32",   "112x32",       "128x128",
                                             "320x240",         "600x600", "of other size"};
    std::string service = of.info.id == spi::ServElemId() ? "no bearer" : receiver_service_text(of.info.id);
    if (service.size() < 9) service.append(9 - service.size(), ' ');
    std::string text = offset_column(of.offset) + "  " + service + "  " + printable(of.info.name) + "\n";
    std::size_t at = 0;
    for (const spi::SpiLogoInfo& logo : of.info.logos) {
        text += offset_column(of.logo_offsets[at++]) + "  ";
        if (!(logo.service == of.info.id)) text += "for " + receiver_service_text(logo.service) + "  ";
        text += "  logo  " +
                std::string(logo.image_format < std::size(kFormats) ? kFormats[logo.image_format] : "?") +
                " " + (logo.size_code < std::size(kSizes) ? kSizes[logo.size_code] : "?") + "  " +
                printable(logo.name) + "\n";
    }
    return text;
}

}  // namespace

std::string receiver_text(const object_report& of, const colouring& colours) {
    const receiver_view& taken = of.taken;
    if (!taken.read) return colours(text_colour::receiver, "  a receiver does not read this object") + "\n";
    std::string who = "  a receiver";
    // Services are taken wherever they are said to be; programmes from the ensemble that is received only.
    const std::string ensemble =
        of.tree.kind == object_kind::service_information ? std::string() : ensemble_text(of);
    if (!ensemble.empty())
        who += ensemble + (of.ensemble_from == ensemble_source::own ? " (the object's own)" : "");
    if (taken.programmes.empty() && taken.services.empty())
        return colours(text_colour::receiver, who + " takes nothing from it") + "\n";
    std::string text = colours(text_colour::receiver, who + " takes from it:") + "\n";
    for (const taken_programme& each : taken.programmes)
        text += programme_line(each, ensemble);
    for (const taken_service& each : taken.services)
        text += service_lines(each);
    if (taken.more != 0) text += "  and " + std::to_string(taken.more) + " more\n";
    return text;
}

}  // namespace dabspi
