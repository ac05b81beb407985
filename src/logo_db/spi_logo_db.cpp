#include "src/logo_db/spi_logo_db.h"

#include <utility>

#include "src/event/payloads.h"

namespace spi {
namespace {

// MOT header parameters of logos.
constexpr std::uint16_t kSpiApplication = 7;
constexpr std::uint8_t kImage = 2;
constexpr std::uint16_t kJfif = 1;
constexpr std::uint16_t kPng = 3;

}  // namespace

SpiLogoDb::SpiLogoDb() : event_proc(QID_LOGODB, worker_duties{}) {
    begin(*this);
}
SpiLogoDb::~SpiLogoDb() {
    destroy_proc();
}

void SpiLogoDb::process_event(event& e) {
    switch (e.code()) {
        case EC_LOGOROOT: SpiLogoData::set_root(static_cast<const logo_root_event&>(*e.payload).text); break;
        case EC_BODYIMG: {
            auto& received = static_cast<image_body_event&>(*e.payload);
            handle_bodyimg(received.metadata, std::move(received.body), received.service);
            break;
        }
        case EC_SERVINFO: {
            const auto& received = static_cast<const si_service_event&>(*e.payload);
            handle_meta(received.service, received.info);
            break;
        }
        case EC_DBCLEAR: logos_.clear(); break;  // files stay
        case EC_TERM: event_proc::process_event(e); break;
        default: break;
    }
}

int SpiLogoDb::handle_meta(const ServElemId& service, const SiServiceInfo& description) {
    announcement_table& announced = logos_[service];
    for (const SpiLogoInfo& logo : description.logos)
        announced[logo.name].emplace_back(logo);
    return 0;
}

bool SpiLogoDb::valid_metadata(const MotBodyMetadata& metadata) const {
    return metadata.user_application_type == kSpiApplication && metadata.content_type == kImage &&
           (metadata.content_subtype == kJfif || metadata.content_subtype == kPng);
}

int SpiLogoDb::handle_bodyimg(const MotBodyMetadata& metadata, MotBody&& received,
                              const ServElemId& service) {
    const MotBody body =
        std::move(received);  // one body serves every announcement; freed here whatever happens
    if (!valid_metadata(metadata)) return kRefused;
    const auto known = logos_.find(service);
    if (known == logos_.end() || known->second.empty()) return kRefused;

    // Used up by this image, whatever becomes of each.
    const auto announced = known->second.extract(metadata.content_name);
    if (announced.empty()) return kHandled;
    for (const SpiLogoData& station_logo : announced.mapped()) {
        const SpiLogoInfo logo = station_logo.get_meta();
        const std::string root = SpiLogoData::root();
        if (isExist_SizeLogo_LGRECTS(logo, root)) continue;
        if (station_logo.write_logo(body)) {
            send(std::make_shared<si_logo_event>(logo), QID_CBHDL);
        } else {
            removeLogo(logo, root, body);
        }
    }
    return kHandled;
}

bool SpiLogoDb::isExist_SizeLogo_LGRECTS(const SpiLogoInfo& logo, const std::string& root) const {
    return logo.size_code == LOGO_SIZE_128x128 &&
           isFindLargeSizeLogo(logo.service.ecc, static_cast<int>(logo.service.sid), logo.service.scids,
                               root);
}

int SpiLogoDb::removeLogo(const SpiLogoInfo& logo, const std::string& root, const MotBody& body) const {
    if (!is_writable_logo(logo, body.size)) return 0;
    return deleteCorruptedFile(logo.service.ecc, static_cast<int>(logo.service.sid), logo.service.scids,
                               logo.size_code, root)
               ? 1
               : 0;
}

}  // namespace spi
