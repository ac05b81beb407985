// A listener that throws, whatever it throws, in each of its calls, at the first and at a later one:
// notification ends there, everything else goes on, and the report says why.
#include <stdexcept>

#include "tests/event/watchdog.h"
#include "tests/faults/reception_checks.h"

namespace {

enum class thrown { kException, kNumber };

struct throwing_case {
    surface interface;
    const char* call;  // how its notes begin
    int occurrence;
    thrown what;
};

struct ThrowingListener : testing::TestWithParam<throwing_case> {
    const watchdog guard;
    void SetUp() override { whole_reception(GetParam().interface).run(); }
};

// The notes up to and with the one that throws.
std::vector<std::string> received_until(const throwing_case& at) {
    std::vector<std::string> received;
    int left = at.occurrence;
    for (const std::string& note : reference_notes(at.interface)) {
        received.push_back(note);
        if (note.rfind(at.call, 0) == 0 && --left == 0) return received;
    }
    return {};
}

TEST_P(ThrowingListener, EndsNotificationAndNothingElse) {
    const throwing_case at = GetParam();
    reception_result reception;
    {
        whole_reception struck(at.interface);
        int seen = 0;
        struck.notes.during_a_call = [&](const char* text) {
            if (std::string(text).rfind(at.call, 0) != 0 || ++seen != at.occurrence) return;
            if (at.what == thrown::kException) throw std::runtime_error("no more");
            throw 42;
        };
        reception = struck.run();
    }
    expect_sound(reception);
    ASSERT_FALSE(received_until(at).empty());
    EXPECT_EQ(reception.notes, received_until(at));
    EXPECT_EQ(reception.thrown, 0);
    EXPECT_EQ(logo_files(reception).size(), 2U);
    const std::string report = at.what == thrown::kException
                                   ? "431 catch exception. thread name [dabspi], what [no more]\n"
                                   : "436 catch exception. thread name [dabspi]\n";
    EXPECT_EQ(lines_and_texts(reception), std::vector<std::string>{report});
    ASSERT_EQ(reception.messages.size(), 1U);
    EXPECT_EQ(reception.messages[0].function, "Entry");
    EXPECT_EQ(reception.banners, 1U);
    expect_a_faultless_reception(at.interface);
}

std::vector<throwing_case> throwing_cases() {
    std::vector<throwing_case> cases;
    for (const surface interface : {surface::kCore, surface::kWrapper}) {
        for (const char* call : {"programme", "now", "logo"}) {
            if (interface == surface::kWrapper && call[0] == 'p') continue;  // never called
            for (const int occurrence : {1, 2}) {
                for (const thrown what : {thrown::kException, thrown::kNumber})
                    cases.push_back({interface, call, occurrence, what});
            }
        }
    }
    return cases;
}

std::string case_name(const testing::TestParamInfo<throwing_case>& about) {
    const throwing_case& at = about.param;
    return std::string(at.interface == surface::kCore ? "Core_" : "Wrapper_") + at.call +
           (at.occurrence == 1 ? "_First" : "_Later") +
           (at.what == thrown::kException ? "_Exception" : "_Number");
}

INSTANTIATE_TEST_SUITE_P(In, ThrowingListener, testing::ValuesIn(throwing_cases()), &case_name);

}  // namespace
