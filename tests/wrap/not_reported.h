// When the host's listener is not called: a host whose every call is spelled out. One test stands for each
// row of the tables in docs/integration.md that no other test of the host-facing layer shows. Each lets
// something be reported too, so that its silence is no accident.
#pragma once

#include <memory>

#include "tests/wrap/host.h"
#include "tests/wrap/wrap_fixture.h"

struct scheduled_programme {
    std::string name;
    unsigned hour;
    std::uint16_t minutes = 60;
    unsigned minute = 0;
    unsigned day = 2;  // of March 2026
};

// A host whose every call is spelled out. The station is E1.C221.
class NotReported : public Wrapped {
 protected:
    static constexpr std::uint16_t kEnsemble = 0xC181;
    static constexpr std::uint32_t kDataService = 0xE1C00221;

    NotReported() {
        put_block(block_with("/mnt/data"));
        server_ = std::make_unique<spi_wrap::toSpiServer>(&listener_);
    }

    std::vector<std::string> received() {
        EXPECT_TRUE(quiet());
        return listener_.take();
    }
    void time(std::uint8_t hour, std::uint8_t minute, std::uint8_t day = 2) {
        spi_wrap::MotDateTime now{2026, 3, day, hour, minute};
        server_->SetDateTime(now);
    }
    void tune(std::uint32_t sid = 0xC221, std::uint16_t ensemble = kEnsemble) {
        spi_wrap::ServElemId service{sid, 0xE1, 0};
        server_->SetCurrentService(service, ensemble);
    }
    void feed(std::uint8_t type, std::uint16_t subtype, const std::string& name,
              const spi_builder::bytes& bytes, std::uint32_t data_service = kDataService) {
        spi_wrap::MotBodyMetadata metadata{0, type, subtype, name};
        spi_wrap::MotBody body{static_cast<std::uint32_t>(bytes.size()), bytes.data()};
        spi_wrap::ServElemId service{data_service, 0, 0};
        server_->FeedMotBody(metadata, body, service);
    }
    void feed_schedule(const std::string& name, const std::vector<scheduled_programme>& programmes,
                       std::uint16_t sid = 0xC221, std::uint16_t ensemble = kEnsemble) {
        spi_builder::schedule_data schedule;
        schedule.scope = spi_builder::service_id{0xE1, ensemble, sid, 0};
        for (const scheduled_programme& p : programmes) {
            spi_builder::programme_data data;
            data.name.medium_name = p.name;
            data.start = {spi_builder::mjd(2026, 3, p.day), p.hour, p.minute};
            data.duration = static_cast<std::uint16_t>(p.minutes * 60);
            schedule.programmes.push_back(data);
        }
        feed(7, 1, name, spi_builder::pi_object({schedule}));
    }
    void announce(const std::string& object, const std::vector<spi_builder::logo_data>& logos,
                  std::uint32_t sid = 0xC221) {
        spi_builder::service_data service;
        service.name.medium_name = "Radio";
        service.bearers = {{0xE1, kEnsemble, sid, 0}};
        service.logos = logos;
        feed(7, 0, object, spi_builder::si_object(0xE1, kEnsemble, {service}));
        EXPECT_THAT(received(), ::testing::IsEmpty());  // and the announcement is there before its image
    }
    void feed_image(const std::string& name, std::size_t size = 100, std::uint16_t subtype = 3,
                    std::uint32_t data_service = kDataService) {
        feed(2, subtype, name, spi_builder::bytes(size, 'p'), data_service);
    }
    static spi_builder::logo_data png(const std::string& name, std::uint16_t width, std::uint16_t height) {
        return {"image/png", name, {}, width, height};
    }

 private:
    keeping_listener listener_;
    std::unique_ptr<spi_wrap::toSpiServer> server_;
};
