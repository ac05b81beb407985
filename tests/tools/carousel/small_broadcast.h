// Documents and images of a small broadcast: two services, today's and tomorrow's schedules, logos.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "testkit/temporary_directory.h"
#include "tests/tools/files/files.h"
#include "tools/carousel/prepared_carousel.h"

namespace carousel_test {

using dabspi::bytes;

inline dabspi::carousel::prepared_carousel prepared(const dabspi::carousel::carousel_options& options) {
    std::unique_ptr<dabspi::transmit::carousel_maker> maker;
    return prepare(options, maker);
}

inline std::string si_document(const std::string& more = {}) {
    std::string text =
        "<serviceInformation xmlns='http://www.worlddab.org/schemas/spi/31'><ensemble id='e1.c185'>";
    for (const std::string service : {"c221", "c222"})
        text += "<service><mediumName>Radio " + service + "</mediumName><bearer id='dab:ce1.c185." + service +
                ".0'/><mediaDescription><multimedia url='http://example.com/" + service +
                ".png' mimeValue='image/png' type='logo_unrestricted' width='128' height='128'/>"
                "</mediaDescription></service>";
    return text + more + "</ensemble></serviceInformation>";
}

inline std::string pi_document(const std::string& service, const std::string& day, const std::string& title) {
    std::string text = "<epg xmlns='http://www.worlddab.org/schemas/spi/31'><schedule><scope startTime='" +
                       day + "T00:00:00+01:00' stopTime='" + day +
                       "T23:00:00+01:00'><serviceScope id='dab:ce1.c185." + service + ".0'/></scope>";
    for (int hour = 10; hour < 23; ++hour)
        text += "<programme><mediumName>" + title + " " + std::to_string(hour) +
                "</mediumName><location><time time='" + day + "T" + std::to_string(hour) +
                ":00:00+01:00' duration='PT1H'/></location></programme>";
    return text + "</schedule></epg>";
}

// A PNG of 128 x 128 pixels, from the examples.
inline std::string png_image() {
    return read_file(DABSPI_EXAMPLE_OBJECTS "/quillhaven-128x128.png");
}

struct small_broadcast {
    temporary_directory folder;
    dabspi::carousel::carousel_options options;

    small_broadcast() {
        write_file(folder, "si.xml", si_document());
        write_file(folder, "today.xml", pi_document("c221", "2026-03-02", "Today"));
        write_file(folder, "tomorrow.xml", pi_document("c221", "2026-03-03", "Tomorrow"));
        write_file(folder, "logos/c221.png", png_image());
        write_file(folder, "logos/c222.png", png_image());
        options.inputs = {path("si.xml"), path("today.xml"), path("tomorrow.xml"), path("logos")};
        options.clock = "2026-03-02T10:30";
    }
    std::string path(const std::string& name) const { return (folder.path() / name).string(); }
};

}  // namespace carousel_test
