#include "src/logo_db/spi_logo_db.h"

#include <utility>

#include "src/event/payloads.h"
#include "src/logo_db/logo_files.h"
#include "src/parse/hexadecimal.h"

namespace spi {

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
    auto& announced = logos_[service];
    for (const SpiLogoInfo& logo : description.logos)
        announced[logo.name].emplace_back(logo);
    return 0;
}

bool SpiLogoDb::valid_metadata(const MotBodyMetadata& metadata) const {
    return is_logo_image(metadata);
}

int SpiLogoDb::handle_bodyimg(const MotBodyMetadata& metadata, MotBody&& received,
                              const ServElemId& service) {
    const MotBody body =
        std::move(received);  // one body serves every announcement; freed here whatever happens
    if (!valid_metadata(metadata)) return kRefused;
    const auto announced = use_up(logos_, service, metadata.content_name);
    if (!announced) return kRefused;
    for (const SpiLogoData& station_logo : *announced) {
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
    return gives_way_to_larger(logo) &&
           isFindLargeSizeLogo(logo.service.ecc, static_cast<int>(logo.service.sid), logo.service.scids,
                               root);
}

int SpiLogoDb::removeLogo(const SpiLogoInfo& logo, const std::string& root, const MotBody& body) const {
    if (refusal_of_logo(logo, body.size) != logo_refusal::none) return 0;
    return deleteCorruptedFile(logo.service.ecc, static_cast<int>(logo.service.sid), logo.service.scids,
                               logo.size_code, root)
               ? 1
               : 0;
}

std::string SpiLogoDb::toString(unsigned value) {
    std::string text;
    append_hexadecimal(text, value, 1, false);
    return text;
}

// The line numbers are constants: a receiver's log is read by them.

bool SpiLogoDb::isFindLargeSizeLogo(int ecc, int sid, int scids, const std::string& root) {
    const std::string directory = root + "/";
    return is_logo_directory(directory, "isFindLargeSizeLogo", 164) &&
           has_logo_file(directory + larger_logo_name(ecc, sid, scids) + "*");
}

bool SpiLogoDb::deleteCorruptedFile(int ecc, int sid, int scids, int size_code, const std::string& root) {
    const std::string directory = root + "/";
    if (!is_logo_directory(directory, "deleteCorruptedFile", 204)) return false;
    // "*" and not ".*": every file of the station whose name goes on from the size code, of any format.
    delete_logo_files(
        directory, station_prefix(ecc, sid, scids) + "_" + toString(static_cast<unsigned>(size_code)) + "*");
    return true;
}

}  // namespace spi
