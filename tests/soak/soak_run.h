// Plays days of a simulated ensemble to a receiver and compares every notification with the model's.
//
// One minute: the clock, now and then another service, and a fifth of the carousel. Nothing waits for the
// library but where its answer depends on which of its workers is quicker: results of an object that was just
// read travel from worker to worker, so the next clock tick, service or image waits for them; and every
// quarter of an hour, for the comparison.
#pragma once

#include <filesystem>
#include <functional>

#include "testkit/ensemble/dice.h"
#include "testkit/ensemble/ensemble.h"
#include "tests/soak/library_model.h"
#include "tests/soak/receiver.h"

namespace soak {

// What the host and its listener do beside listening.
struct habits {
    bool travels = true;       // other ensembles, and none at all
    bool switches_off = true;  // for a day: the date then jumps by two, and an old day stays in the database
};

class soak_run {
 public:
    struct figures {
        std::uint64_t days = 0, minutes = 0, objects = 0, bytes = 0, calls = 0, waits = 0, notifications = 0,
                      files_compared = 0;
    };

    soak_run(receiver& tested, std::filesystem::path logo_root, long first_day, habits h = {});

    // False once a comparison has failed; the failure has been reported.
    bool play_day();

    const figures& done() const { return figures_; }
    const library_model& model() const { return model_; }
    std::size_t carousel_size() const { return objects_.size(); }
    // Payload of the carousel for one round, in bytes.
    std::uint64_t carousel_bytes() const;
    long next_day() const { return day_; }

 private:
    bool is_off(int minute) const;  // the receiver is switched off
    void play_minute(int minute);
    void set_date_time(int minute);
    void choose_service(int minute);
    void change_ensemble(int minute);
    void set_service(const spi::ServElemId& service, std::uint16_t ensemble);
    void feed_carousel(int minute);
    void settle();
    void compare(const char* what, std::vector<std::string> received, std::vector<std::string> expected);
    void compare_files();

    receiver& tested_;
    const std::filesystem::path logo_root_;
    library_model model_;
    dice host_{4711};
    ensemble home_ = home_ensemble();
    ensemble foreign_ = foreign_ensemble();
    const ensemble* on_air_ = &home_;
    bool known_ = true;  // the host names the ensemble
    std::vector<carousel_object> objects_;
    long day_;
    const long first_day_;
    const habits habits_;
    int minute_ = 0;
    bool services_in_flight_ = false;
    bool programmes_in_flight_ = false;
    bool failed_ = false;
    figures figures_;
};

}  // namespace soak
