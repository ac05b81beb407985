// Gives objects their transport identifiers (EN 301 234): an object that is unchanged keeps its own, one that
// has changed gets another. Used on one thread; memory is that of two versions of the carousel.
//
// The identifier comes from the object's name and content, so that a sender that is started again gives
// unchanged objects the same ones but where two collide. One that was on air in the version before is not
// given to another object: receivers may still hold what it meant.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace dabspi::transmit {

class transport_ids {
 public:
    struct entity {
        std::string key;                // what it is: "object/" and its name
        std::uint32_t fingerprint = 0;  // of all that must not change while the identifier stays
    };

    // Of all entities of the next version. Throws std::length_error when there are more than identifiers.
    std::vector<std::uint16_t> assign(const std::vector<entity>& next);

 private:
    struct given {
        std::uint32_t fingerprint;
        std::uint16_t id;
    };
    std::map<std::string, given> current_;
};

}  // namespace dabspi::transmit
