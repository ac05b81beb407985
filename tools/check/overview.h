// What an ensemble's carousel holds, in tables: services by sizes of logos, services by days, what is missing
// where, and the objects with their versions. Everything that was sent counts, whether a receiver keeps it or
// not.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tools/check/report.h"

namespace dabspi::check {

// Sizes by their codes in SpiLogoInfo: unknown, 32x32, 112x32, 128x128, 320x240, 600x600, others.
constexpr std::size_t kLogoSizes = 7;

struct logo_cell {
    std::size_t announced = 0;  // different content names
    std::size_t sent = 0;       // of these
    bool written = false;
    std::size_t bytes = 0;  // of the image that was written, else of the last one that was sent
};

struct sent_day {
    day_summary sum;
    std::size_t gaps = 0;
    std::size_t described = 0;  // programmes with a description
    std::size_t with_genre = 0;
    bool kept = false;  // a receiver has programmes of it: today or tomorrow
};

struct service_overview {
    spi::ServElemId service;
    std::string name;
    bool announced = false;  // in service information
    std::array<logo_cell, kLogoSizes> logos;
    std::vector<sent_day> days;

    bool has_logo() const;  // that was announced
};

struct object_version {
    std::size_t object;   // in history::objects
    std::string version;  // empty: none is coded
    std::string created;  // "2026-03-10T06:00:00Z"
};

struct overview {
    std::vector<service_overview> services;  // all that are announced, have programmes or were listened to
    std::vector<object_version> objects;     // SPI objects
    bool any_announced = false;              // there is service information
    bool any_programmes = false;

    // Codes of the sizes in which a logo is announced, in a row: known ones, others, unknown.
    std::vector<std::size_t> logo_sizes() const;

    // Services by what they lack, as indices. Where nothing of a kind was sent at all, nobody lacks it.
    std::vector<std::size_t> without_schedule() const;
    std::vector<std::size_t> without_logo() const;
    std::vector<std::size_t> not_announced() const;  // schedules without a service
};

overview overview_of(const check_report& of);

// "E1.C221.0 Station"
std::string service_text(const service_overview& of);
// "written, 7,183 bytes"; empty where nothing was announced.
std::string cell_text(const logo_cell& of);

}  // namespace dabspi::check
