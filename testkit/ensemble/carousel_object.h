// One object of the simulated carousel: its bytes, and what they say to a receiver. The meaning is written
// down where the object is made; nothing reads it back from the bytes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "src/parse/mot_content.h"
#include "src/parse/pi_schedule_programme.h"
#include "src/parse/serv_elem_id.h"
#include "testkit/spi_builder.h"

namespace soak {

// A programme with the service that it is for, and the ensemble that the identifier was coded with. Of the
// record, what a listener can see is filled in: name, start, duration.
struct said_programme {
    std::uint16_t ensemble = 0;
    spi::ServElemId service;
    spi::PiScheduleProgramme programme;
};

// A logo that service information announces.
struct said_logo {
    spi::ServElemId station;
    std::uint8_t format = 0;  // 0 unknown, 1 JPEG, 2 PNG
    std::uint8_t size = 0;    // size code
    std::string content_name;
};

struct object_version {
    int from_minute = 0;  // of the day
    spi_builder::bytes bytes;
    std::vector<said_programme> programmes = {};
    std::vector<said_logo> logos = {};
};

struct carousel_object {
    std::string name;
    std::uint8_t content_type = 7;
    std::uint16_t content_subtype = 0;
    spi::ServElemId data_service;
    std::vector<object_version> versions;  // by their minutes; the first is from 0

    const object_version& at(int minute) const {
        std::size_t i = versions.size() - 1;
        while (i > 0 && versions[i].from_minute > minute)
            --i;
        return versions[i];
    }
};

constexpr auto kImage = spi::kMotImage;
constexpr auto kSpiObject = spi::kMotSpiObject;
constexpr auto kServiceInformation = spi::kMotServiceInformation;
constexpr auto kProgrammeInformation = spi::kMotProgrammeInformation;
constexpr auto kJfif = spi::kMotJfif;
constexpr auto kPng = spi::kMotPng;

}  // namespace soak
