// The real server with something to do for each of its workers: the faults of the tests strike somewhere.
#pragma once

#include <memory>
#include <string>

#include "src/server/spi_server.h"
#include "testkit/bodies.h"
#include "testkit/spi_builder_objects.h"

class forgetful_listener final : public spi::ISpiListener {
 public:
    void ProgramInfoReceived(const spi::ServElemId&, spi::SpiProgramInfo&) override {}
    void ProgramNowNextUpdated(spi::SpiProgramInfo&, spi::SpiProgramInfo&) override {}
    // Allocates on the notifier's thread.
    void StationLogoReceived(spi::SpiLogoInfo&) override { last_ = std::make_unique<int>(1); }

 private:
    std::unique_ptr<int> last_;
};

inline std::unique_ptr<spi::SpiServer> make_server(const std::string& logo_root) {
    return std::make_unique<spi::SpiServer>(std::make_shared<forgetful_listener>(), "/temp/dab", logo_root);
}

// A service, its logo and two programmes of 2 March 2026, and the objects that carry them.
struct broadcast {
    static constexpr std::uint16_t kEnsemble = 0xCE15;
    spi::ServElemId service{0xC221, 0xE1, 0};
    spi::MotDateTime now{2026, 3, 2, 10, 30};

    spi_builder::bytes si = spi_builder::si_object(
        0xE1, kEnsemble,
        {{{"R4", "Radio 4", ""}, {{0xE1, kEnsemble, 0xC221, 0}}, {{"image/png", "r4.png", {}, 320, 240}}}});
    spi_builder::bytes pi =
        spi_builder::pi_object({{spi_builder::service_id{0xE1, kEnsemble, 0xC221, 0},
                                 spi_builder::utc_time{spi_builder::mjd(2026, 3, 2), 0, 0},
                                 spi_builder::utc_time{spi_builder::mjd(2026, 3, 3), 0, 0},
                                 {{{"", "Morning", ""}, {spi_builder::mjd(2026, 3, 2), 10, 0}, 3600},
                                  {{"", "Noon", ""}, {spi_builder::mjd(2026, 3, 2), 11, 0}, 3600}}}});
    spi_builder::bytes png = {0x89, 'P', 'N', 'G'};

    void feed_object(spi::SpiServer& server, std::uint16_t subtype, const spi_builder::bytes& bytes,
                     const std::string& name) const {
        server.FeedMotBody({7, 7, subtype, name}, body_of(bytes), service);
    }
    void feed_si(spi::SpiServer& server) const { feed_object(server, 0, si, "si"); }
    void feed_pi(spi::SpiServer& server) const { feed_object(server, 1, pi, "pi"); }
    void feed_logo(spi::SpiServer& server) const {
        server.FeedMotBody({7, 2, 3, "r4.png"}, body_of(png), service);
    }
    void tune(spi::SpiServer& server) {
        server.SetDateTime(now);
        server.SetCurrentService(service, kEnsemble);
    }
    void feed_all(spi::SpiServer& server) {
        tune(server);
        feed_si(server);
        feed_pi(server);
        feed_logo(server);
        server.ResendNowNext();
    }
};
