// Each call of the system that the library makes in a whole reception fails in turn: once, and from then on,
// with each error that it is known for.
#include <cstring>

#include "tests/event/watchdog.h"
#include "tests/faults/reception_checks.h"
#include "tests/faults/system_sweep.h"

namespace {

constexpr long kMostCalls = 500;

struct SystemSweep : testing::TestWithParam<fault_row> {
    const watchdog guard{std::chrono::minutes(14)};

    void SetUp() override {
        whole_reception(surface::kWrapper).run();
        whole_reception(surface::kCore).run();
    }

    // The points tried until a reception passes without a strike. It, the receptions in between and one last
    // reception, with nothing armed, tell everything: no fault has left anything behind.
    long sweep(strike at) const {
        const fault_row& row = GetParam();
        for (at.n = 1; at.n < kMostCalls; ++at.n) {
            const std::string point = std::string(row.function) + " " + std::to_string(at.n) + ", " +
                                      strerrorname_np(at.error) + (at.once() ? " once" : " from then on") +
                                      ", " + name_of(at.interface) +
                                      (at.block == whole_reception::kFreshBlock ? ", fresh block" : "");
            about_to_try(point);
            SCOPED_TRACE(point);
            reception_fault fault;
            fault.begin = [&] { system_faults::arm(row.function, at.n, at.mode, at.error); };
            fault.end = [] { system_faults::disarm(); };
            fault.struck = [] { return system_faults::struck(); };
            reception_result reception;
            {
                whole_reception struck(at.interface, at.block);
                reception = struck.run(fault);
            }
            if (!reception.struck) {
                expect_faultless(reception, at.interface);
                expect_a_faultless_reception(at.interface);
                return at.n - 1;
            }
            at.name = system_faults::struck_on();
            expect_sound(reception);
            EXPECT_EQ(reception.thrown, 0);
            EXPECT_EQ(reception.banners, 0U);
            row.check(reception, at);
            if (at.n % kFollowEvery == 0) expect_a_faultless_reception(at.interface);
            if (HasFailure()) return at.n;
        }
        ADD_FAILURE() << "never without a strike";
        return at.n;
    }
};

TEST_P(SystemSweep, EveryPointOfAReceptionIsSurvived) {
    const fault_row& row = GetParam();
    for (const surface interface : {surface::kCore, surface::kWrapper}) {
        if (interface == surface::kCore && !row.core) continue;
        for (const auto mode : {system_faults::kOnce, system_faults::kFromThenOn}) {
            if (mode == system_faults::kFromThenOn && row.passing) continue;
            long points = 0;
            for (const auto block : {whole_reception::kStandingBlock, whole_reception::kFreshBlock}) {
                if (interface == surface::kCore && block == whole_reception::kFreshBlock) continue;
                for (const int error : row.errors)
                    points += sweep({interface, block, mode, 0, error, ""});
            }
            EXPECT_GT(points, 0);
            report_tried(row.function, interface, mode == system_faults::kOnce ? "once" : "from then on",
                         points);
        }
    }
}

std::string row_name(const testing::TestParamInfo<fault_row>& about) {
    return std::string("Of_") + about.param.function + (about.param.passing ? "_Interrupted" : "");
}

INSTANTIATE_TEST_SUITE_P(Calls, SystemSweep, testing::ValuesIn(system_call_rows()), &row_name);

}  // namespace
