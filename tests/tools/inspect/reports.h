// Words for tests of inspect: a body as it would be gathered, and its report.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <list>
#include <string>

#include "testkit/spi_builder_objects.h"
#include "tools/inspect/report.h"

namespace sb = spi_builder;

inline dabspi::inspected_body gathered_body(const sb::bytes& content, const std::string& source = "x.bin") {
    dabspi::inspected_body body;
    body.source = source;
    body.body = std::make_shared<const dabspi::bytes>(content);
    dabspi::classify(body);
    return body;
}

// A report, and the body that it points to.
struct owned_report {
    explicit owned_report(dabspi::inspected_body of, std::optional<std::uint16_t> ensemble = std::nullopt)
        : body(std::move(of)), report(dabspi::inspect_object(body, ensemble)) {}
    explicit owned_report(const sb::bytes& content) : owned_report(gathered_body(content)) {}
    owned_report(const owned_report&) = delete;
    owned_report& operator=(const owned_report&) = delete;

    const dabspi::inspected_body body;
    const dabspi::object_report report;
};

// Small objects of everyday life.
inline sb::bytes small_programme_information() {
    sb::schedule_data schedule;
    schedule.scope = sb::service_id{0xE0, 0x10C1, 0x1A01, 0};
    sb::programme_data programme;
    programme.name = {"Short", "", "\x01 at Ten"};
    programme.start = {sb::mjd(2026, 3, 10), 9, 0, 2};
    programme.duration = 5400;
    programme.short_id = 66051;
    schedule.programmes = {programme};
    return sb::pi_object({schedule}, {{1, "News"}});
}

inline sb::bytes small_service_information() {
    sb::service_data service;
    service.name = {"Orb", "Orbitale", ""};
    service.bearers = {{0xE0, 0x10C1, 0x1A01, 0}};
    service.logos = {{"image/png", "a.png", 2, 128, 128}};
    return sb::si_object(0xE0, 0x10C1, {service});
}
