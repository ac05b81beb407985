#include "spi_wrap/spi_cb.h"

namespace spi_wrap {
namespace {

SpiProgramInfo to_host(const spi::SpiProgramInfo& info) {
    SpiProgramInfo out;
    out.start.year = info.start.year;
    out.start.month = info.start.month;
    out.start.day = info.start.day;
    out.start.hour = info.start.hour;
    out.start.minute = info.start.minute;
    out.duration = info.duration;
    out.name = info.name;
    return out;
}

ImageFormat to_host(std::uint8_t format) {
    switch (format) {
        case IMAGE_JPEG: return IMAGE_JPEG;
        case IMAGE_PNG: return IMAGE_PNG;
        default: return IMAGE_UNKNOWN;
    }
}

}  // namespace

void spi_cb::ProgramInfoReceived(const spi::ServElemId&, spi::SpiProgramInfo&) {}

void spi_cb::ProgramNowNextUpdated(spi::SpiProgramInfo& now, spi::SpiProgramInfo& next) {
    if (listener_ == nullptr) return;
    SpiProgramInfo host_now = to_host(now);
    SpiProgramInfo host_next = to_host(next);
    listener_->ProgramNowNextUpdated(host_now, host_next);
}

void spi_cb::StationLogoReceived(spi::SpiLogoInfo& logo) {
    if (listener_ == nullptr) return;
    SpiLogoInfo host_logo;
    host_logo.service_id = logo.service.sid;
    host_logo.ecc = logo.service.ecc;
    host_logo.scids = logo.service.scids;
    host_logo.image_format = to_host(logo.image_format);
    host_logo.size_code = logo.size_code;
    host_logo.file_name = logo.name;
    listener_->StationLogoReceived(host_logo);
}

}  // namespace spi_wrap
