// The host-facing interface: spi_wrap::toSpiServer, with the storage path in the system's shared data block.

#include <sys/stat.h>

#include <chrono>
#include <optional>
#include <stdexcept>
#include <utility>

#include "platform/zeb_sync.h"
#include "spi_wrap/to_spi_server.h"
#include "tools/files/created_directories.h"
#include "tools/playing/library_interface.h"
#include "tools/playing/shared_block.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/said_wait.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::chrono::seconds kSilentWait{2};

programme from(const spi_wrap::SpiProgramInfo& info) {
    programme result;
    result.start.year = info.start.year;
    result.start.month = info.start.month;
    result.start.day = info.start.day;
    result.start.hour = info.start.hour;
    result.start.minute = info.start.minute;
    result.duration = info.duration;
    result.name = info.name;
    return result;
}

class wrapper_listener final : public spi_wrap::ISpiListener {
 public:
    explicit wrapper_listener(std::shared_ptr<notification_queue> queue) : queue_(std::move(queue)) {}

    // The library never calls it; if it ever did, the output would show it.
    void ProgramInfoReceived(const spi_wrap::ServElemId& service, spi_wrap::SpiProgramInfo& info) override {
        queue_->put([&] { return programme_info{{service.sid, service.ecc, service.scids}, from(info)}; });
    }
    void ProgramNowNextUpdated(spi_wrap::SpiProgramInfo& now, spi_wrap::SpiProgramInfo& next) override {
        queue_->put([&] { return now_next{from(now), from(next)}; });
    }
    void StationLogoReceived(spi_wrap::SpiLogoInfo& logo) override {
        queue_->put([&] {
            return station_logo{
                {logo.service_id, logo.ecc, logo.scids}, logo.image_format, logo.size_code, logo.file_name};
        });
    }

 private:
    std::shared_ptr<notification_queue> queue_;
};

bool is_directory(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

class wrapper_library final : public library_interface {
 public:
    wrapper_library(const std::string& storage_path, std::shared_ptr<notification_queue> queue)
        : live_(std::make_unique<live>(std::move(queue))), lock_(kSystemBlock) {
        // The block's lock also keeps two replays apart that make and remove the library's directory.
        // Programs hold it for a moment; one that hangs holds it for ever.
        std::optional<said_wait> waiting;
        waiting.emplace(kSilentWait, [] {
            print_error(
                "waiting for the lock of the shared data block, /dev/shm/dabspi-SysDataInfo.lock: another "
                "program holds it (fuser names it); --api core does without");
        });
        const temporary_storage_path temporary(storage_path);
        waiting.reset();
        directories_ = std::make_unique<created_directories>(std::vector<std::string>{"/temp", "/temp/dab"});
        try {
            live_->server = std::make_unique<spi_wrap::toSpiServer>(&live_->listener);
            // The library falls back to a directory of its own without a word; that is no place for a desk's
            // logos.
            const std::string logo_root = storage_path + "/HdStationLogo/";
            if (!is_directory(logo_root))
                throw std::runtime_error("the library cannot make the logo directory " +
                                         printable(logo_root));
        } catch (...) {
            live_.reset();
            directories_->remove();
            throw;
        }
    }
    ~wrapper_library() override {
        live_.reset();
        const ZebSyncGuard<ZebSharedSyncObject> guard(lock_);
        directories_->remove();
    }

    void set_date_time(const spi::MotDateTime& now) override {
        spi_wrap::MotDateTime copy;
        copy.year = now.year;
        copy.month = now.month;
        copy.day = now.day;
        copy.hour = now.hour;
        copy.minute = now.minute;
        live_->server->SetDateTime(copy);
    }
    void set_current_service(const service_id& service, std::uint16_t ensemble) override {
        auto id = identifier_of<spi_wrap::ServElemId>(service);
        live_->server->SetCurrentService(id, ensemble);
    }
    void feed(const feed_mot_body& object) override {
        spi_wrap::MotBodyMetadata metadata;
        metadata.content_type = object.content_type;
        metadata.content_subtype = object.content_subtype;
        metadata.content_name = object.content_name;
        spi_wrap::MotBody body;
        body.size = static_cast<std::uint32_t>(object.body->size());
        body.data = object.body->data();
        auto id = identifier_of<spi_wrap::ServElemId>(object.service);
        live_->server->FeedMotBody(metadata, body, id);
    }
    void resend_now_next() override {
        throw std::logic_error("ResendNowNext does not exist on the host-facing interface");
    }

    void abandon() override {
        static auto& abandoned = *new std::vector<std::unique_ptr<live>>;
        abandoned.push_back(std::move(live_));
    }

 private:
    struct live {
        explicit live(std::shared_ptr<notification_queue> queue) : listener(std::move(queue)) {}
        wrapper_listener listener;  // outlives the server
        std::unique_ptr<spi_wrap::toSpiServer> server;
    };
    std::unique_ptr<live> live_;
    ZebSharedSyncObject lock_;
    std::unique_ptr<created_directories> directories_;
};

}  // namespace

std::unique_ptr<library_interface> start_wrapper(const std::string& storage_path,
                                                 std::shared_ptr<notification_queue> queue) {
    return std::make_unique<wrapper_library>(storage_path, std::move(queue));
}

}  // namespace dabspi
