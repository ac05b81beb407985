// A server with a listener that tells when it has received what was expected, and the same for the bare
// pipeline.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <stdexcept>

#include "bench/material.h"
#include "src/server/spi_server.h"
#include "testkit/bodies.h"
#include "testkit/temporary_directory.h"

namespace bench {

// Counts calls, of one thread or of several; another one waits for the last of them. The time of the last one
// is kept.
class countdown {
 public:
    void expect(std::size_t calls) { left_ = calls; }
    void call() {
        if (left_ == 0 || --left_ != 0) return;  // beyond what is expected one thread calls, if any
        const auto now = std::chrono::steady_clock::now();
        const std::lock_guard<std::mutex> lock(mutex_);
        done_at_ = now;
        done_ = true;
        changed_.notify_one();
    }
    std::chrono::steady_clock::time_point wait() {
        std::unique_lock<std::mutex> lock(mutex_);
        if (!changed_.wait_for(lock, std::chrono::minutes(1), [this] { return done_; }))
            throw std::runtime_error("a notification did not come");
        done_ = false;
        return done_at_;
    }

 private:
    std::atomic<std::size_t> left_{0};  // set while nobody calls
    std::mutex mutex_;
    std::condition_variable changed_;
    bool done_ = false;  // guarded by mutex_
    std::chrono::steady_clock::time_point done_at_;
};

struct counting_listener final : spi::ISpiListener {
    countdown programmes;
    countdown updates;
    void ProgramInfoReceived(const spi::ServElemId&, spi::SpiProgramInfo&) override { programmes.call(); }
    void ProgramNowNextUpdated(spi::SpiProgramInfo&, spi::SpiProgramInfo&) override { updates.call(); }
    void StationLogoReceived(spi::SpiLogoInfo&) override {}
};

struct live_core {
    temporary_directory logos;
    std::shared_ptr<counting_listener> listener = std::make_shared<counting_listener>();
    spi::SpiServer server{listener, "/temp/dab", logos.path().string()};
    spi::ServElemId data_service{0x4000, kEcc, 0};

    void set_clock(unsigned minute) {
        spi::MotDateTime now = clock_at(minute);
        server.SetDateTime(now);
    }
    void tune(unsigned number, std::uint16_t ensemble = kEnsemble) {
        spi::ServElemId service = station(number);
        server.SetCurrentService(service, ensemble);
    }
    // Everything that was received is forgotten.
    void forget(unsigned number) {
        tune(number, kEnsemble + 1);
        tune(number);
        settle();
    }
    void feed(spi::MotBody&& body, const std::string& name) {
        server.FeedMotBody({7, 7, 1, name}, std::move(body), data_service);
    }
    static void settle() {
        if (!spi::wait_until_quiet(std::chrono::minutes(1)))
            throw std::runtime_error("the library never rests");
    }
};

}  // namespace bench
