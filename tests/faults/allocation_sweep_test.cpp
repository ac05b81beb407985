// Memory that is missing at every point of a whole life in turn: once, and from then on.
#include "tests/event/watchdog.h"
#include "tests/faults/life_checks.h"
#include "tests/wrap/failing_new.h"

namespace {

constexpr long kMostAllocations = 5000;

struct AllocationSweep : testing::TestWithParam<std::tuple<surface, failing_new::mode_t>> {
    const watchdog guard{std::chrono::minutes(14)};
    const surface interface = std::get<0>(GetParam());
    const failing_new::mode_t mode = std::get<1>(GetParam());

    void SetUp() override { whole_life(interface).run(); }  // what the process keeps for good is made

    life_result live_with(long n) const {
        life_fault fault;
        fault.begin = [this, n] { failing_new::fail_at(n, mode); };
        fault.end = [] { failing_new::stop(); };
        fault.struck = [] { return failing_new::has_failed(); };
        fault.host_tries_again = mode == failing_new::kOnce;
        whole_life life(interface);
        return life.run(fault);
    }

    static long reports_in(const life_result& life) {
        long reports = 0;
        for (const std::string& message : lines_and_texts(life)) {
            EXPECT_EQ(message, kNoMemoryReport);
            ++reports;
        }
        EXPECT_EQ(life.banners, static_cast<std::size_t>(reports));
        return reports;
    }

    // Whatever else is told comes from a worker that lives, about one that does not: an empty now or next.
    void expect_nothing_made_up(const life_result& life) const {
        const std::vector<std::string> reference = reference_notes(interface);
        EXPECT_LE(life.notes.size(), reference.size());
        for (const std::string& note : life.notes)
            EXPECT_THAT(reference, testing::Contains(note));
    }

    // Whoever meets the missing memory first is not silent about it: a call of the host throws, a worker's
    // end is reported. Nothing is laid down for two cases: the destructor's requests, which have nobody to be
    // thrown at (it ends all the same), and a new thread's entry in the platform's table, which does without.
    // Memory that stays missing is told to the host by every later call.
    void expect_not_silent(const life_result& life) const {
        if (life.construction != life_result::kConstructed) {
            EXPECT_EQ(life.construction, life_result::kOutOfMemory);
        } else if (failing_new::failed_on_this_thread()) {
            if (life.struck_in != life_phase::kDestruction) {
                EXPECT_GE(life.told, 1);
            }
        } else if (life.struck_in > life_phase::kFirstEvent) {
            EXPECT_GE(life.banners, 1U);
        }
        if (mode == failing_new::kFromThenOn) {
            EXPECT_EQ(life.calls_as_ever, 0);
        }
    }

    // One allocation failed: somebody was told, the host by an exception or the log by a thread's end.
    // Silence is for what does without: a new thread's entry in the platform's table, and the requests of the
    // destructor.
    void expect_told_once(const life_result& life) const {
        const long reports = reports_in(life);
        const bool thrown = life.construction == life_result::kOutOfMemory;
        const long told = life.told + (thrown ? 1 : 0) + reports;
        const bool may_be_silent =
            life.struck_in == life_phase::kDestruction ||
            (life.struck_in <= life_phase::kFirstEvent && life.construction == life_result::kConstructed);
        EXPECT_LE(told, 1);
        if (!may_be_silent) {
            EXPECT_EQ(told, 1);
        }
        if (thrown) {
            EXPECT_TRUE(life.notes.empty());
        } else if (reports == 0) {
            EXPECT_EQ(life.notes, reference_notes(interface));  // the host asked again, or nobody noticed
            EXPECT_EQ(logo_files(life).size(), 2U);
        } else {
            expect_nothing_made_up(life);
        }
    }
};

TEST_P(AllocationSweep, EveryPointOfALifeIsSurvived) {
    long n = 1;
    long constructions_failed = 0;
    for (; n < kMostAllocations; ++n) {
        about_to_try("allocation " + std::to_string(n));
        SCOPED_TRACE("allocation " + std::to_string(n));
        const life_result life = live_with(n);
        if (!life.struck) {
            expect_faultless(life, interface);
            expect_a_faultless_life(interface);
            break;
        }
        expect_sound(life);
        EXPECT_TRUE(life.construction == life_result::kConstructed ||
                    life.construction == life_result::kOutOfMemory);
        if (life.construction == life_result::kOutOfMemory) ++constructions_failed;
        expect_not_silent(life);
        if (mode == failing_new::kOnce) {
            expect_told_once(life);
        } else {
            reports_in(life);
            expect_nothing_made_up(life);
        }
        if (n % kFollowEvery == 0) expect_a_faultless_life(interface);
        if (HasFailure()) break;
    }
    EXPECT_LT(n, kMostAllocations);
    EXPECT_GT(constructions_failed, 30);
    EXPECT_GT(n, 180);  // or the life was not a whole one
    report_tried("allocation", interface, mode == failing_new::kOnce ? "once" : "from then on", n - 1);
}

INSTANTIATE_TEST_SUITE_P(Of, AllocationSweep,
                         testing::Combine(testing::Values(surface::kCore, surface::kWrapper),
                                          testing::Values(failing_new::kOnce, failing_new::kFromThenOn)),
                         [](const auto& about) {
                             return std::string(std::get<0>(about.param) == surface::kCore ? "TheCore"
                                                                                           : "TheWrapper") +
                                    (std::get<1>(about.param) == failing_new::kOnce ? "Once" : "FromThenOn");
                         });

}  // namespace
