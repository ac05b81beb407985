// Which ensembles the content identifiers named that were looked at: when no service is found, it tells why.
#pragma once

#include <cstdint>

namespace spi {

struct EnsemblesNamed {
    std::uint16_t first_other = 0;  // meaningful if `other`
    bool other = false;             // one that is not received
    bool received = false;

    void note(std::uint16_t named, std::uint16_t received_on) {
        if (named == received_on) {
            received = true;
        } else if (!other) {
            other = true;
            first_other = named;
        }
    }
};

}  // namespace spi
