// The objects of a carousel, read from documents, images, ready objects, folders of these, or a plan.
//
// Nothing is thrown for bad input: what is wrong stands in `errors`, and with errors nothing can be sent.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "src/parse/spi_logo_info.h"
#include "tools/carousel/broadcast_day.h"
#include "tools/encode/document_encoder.h"
#include "tools/inspect/image_header.h"
#include "tools/record/plan.h"
#include "tools/transmit/mot/sent_object.h"

namespace dabspi::carousel {

struct carousel_object {
    std::string source;  // file, for messages
    transmit::sent_object sent;
    std::optional<long> day;    // MJD; of a schedule, where it says one
    std::string service;        // of a schedule: its scope
    std::optional<int> offset;  // of a schedule: half-hours, where it says one
    std::optional<image_header> image;
};

struct reading_options {
    std::optional<spi_object::ensemble_id> ensemble;
    bool tokens = false;
    bool lenient = false;
    std::optional<local_offset> local;              // of documents whose times say none
    std::optional<spi_object::content_id> service;  // of documents that name none
    std::string carousel;                           // of a plan: which; empty: its only one
    std::optional<broadcast_minute> now;            // of a plan: for {date}
};

struct carousel_objects {
    std::vector<carousel_object> all;
    std::vector<std::string> errors;    // printable
    std::vector<std::string> messages;  // printable
    std::vector<std::string> files;     // all that were looked at, folders too
    // Of a plan:
    std::optional<std::uint32_t> data_service;
    std::optional<broadcast_minute> clock;
};

carousel_objects read_objects(const std::vector<std::string>& inputs, const reading_options& how);

// What the service information among the objects says, as a receiver on `ensemble` takes it.
struct described_service {
    spi::ServElemId id;
    std::string name;
};
struct described_services {
    std::vector<described_service> services;
    std::vector<spi::SpiLogoInfo> logos;  // announced
};
described_services described_by(const std::vector<carousel_object>& objects, std::uint16_t ensemble);

// An image that is announced under an address or a path gets that for its content name, if its file is the
// only one that the address can mean.
void use_announced_names(std::vector<carousel_object>& objects, const described_services& described);

}  // namespace dabspi::carousel
