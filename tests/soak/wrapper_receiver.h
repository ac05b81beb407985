// The host-facing layer under the soak.
#pragma once

#include "spi_wrap/to_spi_server.h"
#include "tests/soak/library_model.h"
#include "tests/soak/receiver.h"

namespace soak {

class wrapper_receiver final : public receiver {
 public:
    wrapper_receiver() : listener_(received), server_(&listener_) {}

    void set_date_time(const spi::MotDateTime& t) override {
        spi_wrap::MotDateTime copy{t.year, t.month, t.day, t.hour, t.minute};
        server_.SetDateTime(copy);
    }
    void set_service(const spi::ServElemId& service, std::uint16_t ensemble) override {
        spi_wrap::ServElemId copy{service.sid, service.ecc, service.scids};
        server_.SetCurrentService(copy, ensemble);
    }
    void feed(const carousel_object& object, const object_version& version) override {
        spi_wrap::MotBodyMetadata metadata{0, object.content_type, object.content_subtype, object.name};
        spi_wrap::MotBody body{static_cast<std::uint32_t>(version.bytes.size()), version.bytes.data()};
        // Of a data service's identifier only the service identifier counts, the country code is in it.
        spi_wrap::ServElemId service{object.data_service.sid, 0, 0};
        server_.FeedMotBody(metadata, body, service);
    }
    bool resend() override { return false; }
    bool reports_programmes() const override { return false; }

 private:
    class recording_listener final : public spi_wrap::ISpiListener {
     public:
        explicit recording_listener(received_calls& received) : received_(received) {}
        void ProgramInfoReceived(const spi_wrap::ServElemId&, spi_wrap::SpiProgramInfo&) override {
            received_.database("programme information must stay inside");
        }
        void ProgramNowNextUpdated(spi_wrap::SpiProgramInfo& now, spi_wrap::SpiProgramInfo& next) override {
            received_.database(reported_now_next(time_of(now), now.duration, now.name, time_of(next),
                                                 next.duration, next.name));
        }
        void StationLogoReceived(spi_wrap::SpiLogoInfo& logo) override {
            received_.logo(reported_logo({logo.service_id, logo.ecc, logo.scids},
                                         static_cast<unsigned>(logo.image_format), logo.size_code,
                                         logo.file_name));
        }

     private:
        static spi::MotDateTime time_of(const spi_wrap::SpiProgramInfo& info) {
            return {info.start.year, info.start.month, info.start.day, info.start.hour, info.start.minute};
        }
        received_calls& received_;
    };
    recording_listener listener_;
    spi_wrap::toSpiServer server_;
};

}  // namespace soak
