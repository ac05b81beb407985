// What the library has to tell its listener, by the calls that it gets: parser, programme database and logo
// store as tables of the test's own. The database is the model of the database's tests.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "testkit/database_model.h"
#include "testkit/ensemble/carousel_object.h"

namespace soak {

// One notification as text, as the listener's records say it.
std::string reported_programme(const spi::ServElemId& service, const spi::MotDateTime& start,
                               unsigned minutes, const std::string& name);
std::string reported_now_next(const spi::MotDateTime& now, unsigned now_minutes, const std::string& now_name,
                              const spi::MotDateTime& next, unsigned next_minutes,
                              const std::string& next_name);
std::string reported_logo(const spi::ServElemId& station, unsigned format, int size, const std::string& file);

class library_model {
 public:
    void set_date_time(const spi::MotDateTime& t);
    void set_service(const spi::ServElemId& service, std::uint16_t ensemble);
    void resend();
    // True when it is an SPI object that is read: its results then travel between the library's threads.
    bool feed(const carousel_object& object, const object_version& version);

    // To be told since this was last asked: by the database, and by the logo store.
    std::vector<std::string> take_database() { return std::exchange(database_reported_, {}); }
    std::vector<std::string> take_logos() { return std::exchange(logos_reported_, {}); }

    // What the logo root holds by now.
    const std::map<std::string, spi_builder::bytes>& files() const { return files_; }
    void forget_retired_days() { database_.forget_retired_days(); }

    struct counts {
        std::uint64_t read = 0, repeated = 0, changed = 0, same_size = 0, images_written = 0,
                      images_skipped = 0, images_refused = 0, images_unknown = 0, ensembles = 0;
    };
    counts seen;
    const event_db::database_model::counts& seen_by_database() const { return database_.seen; }

 private:
    using id_key = std::tuple<unsigned, unsigned, unsigned>;
    static id_key key_of(const spi::ServElemId& id) { return {id.ecc, id.sid, id.scids}; }
    struct read_object {
        std::size_t size;
        int version;  // to see a change that keeps the size
    };

    void clear();
    bool is_repeat(const carousel_object& object, const object_version& version);
    void take_image(const carousel_object& object, const spi_builder::bytes& bytes);
    void report(const std::vector<event_db::notice>& notices);

    int host_ensemble_ = 0;
    int day_of_month_ = 0;
    int parser_ensemble_ = 0;
    std::map<std::pair<id_key, std::string>, read_object> read_;
    event_db::database_model database_;
    // By the service that the description came with, and the content name.
    std::map<std::pair<id_key, std::string>, std::vector<said_logo>> announced_;
    std::map<std::string, spi_builder::bytes> files_;

    std::vector<std::string> database_reported_;
    std::vector<std::string> logos_reported_;
};

}  // namespace soak
