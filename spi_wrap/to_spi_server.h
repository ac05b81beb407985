// dabspi for its host: start here.
//
// dabspi decodes DAB Service and Programme Information (ETSI TS 102 371, carried as MOT objects, EN 301 234).
// The host constructs one `toSpiServer` with its listener and feeds it, from one thread:
//   - every MOT object that the data decoder completes in an SPI data service, binary SPI objects and images;
//   - the service that is being listened to, with its ensemble;
//   - the broadcast's local date and time.
// The listener hears what is on now and next whenever that changes, and of each station logo written as a PNG
// file.
//
//     my_listener listener;
//     spi_wrap::toSpiServer server(&listener);
//     server.SetDateTime(now);
//     server.SetCurrentService(service, ensemble);
//     server.FeedMotBody(metadata, body, data_service);
//
// This header includes nothing of the library but the export macro.
#pragma once

#include <cstdint>
#include <string>

#include "platform/dabspi_export.h"

namespace spi_wrap {

class spi_server;

// A DAB service component.
struct ServElemId {
    std::uint32_t sid = 0;   // service identifier, 16 or 32 bits
    std::uint8_t ecc = 0;    // extended country code
    std::uint8_t scids = 0;  // service component identifier within the service
};

// A local date and time.
struct MotDateTime {
    std::uint16_t year = 0;   // full year, 2016
    std::uint8_t month = 0;   // 1..12
    std::uint8_t day = 0;     // 1..31
    std::uint8_t hour = 0;    // 0..23
    std::uint8_t minute = 0;  // 0..59
};

// The body of a MOT object. The host's own: the library copies it and leaves it as it is.
struct MotBody {
    std::uint32_t size = 0;               // bytes
    const unsigned char* data = nullptr;  // may be null when size is 0
};

// Header parameters of a MOT object.
struct MotBodyMetadata {
    std::uint16_t reserved = 0;     // the host's own; not read
    std::uint8_t content_type = 0;  // 2 image, 7 binary SPI object; others are dropped
    // SPI objects: 0 service information, 1 programme information. Images: 1 JFIF, 3 PNG.
    std::uint16_t content_subtype = 0;
    std::string content_name;  // any bytes; a logo is announced and found by it
};

// A programme.
struct SpiProgramInfo {
    MotDateTime start;           // local time; an unset programme reads 1859-255-19 00:00
    std::uint16_t duration = 0;  // whole minutes, rounded down
    std::string name;            // the broadcast's bytes, normally UTF-8
};

// The format of a logo as it was announced.
enum ImageFormat : std::int32_t {
    IMAGE_UNKNOWN = 0,  // never told: such logos are not written
    IMAGE_JPEG = 1,     // never told, likewise
    IMAGE_PNG = 2,
};

// A station logo that has been written.
struct SpiLogoInfo {
    std::uint32_t service_id = 0;  // the station's service identifier, 16 bits: others have no file
    std::uint8_t ecc = 0;          // its extended country code
    std::uint8_t scids = 0;        // its component identifier within the service
    ImageFormat image_format = IMAGE_UNKNOWN;  // as announced: PNG, whatever the bytes are
    std::int32_t size_code = 0;  // as announced. 3: 128 x 128, 4: 320 x 240; no others are written
    std::string file_name;       // inside the logo root, without directory; the host knows the root
};

// Implemented by the host.
//
// Every call comes from one thread of the library, one at a time, in the order in which things happened, and
// never from the host's own calling thread. While a call runs all further notifications wait, so return
// promptly. The records are the library's: copy what you keep. Do not destroy the server from inside a call:
// its destructor waits for this very thread. An exception that leaves a call is reported on the debug channel
// and ends notification for good.
class DABSPI_EXPORT ISpiListener {
 public:
    virtual ~ISpiListener() = default;

    // Never called: whole schedules are deliberately not passed on.
    virtual void ProgramInfoReceived(const ServElemId& service, SpiProgramInfo& info) = 0;

    // The programme on air on the current service, or the one after it, has changed. A change of programme is
    // told at the first SetDateTime after the minute in which the old one ends. `next` is empty (no name)
    // when no programme starts in the very minute in which `now` ends; its duration is then of no meaning.
    virtual void ProgramNowNextUpdated(SpiProgramInfo& now, SpiProgramInfo& next) = 0;

    // A logo has been written, perhaps over an older one.
    virtual void StationLogoReceived(SpiLogoInfo& logo) = 0;
};

// The library. All operations must come from one thread, or be kept apart by the host; each only queues an
// event, returns at once, and always returns 0. Out of memory they throw std::bad_alloc, and the server stays
// usable.
class DABSPI_EXPORT toSpiServer {
 public:
    // `listener` stays the host's, must outlive the server, and may be null: then nothing is notified. Reads
    // the system's storage path from the shared-memory block "/SysDataInfo" (creating it, empty, when it is
    // missing); logos go to that path followed by "/HdStationLogo/", or to "/temp/dab" where that directory
    // cannot be made. Creates both directories. Starts six threads named "dabspi". Throws std::logic_error
    // when the block cannot be mapped, and what the standard library throws; no thread, memory or descriptor
    // is left then. What was made in the system stays: the block, the directories.
    explicit toSpiServer(ISpiListener* listener);
    // Ends the library's threads, each after what its own queue holds by then; what that leads to may be
    // lost. No call of the listener comes afterwards.
    virtual ~toSpiServer();
    toSpiServer(const toSpiServer&) = delete;
    toSpiServer& operator=(const toSpiServer&) = delete;

    // The service that is being listened to, and the ensemble that carries it (0: none). A change from one
    // ensemble to another, or to none, forgets everything that was received; what the library has not read
    // by then is filed after it.
    virtual int SetCurrentService(ServElemId& service, unsigned short ensemble);

    // The current local date and time, at least once a minute: the library has no clock of its own.
    virtual int SetDateTime(MotDateTime& now);

    // One received MOT object. `service` is the data service that it was received with: only its `sid` is
    // used, and the ECC is taken from the top eight bits of that (deliberately not from `ecc`), as 32-bit
    // identifiers carry it.
    virtual int FeedMotBody(MotBodyMetadata& metadata, MotBody& body, ServElemId& service);

 private:
    spi_server* server_;  // owned
};

}  // namespace spi_wrap
