#include "spi_wrap/to_spi_server.h"

#include <cstring>
#include <memory>
#include <utility>

#include "spi_wrap/spi_server.h"
#include "src/parse/mot_content.h"

namespace spi_wrap {
namespace {

// The application type of SPI data services (TS 101 756).

spi::SpiServer* core_of(const spi_server* server) {
    return server == nullptr ? nullptr : server->core();
}

spi::MotBody copy_of(const MotBody& body) {
    if (body.size == 0 || body.data == nullptr) return {};
    std::unique_ptr<unsigned char[]> bytes(new unsigned char[body.size]);
    std::memcpy(bytes.get(), body.data, body.size);
    return {body.size, std::move(bytes)};
}

}  // namespace

toSpiServer::toSpiServer(ISpiListener* listener) : server_(new spi_server(listener)) {}

toSpiServer::~toSpiServer() {
    delete server_;
}

int toSpiServer::SetCurrentService(ServElemId& service, unsigned short ensemble) {
    spi::SpiServer* const core = core_of(server_);
    if (core == nullptr) return 0;
    spi::ServElemId id;
    id.sid = service.sid;
    id.ecc = service.ecc;
    id.scids = service.scids;
    core->SetCurrentService(id, ensemble);
    return 0;
}

int toSpiServer::SetDateTime(MotDateTime& now) {
    spi::SpiServer* const core = core_of(server_);
    if (core == nullptr) return 0;
    spi::MotDateTime time;
    time.year = now.year;
    time.month = now.month;
    time.day = now.day;
    time.hour = now.hour;
    time.minute = now.minute;
    core->SetDateTime(time);
    return 0;
}

int toSpiServer::FeedMotBody(MotBodyMetadata& metadata, MotBody& body, ServElemId& service) {
    spi::SpiServer* const core = core_of(server_);
    if (core == nullptr) return 0;
    spi::MotBodyMetadata parameters;
    parameters.user_application_type = spi::kSpiApplication;
    parameters.content_type = metadata.content_type;
    parameters.content_subtype = metadata.content_subtype;
    parameters.content_name = metadata.content_name;
    // Deliberately unlike SetCurrentService: a data service has a 32-bit identifier, whose top eight bits are
    // its ECC, and the host's own ECC and SCIdS are not read. With a 16-bit identifier the ECC is 0.
    spi::ServElemId id;
    id.sid = service.sid;
    id.ecc = static_cast<std::uint8_t>(service.sid >> 24);
    core->FeedMotBody(std::move(parameters), copy_of(body), id);
    return 0;
}

}  // namespace spi_wrap
