// How long a receiver that tunes in waits for what it shows: played through from many moments of a stretch.
// Pure; work is bounded, whatever the carousel.
//
// The receiver is one that keeps nothing of objects before it has the directory, and needs the service
// information before it takes a logo. Times are seconds, from the moment it tunes in.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/transmit/schedule/order.h"
#include "tools/transmit/schedule/stretch.h"

namespace dabspi::transmit {

struct tuned_object {
    importance what = importance::other;
    std::string service;  // of a schedule: whose; else empty
};

struct wait {
    bool any = false;  // false: there is nothing to wait for
    double median = 0;
    double worst = 0;
};

struct waits {
    wait now_next;  // today's schedule of one's own service, over all services
    wait logos;     // all that receivers show
    wait everything;
};

waits tune_in(const sent_carousel& carousel, const sending_order& order, const stretch& sent,
              const std::vector<tuned_object>& objects);

}  // namespace dabspi::transmit
