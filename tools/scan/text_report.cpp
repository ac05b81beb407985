#include <algorithm>
#include <array>
#include <cstdio>

#include "tools/air/fic/protection.h"
#include "tools/scan/columns.h"
#include "tools/scan/report.h"
#include "tools/text/utf8.h"

namespace dabspi::scan {

namespace {

std::string line(const std::string& name, const std::string& value) {
    return "  " + padded(name, 12) + value + "\n";
}

std::string hexadecimal(unsigned value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*X", digits, value);
    return text;
}

std::string offset_text(int half_hours) {
    const int minutes = (half_hours < 0 ? -half_hours : half_hours) * 30;
    char text[32];
    std::snprintf(text, sizeof text, "UTC%c%02d:%02d", half_hours < 0 ? '-' : '+', minutes / 60,
                  minutes % 60);
    return text;
}

std::string ensemble_text(const air::ensemble& of) {
    if (!of.eid) return "unknown: the FIC does not say it";
    return hexadecimal(*of.eid, 4) + (of.ecc ? ", ECC " + hexadecimal(*of.ecc, 2) : "") + "  " +
           printable(of.label);
}

std::string time_text(const scanned_multiplex& of) {
    const std::string length = seconds_text(of.seconds());
    if (!of.first_minute) return length + ", the clock is not sent";
    std::string text = minute_text(*of.first_minute);
    if (*of.last_minute != *of.first_minute) text += " to " + minute_text(*of.last_minute);
    return text + ", local time" +
           (of.ensemble.offset_half_hours ? " (" + offset_text(*of.ensemble.offset_half_hours) + ")" : "") +
           "; " + length;
}

std::string frames_text(const air::container_statistics& of) {
    const auto number = [](std::uint64_t count) {
        return count == 0 ? std::string("none") : std::to_string(count);
    };
    return std::to_string(of.frames) + ", " + number(of.frames_missing) + " missing, " +
           number(of.frames_damaged) + " damaged";
}

std::string kind_text(const air::described_component& of) {
    constexpr std::uint8_t kDabPlus = 63;
    switch (of.organisation.mode) {
        case air::transport::audio: return of.organisation.type == kDabPlus ? "DAB+ audio" : "DAB audio";
        case air::transport::stream_data: return "stream data";
        case air::transport::packet: return "packet data";
        case air::transport::reserved: break;
    }
    return "unknown kind";
}

std::string application_text(std::uint16_t type) {
    static constexpr std::array<std::pair<std::uint16_t, const char*>, 7> kNames = {{{2, "SlideShow"},
                                                                                     {3, "Broadcast Website"},
                                                                                     {4, "TPEG"},
                                                                                     {5, "DGPS"},
                                                                                     {6, "TMC"},
                                                                                     {7, "SPI"},
                                                                                     {0x44A, "Journaline"}}};
    for (const auto& [number, name] : kNames)
        if (number == type) return name;
    return "user application " + std::to_string(type);
}

std::string location_text(const air::ensemble& in, const air::described_component& of) {
    if (!of.sub_channel) return "its place is not said";
    std::string text = "sub-channel " + std::to_string(*of.sub_channel);
    if (of.packet) text += ", address " + std::to_string(of.packet->address);
    for (const air::described_sub_channel& each : in.sub_channels) {
        if (each.id != *of.sub_channel) continue;
        if (each.organisation.bit_rate != 0)
            text += ", " + std::to_string(each.organisation.bit_rate) + " kbit/s";
        text += ", " + protection_text(each.organisation);
        if (each.fec_scheme.value_or(0) != 0) text += ", FEC scheme " + std::to_string(*each.fec_scheme);
    }
    return text;
}

std::string component_text(const air::ensemble& in, const air::described_component& of) {
    std::string text = padded(kind_text(of), 12) + location_text(in, of);
    if (!of.organisation.primary) text += ", secondary";
    if (of.organisation.access_control) text += ", under access control";
    for (const air::user_application& each : of.user_applications)
        text += ", " + application_text(each.type);
    if (!of.label.empty()) text += "  \"" + printable(of.label) + "\"";
    return text;
}

std::string services_text(const air::ensemble& of) {
    std::size_t width = 8;
    for (const air::described_service& each : of.services)
        width = std::max(width, printable(each.label).size());
    width = std::min<std::size_t>(width, 24);
    std::string text = "\nServices: " + std::to_string(of.services.size()) + "\n";
    for (const air::described_service& each : of.services) {
        std::string head = "  " + padded(air::service_id_text(each.sid, each.long_id), 10) +
                           padded(printable(each.label), width) + "  ";
        if (each.components.empty()) text += head + "no component\n";
        for (const air::described_component& component : each.components) {
            text += head + component_text(of, component) + "\n";
            head = std::string(2 + 10 + width + 2, ' ');
        }
    }
    return text;
}

std::string spi_head(const spi_found& of) {
    const air::spi_component& what = of.what;
    std::string text = "  " + air::service_id_text(what.sid, what.long_id) + "." +
                       std::to_string(what.scids) + "  " + printable(what.label) + ": sub-channel " +
                       std::to_string(what.sub_channel) + ", address " + std::to_string(what.address);
    if (what.bit_rate != 0) text += ", " + std::to_string(what.bit_rate) + " kbit/s";
    text += what.fec_scheme == 0 ? ", no FEC" : ", FEC";
    text += ", announced in frame " + std::to_string(of.first_frame);
    if (!of.present) text += ", until frame " + std::to_string(of.last_frame);
    return text + "\n";
}

std::string spi_text(const scanned_multiplex& of) {
    std::string text = "\nSPI\n";
    if (of.spi.empty() && of.unreadable_spi.empty()) text += "  none is announced\n";
    for (const spi_found& each : of.spi) {
        text += spi_head(each);
        const air::carousel_report* const carousel = of.carousel_of(each);
        if (carousel == nullptr) {
            text += "    not read here: it has moved, or there are too many carousels\n";
        } else if (carousel->component.sid == each.what.sid && carousel->component.scids == each.what.scids) {
            text += carousel_text(*carousel, of.packets_of(each.what.sub_channel));
        } else {
            text += "    the same carousel as that of " +
                    air::service_id_text(carousel->component.sid, carousel->component.long_id) + "\n";
        }
    }
    for (const std::string& each : of.unreadable_spi)
        text += "  " + each + "\n";
    return text;
}

std::string flows_text(const scanned_multiplex& of) {
    if (of.flows.size() < 2) return {};
    std::string text = "\nFlows of EDI in this capture (choose with --flow)\n";
    for (std::size_t i = 0; i < of.flows.size(); ++i) {
        const air::edi_flow& each = of.flows[i];
        text += "  " + padded(destination_text(each.flow), 24) +
                (each.fragments ? "PF fragments" : "AF packets") + ", " + std::to_string(each.datagrams) +
                " datagrams" + (of.chosen == i ? ", this one was read" : "") + "\n";
    }
    return text;
}

std::string losses_text(const scanned_multiplex& of) {
    std::string text;
    const auto add = [&text](const char* what, std::uint64_t count) {
        if (count != 0) text += "  " + padded(std::to_string(count), 10) + what + "\n";
    };
    for (const air::named_counter& each : air::loss_counters())
        add(each.text, of.container.*each.value);
    for (const air::fic_counter& each : air::kFicLossCounters)
        add(each.text, of.fic.*each.value);
    return text.empty() ? "" : "\nLost, damaged or left out\n" + text;
}

}  // namespace

std::string text_report(const scanned_multiplex& of) {
    std::string text = printable(of.name) + ": " + of.form.words +
                       (of.interrupted ? " (interrupted: up to here)" : "") + "\n";
    text += line("ensemble", ensemble_text(of.ensemble));
    text += line("time", time_text(of));
    text += line("frames", frames_text(of.container));
    if (of.fic.reconfigurations != 0)
        text += line("changes", std::to_string(of.fic.reconfigurations) + " reconfigurations announced");
    return text + flows_text(of) + services_text(of.ensemble) + spi_text(of) + losses_text(of);
}

}  // namespace dabspi::scan
