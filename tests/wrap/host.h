// A host for tests: a listener that keeps what it receives, and calls with the records of a broadcast.
#pragma once

#include <algorithm>
#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "spi_wrap/to_spi_server.h"
#include "src/event/quiet.h"
#include "testkit/spi_builder_objects.h"

class keeping_listener final : public spi_wrap::ISpiListener {
 public:
    void ProgramInfoReceived(const spi_wrap::ServElemId&, spi_wrap::SpiProgramInfo&) override {
        keep("programme information");
    }
    void ProgramNowNextUpdated(spi_wrap::SpiProgramInfo& now, spi_wrap::SpiProgramInfo& next) override {
        keep("now " + now.name + ", next " + next.name);
    }
    void StationLogoReceived(spi_wrap::SpiLogoInfo& logo) override {
        keep("logo " + logo.file_name + " of size " + std::to_string(logo.size_code));
    }

    // What was received since this was last asked.
    std::vector<std::string> take() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return std::exchange(received_, {});
    }
    std::vector<std::thread::id> threads() {
        const std::lock_guard<std::mutex> lock(mutex_);
        return threads_;
    }

 private:
    void keep(const std::string& what) {
        const std::lock_guard<std::mutex> lock(mutex_);
        received_.push_back(what);
        const auto self = std::this_thread::get_id();
        if (std::find(threads_.begin(), threads_.end(), self) == threads_.end()) threads_.push_back(self);
    }
    std::mutex mutex_;
    std::vector<std::string> received_;     // guarded by mutex_
    std::vector<std::thread::id> threads_;  // guarded by mutex_
};

// Feeds a server with one ensemble: the station E1.C221 in the ensemble C181, whose schedule for 2 March 2026
// and whose logo come in the data service E1C00221.
class broadcasting_host {
 public:
    explicit broadcasting_host(spi_wrap::ISpiListener* listener) : server_(listener) {}

    void set_time(std::uint8_t hour, std::uint8_t minute) {
        spi_wrap::MotDateTime now{2026, 3, 2, hour, minute};
        server_.SetDateTime(now);
    }
    void tune() {
        spi_wrap::ServElemId service{0xC221, 0xE1, 0};
        server_.SetCurrentService(service, 0xC181);
    }
    void feed_schedule() {
        const spi_builder::service_id station{0xE1, 0xC181, 0xC221, 0};
        spi_builder::schedule_data schedule;
        schedule.scope = station;
        schedule.programmes = {{{"", "News", ""}, {spi_builder::mjd(2026, 3, 2), 10, 0}, 3600},
                               {{"", "Talk", ""}, {spi_builder::mjd(2026, 3, 2), 11, 0}, 3600}};
        feed(7, 1, "20260302.EHB", spi_builder::pi_object({schedule}));
    }
    void feed_description() {
        spi_builder::service_data service;
        service.name.medium_name = "Radio";
        service.bearers = {{0xE1, 0xC181, 0xC221, 0}};
        service.logos = {{"image/png", "logo.png", {}, 320, 240}};
        feed(7, 0, "si.EHB", spi_builder::si_object(0xE1, 0xC181, {service}));
    }
    void feed_image(const std::string& bytes) { feed(2, 3, "logo.png", spi_builder::str(bytes)); }

    void feed(std::uint8_t type, std::uint16_t subtype, const std::string& name,
              const spi_builder::bytes& bytes) {
        spi_wrap::MotBodyMetadata metadata{0, type, subtype, name};
        spi_wrap::MotBody body{static_cast<std::uint32_t>(bytes.size()), bytes.data()};
        spi_wrap::ServElemId service{0xE1C00221, 0, 0};
        server_.FeedMotBody(metadata, body, service);
    }

 private:
    spi_wrap::toSpiServer server_;
};

inline bool quiet() {
    return spi::wait_until_quiet(std::chrono::seconds(60));
}
