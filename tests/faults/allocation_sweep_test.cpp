// Memory that is missing at every point of a whole reception in turn: once, and from then on.
#include "tests/event/watchdog.h"
#include "tests/faults/reception_checks.h"
#include "tests/wrap/failing_new.h"

namespace {

constexpr long kMostAllocations = 5000;

struct AllocationSweep : testing::TestWithParam<std::tuple<surface, failing_new::mode_t>> {
    const watchdog guard{std::chrono::minutes(14)};
    const surface interface = std::get<0>(GetParam());
    const failing_new::mode_t mode = std::get<1>(GetParam());

    void SetUp() override { whole_reception(interface).run(); }  // what the process keeps for good is made

    reception_result play_with(long n) const {
        reception_fault fault;
        fault.begin = [this, n] { failing_new::fail_at(n, mode); };
        fault.end = [] { failing_new::stop(); };
        fault.struck = [] { return failing_new::has_failed(); };
        fault.host_tries_again = mode == failing_new::kOnce;
        whole_reception reception(interface);
        return reception.run(fault);
    }

    static long reports_in(const reception_result& reception) {
        long reports = 0;
        for (const std::string& message : lines_and_texts(reception)) {
            EXPECT_EQ(message, kNoMemoryReport);
            ++reports;
        }
        EXPECT_EQ(reception.banners, static_cast<std::size_t>(reports));
        return reports;
    }

    // Whatever else is reported comes from a worker that lives, about one that does not: an empty now or
    // next.
    void expect_nothing_made_up(const reception_result& reception) const {
        const std::vector<std::string> reference = reference_notes(interface);
        EXPECT_LE(reception.notes.size(), reference.size());
        for (const std::string& note : reception.notes)
            EXPECT_THAT(reference, testing::Contains(note));
    }

    // Whoever meets the missing memory first is not silent about it: a call of the host throws, a worker's
    // end is reported. Nothing is laid down for two cases: the destructor's requests, which have nobody to be
    // thrown at (it ends all the same), and a new thread's entry in the platform's table, which does without.
    // Memory that stays missing is told to the host by every later call.
    void expect_not_silent(const reception_result& reception) const {
        if (reception.construction != reception_result::kConstructed) {
            EXPECT_EQ(reception.construction, reception_result::kOutOfMemory);
        } else if (failing_new::failed_on_this_thread()) {
            if (reception.struck_in != reception_phase::kDestruction) {
                EXPECT_GE(reception.thrown, 1);
            }
        } else if (reception.struck_in > reception_phase::kFirstEvent) {
            EXPECT_GE(reception.banners, 1U);
        }
        if (mode == failing_new::kFromThenOn) {
            EXPECT_EQ(reception.calls_as_ever, 0);
        }
    }

    // One allocation failed: somebody was told, the host by an exception or the log by a thread's end.
    // Silence is for what does without: a new thread's entry in the platform's table, and the requests of the
    // destructor.
    void expect_reported_once(const reception_result& reception) const {
        const long reports = reports_in(reception);
        const bool thrown = reception.construction == reception_result::kOutOfMemory;
        const long reported = reception.thrown + (thrown ? 1 : 0) + reports;
        const bool may_be_silent = reception.struck_in == reception_phase::kDestruction ||
                                   (reception.struck_in <= reception_phase::kFirstEvent &&
                                    reception.construction == reception_result::kConstructed);
        EXPECT_LE(reported, 1);
        if (!may_be_silent) {
            EXPECT_EQ(reported, 1);
        }
        if (thrown) {
            EXPECT_TRUE(reception.notes.empty());
        } else if (reports == 0) {
            EXPECT_EQ(reception.notes,
                      reference_notes(interface));  // the host asked again, or nobody noticed
            EXPECT_EQ(logo_files(reception).size(), 2U);
        } else {
            expect_nothing_made_up(reception);
        }
    }
};

TEST_P(AllocationSweep, EveryPointOfAReceptionIsSurvived) {
    long n = 1;
    long constructions_failed = 0;
    for (; n < kMostAllocations; ++n) {
        about_to_try("allocation " + std::to_string(n));
        SCOPED_TRACE("allocation " + std::to_string(n));
        const reception_result reception = play_with(n);
        if (!reception.struck) {
            expect_faultless(reception, interface);
            expect_a_faultless_reception(interface);
            break;
        }
        expect_sound(reception);
        EXPECT_TRUE(reception.construction == reception_result::kConstructed ||
                    reception.construction == reception_result::kOutOfMemory);
        if (reception.construction == reception_result::kOutOfMemory) ++constructions_failed;
        expect_not_silent(reception);
        if (mode == failing_new::kOnce) {
            expect_reported_once(reception);
        } else {
            reports_in(reception);
            expect_nothing_made_up(reception);
        }
        if (n % kFollowEvery == 0) expect_a_faultless_reception(interface);
        if (HasFailure()) break;
    }
    EXPECT_LT(n, kMostAllocations);
    EXPECT_GT(constructions_failed, 30);
    EXPECT_GT(n, 180);  // or the reception was not a whole one
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
