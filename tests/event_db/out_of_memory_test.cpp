// Filing where there is no memory, at each allocation in turn.
#include <new>

#include "tests/event_db/event_db_fixture.h"
#include "tests/wrap/failing_new.h"

namespace {

using namespace event_db;

std::vector<std::string> lines_of(recording_router& router) {
    std::vector<std::string> lines;
    for (const spi::event& e : router.take())
        lines.push_back(line_of(e));
    return lines;
}

TEST(FilingWithoutMemory, LeavesNoDayBehindThatHasNoSchedule) {
    const spi::PiScheduleProgramme late = programme("20260302", "1100", 60, "Late");
    long n = 0;
    for (bool refused = true; refused;) {
        ASSERT_LT(++n, 100) << "filing never succeeds";
        recording_router router;
        spi::SpiEventDb db;
        router.register_queue(&db);
        db.cfu_date_time(date_time("20260302", "1101"));
        failing_new::fail_at(n, failing_new::kOnce);
        try {
            db.handle_programme(station, late);
        } catch (const std::bad_alloc&) {
        }
        failing_new::stop();
        refused = failing_new::has_failed();
        // These look into every day that stands there.
        db.cfu_service(station);
        db.dump_db();
        // And it can be filed now, unless it was.
        EXPECT_EQ(db.handle_programme(station, late), 0) << "allocation " << n;
        router.take();
        db.cfu_service(other_station);
        db.cfu_service(station);
        EXPECT_EQ(lines_of(router), std::vector<std::string>{"now Late, next -"}) << "allocation " << n;
    }
    EXPECT_GT(n, 3);  // the service, its day, the day's schedule, the programme
}

}  // namespace
