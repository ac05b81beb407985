// The core interface under the soak.
#pragma once

#include <memory>
#include <string>

#include "src/server/spi_server.h"
#include "testkit/bodies.h"
#include "tests/soak/library_model.h"
#include "tests/soak/receiver.h"

namespace soak {

class core_receiver final : public receiver {
 public:
    explicit core_receiver(const std::string& logo_root)
        : server_(std::make_shared<recording_listener>(received), "/temp/dab", logo_root) {}

    void set_date_time(const spi::MotDateTime& t) override {
        spi::MotDateTime copy = t;
        server_.SetDateTime(copy);
    }
    void set_service(const spi::ServElemId& service, std::uint16_t ensemble) override {
        spi::ServElemId copy = service;
        server_.SetCurrentService(copy, ensemble);
    }
    void feed(const carousel_object& object, const object_version& version) override {
        server_.FeedMotBody({7, object.content_type, object.content_subtype, object.name},
                            body_of(version.bytes), object.data_service);
    }
    bool resend() override {
        server_.ResendNowNext();
        return true;
    }
    bool reports_programmes() const override { return true; }

 private:
    class recording_listener final : public spi::ISpiListener {
     public:
        explicit recording_listener(received_calls& received) : received_(received) {}
        void ProgramInfoReceived(const spi::ServElemId& service, spi::SpiProgramInfo& info) override {
            received_.database(reported_programme(service, info.start, info.duration, info.name));
        }
        void ProgramNowNextUpdated(spi::SpiProgramInfo& now, spi::SpiProgramInfo& next) override {
            received_.database(
                reported_now_next(now.start, now.duration, now.name, next.start, next.duration, next.name));
        }
        void StationLogoReceived(spi::SpiLogoInfo& logo) override {
            received_.logo(reported_logo(logo.service, logo.image_format, logo.size_code, logo.name));
        }

     private:
        received_calls& received_;
    };
    spi::SpiServer server_;
};

}  // namespace soak
