// One host for both interfaces: the core, and the wrapper around it. What it hands over is made beforehand,
// so that between two of its calls nothing but the library takes memory.
#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include "spi_wrap/to_spi_server.h"
#include "src/server/spi_server.h"
#include "tests/faults/listener_notes.h"
#include "tests/faults/on_air.h"

enum class surface { kCore, kWrapper };

inline const char* name_of(surface interface) {
    return interface == surface::kCore ? "core" : "wrapper";
}

class host {
 public:
    virtual ~host() = default;
    // Makes the server. Throws what its constructor throws; then there is none.
    virtual void construct() = 0;
    virtual void set_time(unsigned day, unsigned hour, unsigned minute) = 0;
    virtual void tune(std::uint32_t sid, std::uint16_t ensemble) = 0;
    virtual void feed(std::uint8_t type, std::uint16_t subtype, const char* name,
                      const spi_builder::bytes& bytes) = 0;
    virtual void resend() = 0;  // the wrapper has none
    virtual void destroy() = 0;
};

class core_host final : public host {
 public:
    core_host(listener_notes& notes, const std::string& logo_root)
        : listener_(std::make_shared<core_listener>(notes)), logo_root_(logo_root) {}

    void construct() override {
        server_ = std::make_unique<spi::SpiServer>(listener_, temp_root_, logo_root_);
    }
    void set_time(unsigned day, unsigned hour, unsigned minute) override {
        spi::MotDateTime now{2026, 3, static_cast<std::uint8_t>(day), static_cast<std::uint8_t>(hour),
                             static_cast<std::uint8_t>(minute)};
        server_->SetDateTime(now);
    }
    void tune(std::uint32_t sid, std::uint16_t ensemble) override {
        spi::ServElemId service{sid, on_air::kEcc, 0};
        server_->SetCurrentService(service, ensemble);
    }
    void feed(std::uint8_t type, std::uint16_t subtype, const char* name,
              const spi_builder::bytes& bytes) override {
        std::unique_ptr<unsigned char[]> data(new unsigned char[bytes.size()]);
        std::copy(bytes.begin(), bytes.end(), data.get());
        spi::MotBody body(static_cast<std::uint32_t>(bytes.size()), std::move(data));
        server_->FeedMotBody({7, type, subtype, name}, std::move(body),
                             {on_air::kDataService, on_air::kEcc, 0});
    }
    void resend() override { server_->ResendNowNext(); }
    void destroy() override { server_.reset(); }
    long listener_owners() const { return listener_.use_count(); }

 private:
    std::shared_ptr<core_listener> listener_;
    const std::string temp_root_ = "/temp/dab";
    const std::string logo_root_;
    std::unique_ptr<spi::SpiServer> server_;
};

class wrapper_host final : public host {
 public:
    explicit wrapper_host(listener_notes& notes) : listener_(notes) {}

    void construct() override { server_ = std::make_unique<spi_wrap::toSpiServer>(&listener_); }
    void set_time(unsigned day, unsigned hour, unsigned minute) override {
        spi_wrap::MotDateTime now{2026, 3, static_cast<std::uint8_t>(day), static_cast<std::uint8_t>(hour),
                                  static_cast<std::uint8_t>(minute)};
        server_->SetDateTime(now);
    }
    void tune(std::uint32_t sid, std::uint16_t ensemble) override {
        spi_wrap::ServElemId service{sid, on_air::kEcc, 0};
        server_->SetCurrentService(service, ensemble);
    }
    void feed(std::uint8_t type, std::uint16_t subtype, const char* name,
              const spi_builder::bytes& bytes) override {
        spi_wrap::MotBodyMetadata metadata{0, type, subtype, name};
        spi_wrap::MotBody body{static_cast<std::uint32_t>(bytes.size()), bytes.data()};
        spi_wrap::ServElemId service{on_air::kDataService, 0, 0};
        server_->FeedMotBody(metadata, body, service);
    }
    void resend() override {}
    void destroy() override { server_.reset(); }

 private:
    host_listener listener_;
    std::unique_ptr<spi_wrap::toSpiServer> server_;
};

inline std::unique_ptr<host> make_host(surface interface, listener_notes& notes,
                                       const std::string& logo_root) {
    if (interface == surface::kCore) return std::make_unique<core_host>(notes, logo_root);
    return std::make_unique<wrapper_host>(notes);
}
