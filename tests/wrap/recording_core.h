// Stands in for the core: the wrapper's executable is linked with these definitions of spi::SpiServer, which
// note what they are given. It has the server's own worker, and no other.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "src/server/spi_server.h"

namespace recording_core {

struct made_t {
    std::string temp_root;
    std::string logo_root;
    bool block_open_meanwhile = false;
    int listener_owners = 0;  // while the core is being made
};
struct body_t {
    spi::MotBodyMetadata metadata;
    std::uint32_t size = 0;
    bool has_data = false;
    std::string bytes;
    const void* address = nullptr;
    spi::ServElemId service;
};
struct service_t {
    spi::ServElemId service;
    unsigned short ensemble = 0;
};

struct record_t {
    std::vector<made_t> made;
    std::vector<body_t> bodies;
    std::vector<service_t> services;
    std::vector<spi::MotDateTime> times;
    int destroyed = 0;
    bool listener_alive_at_destruction = false;
    bool fail_construction = false;
};
record_t& record();
void forget();
// The listener that the last core was made with; empty when nobody holds it any more.
std::weak_ptr<spi::ISpiListener> last_listener();

}  // namespace recording_core
