// What the fuzz targets share: a router that counts instead of delivering, bodies of exactly the input's
// size, a logo root, and a check that ends the run.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "src/event/event_backend.h"
#include "src/parse/mot_body.h"
#include "src/parse/worker/spi_parser.h"

// Fails the run, with the input kept by libFuzzer, when `condition` does not hold.
inline void expect(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "broken promise: %s\n", what);
    std::abort();
}

// The logo root: a directory of this process's own, removed when it ends.
inline const std::string& root() {
    static const std::string path = [] {
        std::string name = (std::filesystem::temp_directory_path() / "dabspi-fuzz-XXXXXX").string();
        expect(mkdtemp(name.data()) != nullptr, "a temporary directory");
        static const std::string kept = name;
        std::atexit([] { std::filesystem::remove_all(kept); });
        return name;
    }();
    return path;
}

inline spi::MotBody body_of(const std::uint8_t* data, std::size_t size) {
    std::unique_ptr<unsigned char[]> bytes(new unsigned char[size]);
    std::copy(data, data + size, bytes.get());
    return spi::MotBody(static_cast<std::uint32_t>(size), std::move(bytes));
}

// Keeps the events of one input. Its own thread never gets any.
class keeping_router final : public spi::event_backend {
 public:
    keeping_router() : event_backend(nullptr) { begin(*this); }
    ~keeping_router() override { destroy_proc(); }
    int post_event(spi::event e) override {
        events.push_back(std::move(e));
        return 0;
    }
    std::vector<spi::event> events;
};

// The parser worker, which sends through it, made once for the whole run.
struct sender {
    keeping_router router;
    spi::SpiParser worker;
    sender() { router.register_queue(&worker); }
};
