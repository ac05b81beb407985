// The objects of a carousel, in their order, as packets. Memory: the objects and one stretch of packets.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/carousel/carousel_objects.h"
#include "tools/transmit/schedule/tune_in.h"

namespace dabspi::carousel {

struct sending_settings {
    transmit::carousel_settings carousel;
    transmit::packet_settings packets;
    bool plain_order = false;
};

struct made_carousel {
    transmit::sent_carousel carousel;
    transmit::sending_order order;
    transmit::stretch sent;
    transmit::waits waits;
    transmit::waits plain_waits;  // of the same objects one after another
};

// What each object is to a receiver on the day `today` (MJD). `shown` tells of each image whether receivers
// write it.
std::vector<transmit::tuned_object> tuned_objects(const std::vector<carousel_object>& objects, long today,
                                                  const std::vector<bool>& shown);

// Throws std::length_error with a text for the user when something cannot be sent at all.
made_carousel make_carousel(const std::vector<carousel_object>& objects,
                            const std::vector<transmit::tuned_object>& tuned, const sending_settings& how,
                            transmit::carousel_maker& maker);

// Which time is to be kept.
enum class wanted_wait : std::uint8_t { now_next, logos, everything };
const char* wanted_wait_text(wanted_wait of);

struct left_out_objects {
    bool enough = false;               // false: not even without all that may be left out
    std::vector<std::size_t> objects;  // in the order in which they have to go
    double before = 0;                 // seconds, with all objects
    double after = 0;                  // without these
};
// What has to go so that the worst case stays within so many seconds. Service information and today's
// schedules stay.
left_out_objects what_has_to_go(const std::vector<carousel_object>& objects,
                                const std::vector<transmit::tuned_object>& tuned, const sending_settings& how,
                                wanted_wait wanted, double seconds);

}  // namespace dabspi::carousel
