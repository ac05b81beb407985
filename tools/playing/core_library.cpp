// The core interface: spi::SpiServer, used directly.

#include <cstring>
#include <utility>

#include "src/server/spi_server.h"
#include "tools/playing/library_interface.h"
#include "tools/playing/storage.h"

namespace dabspi {

namespace {

constexpr std::uint16_t kSpiApplication = 7;  // the DAB user application type of SPI

service_id from(const spi::ServElemId& id) {
    return {id.sid, id.ecc, id.scids};
}
programme from(const spi::SpiProgramInfo& info) {
    return {info.start, info.duration, info.name};
}

class core_listener final : public spi::ISpiListener {
 public:
    explicit core_listener(std::shared_ptr<notification_queue> queue) : queue_(std::move(queue)) {}

    void ProgramInfoReceived(const spi::ServElemId& service, spi::SpiProgramInfo& info) override {
        queue_->put([&] { return programme_info{from(service), from(info)}; });
    }
    void ProgramNowNextUpdated(spi::SpiProgramInfo& now, spi::SpiProgramInfo& next) override {
        queue_->put([&] { return now_next{from(now), from(next)}; });
    }
    void StationLogoReceived(spi::SpiLogoInfo& logo) override {
        queue_->put([&] {
            return station_logo{from(logo.service), logo.image_format, logo.size_code, logo.name};
        });
    }

 private:
    std::shared_ptr<notification_queue> queue_;
};

class core_library final : public library_interface {
 public:
    core_library(const std::string& storage_path, const std::string& logo_root,
                 std::shared_ptr<notification_queue> queue)
        // The library makes no temporary files; the storage directory as temporary root leaves nothing behind
        // anyway.
        : server_(std::make_unique<spi::SpiServer>(std::make_shared<core_listener>(std::move(queue)),
                                                   storage_path, logo_root)) {}

    void set_date_time(const spi::MotDateTime& now) override {
        spi::MotDateTime copy = now;
        server_->SetDateTime(copy);
    }
    void set_current_service(const service_id& service, std::uint16_t ensemble) override {
        auto id = identifier_of<spi::ServElemId>(service);
        server_->SetCurrentService(id, ensemble);
    }
    void feed(const feed_mot_body& object) override {
        spi::MotBodyMetadata metadata;
        metadata.user_application_type = kSpiApplication;
        metadata.content_type = object.content_type;
        metadata.content_subtype = object.content_subtype;
        metadata.content_name = object.content_name;
        const std::size_t size = object.body->size();
        auto data = std::make_unique<unsigned char[]>(size);
        if (size != 0) std::memcpy(data.get(), object.body->data(), size);
        spi::MotBody body(static_cast<std::uint32_t>(size), std::move(data));
        server_->FeedMotBody(std::move(metadata), std::move(body),
                             identifier_of<spi::ServElemId>(object.service));
    }
    void resend_now_next() override { server_->ResendNowNext(); }

    void abandon() override {
        static auto& abandoned = *new std::vector<std::unique_ptr<spi::SpiServer>>;
        abandoned.push_back(std::move(server_));
    }

 private:
    std::unique_ptr<spi::SpiServer> server_;
};

}  // namespace

std::unique_ptr<library_interface> start_core(const std::string& storage_path,
                                              std::shared_ptr<notification_queue> queue) {
    const std::string logo_root = storage_path + "/HdStationLogo/";
    make_directory(logo_root);
    return std::make_unique<core_library>(storage_path, logo_root, std::move(queue));
}

}  // namespace dabspi
