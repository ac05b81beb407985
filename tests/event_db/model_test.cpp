// The programme database against its model: the same random calls to both, and every sent event compared.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "src/event_db/spi_event_db.h"
#include "testkit/compared_calls.h"
#include "testkit/database_model.h"
#include "testkit/random_calls.h"
#include "tests/support/recording_router.h"

namespace event_db {
namespace {

constexpr unsigned kSequences = 2500;
constexpr int kCalls = 50;

// The calls so far, for a failure's message.
std::string story(unsigned seed, int calls) {
    std::string text = "sequence " + std::to_string(seed) + ":\n";
    random_calls random(seed);
    for (int i = 0; i <= calls; ++i)
        text += as_text(random.next()) + '\n';
    return text;
}

void run_sequence(unsigned seed, database_model& model, recording_router& router) {
    spi::SpiEventDb db;
    ASSERT_EQ(router.register_queue(&db), spi::event_backend::kRegistered);
    random_calls random(seed);
    for (int i = 0; i < kCalls; ++i) {
        const call c = random.next();
        spi::event e(spi::QID_EVTDB, payload_for(c));
        db.process_event(e);
        std::vector<std::string> sent;
        for (const spi::event& each : router.take())
            sent.push_back(event_text(each));
        ASSERT_EQ(sent, sent_by(model, c)) << story(seed, i);
    }
    router.unregister_queue(spi::QID_EVTDB, false);
}

void add(database_model::counts& sum, const database_model::counts& more) {
    sum.stored += more.stored;
    sum.refused += more.refused;
    sum.taken += more.taken;
    sum.wrapped_keys += more.wrapped_keys;
    sum.updates += more.updates;
    sum.updates_without_next += more.updates_without_next;
    sum.untitled_now += more.untitled_now;
    sum.unchanged_now += more.unchanged_now;
    sum.unchanged_next += more.unchanged_next;
    sum.nothing_on += more.nothing_on;
    sum.switched_to_tomorrow += more.switched_to_tomorrow;
    sum.no_tomorrow += more.no_tomorrow;
    sum.still_running += more.still_running;
    sum.end_minute_still_running += more.end_minute_still_running;
    sum.retired += more.retired;
    sum.searched_in_retired_day += more.searched_in_retired_day;
}

TEST(EventDbModel, DatabaseAndModelSendTheSameForRandomCalls) {
    database_model::counts sum;
    recording_router router;
    for (unsigned seed = 1; seed <= kSequences; ++seed) {
        database_model model;
        run_sequence(seed, model, router);
        if (HasFatalFailure()) return;
        add(sum, model.seen);
    }
    // The walk must have been everywhere, or it has shown nothing.
    EXPECT_GT(sum.stored, 10000);
    EXPECT_GT(sum.refused, 1000);
    EXPECT_GT(sum.taken, 500);
    EXPECT_GT(sum.wrapped_keys, 100);
    EXPECT_GT(sum.updates, 5000);
    EXPECT_GT(sum.updates_without_next, 1000);
    EXPECT_GT(sum.untitled_now, 200);
    EXPECT_GT(sum.unchanged_now, 1000);
    EXPECT_GT(sum.unchanged_next, 20);
    EXPECT_GT(sum.nothing_on, 1000);
    EXPECT_GT(sum.switched_to_tomorrow, 200);
    EXPECT_GT(sum.no_tomorrow, 200);
    EXPECT_GT(sum.still_running, 500);
    EXPECT_GT(sum.end_minute_still_running, 20);
    EXPECT_GT(sum.retired, 1000);
    EXPECT_GT(sum.searched_in_retired_day, 50);
}

}  // namespace
}  // namespace event_db
