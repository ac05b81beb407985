// From the options of `dabspi carousel` to a carousel that can be sent: reads everything, writes nothing.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/carousel/carousel_options.h"
#include "tools/carousel/image_verdicts.h"
#include "tools/carousel/made_carousel.h"

namespace dabspi::carousel {

struct prepared_carousel {
    std::vector<std::string> errors;    // printable; with any, nothing else counts
    std::vector<std::string> messages;  // printable
    std::vector<std::string> files;     // that were looked at
    std::vector<carousel_object> objects;
    described_services described;
    std::vector<image_verdict> images;
    std::vector<transmit::tuned_object> tuned;
    made_carousel made;
    sending_settings settings;
    std::optional<spi_object::ensemble_id> ensemble;
    transmit::announced_ensemble announced;  // of multiplexes, where the ensemble is known
    broadcast_minute begin;                  // local time
    std::int64_t begin_utc = 0;              // the same, milliseconds since 1858-11-17
};

// `maker` is that of the version before, so that unchanged objects keep their identifiers.
prepared_carousel prepare(const carousel_options& options, std::unique_ptr<transmit::carousel_maker>& maker);

// "e1.c185.c221.0" as "dab:ce1.c185.c221.0"; other texts as they are.
std::string service_uri(const std::string& id);

// The same without packets: what is known of the objects before they are put into an order.
prepared_carousel look_at_objects(const carousel_options& options);

}  // namespace dabspi::carousel
