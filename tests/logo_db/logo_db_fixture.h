// What the tests of the logo store speak in. Handlers are called on the test's own thread; the logo root is a
// directory of the test's own.
//
//     announce("logo", 4);                    // a 320 x 240 PNG of `station`
//     receive("logo", "the bytes");
//     expect_reported({"E1C2210_4.PNG"});
//     EXPECT_EQ(files(), ...);
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "src/event/payloads.h"
#include "src/logo_db/spi_logo_db.h"
#include "testkit/bodies.h"
#include "testkit/temporary_directory.h"
#include "tests/support/captured_debug.h"
#include "tests/support/recording_router.h"

namespace logo_db {

inline const spi::ServElemId station{0xC221, 0xE1, 0};
// With which the objects are received; the key under which announcements are kept.
inline const spi::ServElemId data_service{0xE1C00221, 0xE1, 0};

constexpr std::uint8_t kJpeg = 1;
constexpr std::uint8_t kPng = 2;
constexpr std::uint16_t kJfifBody = 1;
constexpr std::uint16_t kPngBody = 3;

inline spi::MotBody body(const std::string& bytes) {
    return body_of(spi_builder::str(bytes));
}

inline spi::SpiLogoInfo logo_of(const spi::ServElemId& service, std::uint8_t format, std::uint8_t size_code,
                                const std::string& name = "logo") {
    spi::SpiLogoInfo info;
    info.service = service;
    info.image_format = format;
    info.size_code = size_code;
    info.name = name;
    return info;
}

inline spi::MotBodyMetadata image(const std::string& content_name, std::uint16_t subtype = kPngBody) {
    spi::MotBodyMetadata m;
    m.user_application_type = 7;
    m.content_type = 2;
    m.content_subtype = subtype;
    m.content_name = content_name;
    return m;
}

class LogoDb : public ::testing::Test {
 protected:
    LogoDb() {
        router.register_queue(&db);
        spi::SpiLogoData::set_root(root.path().string());
    }
    ~LogoDb() override { spi::SpiLogoData::set_root(""); }

    void announce(const std::string& content_name, std::uint8_t size_code, std::uint8_t format = kPng,
                  const spi::ServElemId& service = station) {
        announce({logo_of(service, format, size_code, content_name)});
    }
    void announce(std::list<spi::SpiLogoInfo> logos, const spi::ServElemId& with = data_service) {
        spi::SiServiceInfo description;
        description.id = station;
        description.name = "Radio";
        description.logos = std::move(logos);
        EXPECT_EQ(db.handle_meta(with, description), 0);
    }
    int receive(const std::string& content_name, const std::string& bytes,
                const spi::ServElemId& with = data_service) {
        return db.handle_bodyimg(image(content_name), body(bytes), with);
    }
    void handle(std::shared_ptr<spi::i_evt_base> payload) {
        spi::event e(spi::QID_LOGODB, std::move(payload));
        db.process_event(e);
    }

    // The logos that were sent to the listener notifier since this was last asked.
    std::vector<spi::SpiLogoInfo> reported() {
        std::vector<spi::SpiLogoInfo> logos;
        for (const spi::event& e : router.take()) {
            EXPECT_EQ(e.destination, spi::QID_CBHDL);
            EXPECT_EQ(e.code(), spi::EC_LOGOCB);
            if (e.code() == spi::EC_LOGOCB) logos.push_back(payload_of<spi::si_logo_event>(e).logo);
        }
        return logos;
    }
    void expect_reported(std::vector<std::string> names) {  // in whatever order
        std::vector<std::string> sent;
        for (const spi::SpiLogoInfo& logo : reported())
            sent.push_back(logo.name);
        std::sort(sent.begin(), sent.end());
        std::sort(names.begin(), names.end());
        EXPECT_EQ(sent, names);
    }

    void put(const std::string& name, const std::string& bytes = "old") const {
        std::ofstream(root / name, std::ios::binary) << bytes;
    }
    std::string content(const std::string& name) const {
        std::ifstream in(root / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    // Everything in the root, sorted.
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(root.path()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    void expect_files(std::vector<std::string> names) const {
        std::sort(names.begin(), names.end());
        EXPECT_EQ(files(), names);
    }

    captured_debug debug;
    temporary_directory root;
    recording_router router;
    spi::SpiLogoDb db;
};

}  // namespace logo_db
