// What holds after every reception, whatever went wrong in it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string>

#include "tests/event/log_lines.h"
#include "tests/faults/whole_reception.h"

// What the shared block is locked by, as the library names it.
inline const char* const kLockFile = "/dev/shm/dabspi-SysDataInfo.lock";

inline const char* const kNoMemoryReport =
    "431 catch exception. thread name [dabspi], what [std::bad_alloc]\n";

// DABSPI_FAULTS_VERBOSE=1 names each point before it is tried: the last one named is the one that crashed.
inline void about_to_try(const std::string& point) {
    static const bool verbose = std::getenv("DABSPI_FAULTS_VERBOSE") != nullptr;
    if (!verbose) return;
    std::printf("%s\n", point.c_str());
    std::fflush(stdout);
}

// One row of the table of what was tried.
inline void report_tried(const std::string& what, surface interface, const std::string& how, long points) {
    std::printf("[  TRIED   ] %-24s %-8s %-14s %4ld points\n", what.c_str(), name_of(interface), how.c_str(),
                points);
    testing::Test::RecordProperty("points", static_cast<int>(points));
}

inline std::string logo_of_note(const std::string& note) {
    return note.rfind("logo ", 0) == 0 ? note.substr(5, note.find(' ', 5) - 5) : "";
}

inline std::vector<std::string> without_logos(const std::vector<std::string>& notes) {
    std::vector<std::string> others;
    for (const std::string& note : notes)
        if (logo_of_note(note).empty()) others.push_back(note);
    return others;
}

// Names of the PNG files, in whatever directory, links apart.
inline std::set<std::string> logo_files(const reception_result& reception) {
    std::set<std::string> names;
    for (const auto& [path, content] : reception.files)
        if (path.find(".PNG") != std::string::npos && content.rfind("-> ", 0) != 0)
            names.insert(path.substr(path.rfind('/') + 1));
    return names;
}
inline std::set<std::string> logos_reported(const reception_result& reception) {
    std::set<std::string> names;
    for (const std::string& note : reception.notes)
        if (!logo_of_note(note).empty()) names.insert(logo_of_note(note));
    return names;
}

// Nothing stays, nothing unknown is printed, every logo file is whole, and every logo that was reported has
// its file.
inline void expect_sound(const reception_result& reception) {
    EXPECT_EQ(reception.left_behind, "");
    EXPECT_FALSE(reception.astray);
    for (const std::string& line : lines_of(reception.other_output)) {
        // What is still on its way to a worker that has left is logged; without memory the line breaks off.
        EXPECT_THAT(line, testing::StartsWith("[q(B0] "));
        const std::string message = messages_of(line + "\n")[0];
        const std::string known = " Event backend - no queue ";
        if (log_head_length(line) != 0) {
            EXPECT_EQ(message.substr(0, known.size()), known.substr(0, message.size())) << line;
        }
    }
    for (const auto& [path, content] : reception.files) {
        if (path.find(".PNG") != std::string::npos && content.rfind("-> ", 0) != 0) {
            EXPECT_EQ(content, on_air::png_text()) << path;
        }
    }
    const std::set<std::string> files = logo_files(reception);
    for (const std::string& logo : logos_reported(reception))
        EXPECT_EQ(files.count(logo), 1U) << logo;
}

// A reception without any trace of a fault.
inline void expect_faultless(const reception_result& reception, surface interface) {
    expect_sound(reception);
    EXPECT_EQ(reception.construction, reception_result::kConstructed);
    EXPECT_EQ(reception.thrown, 0);
    EXPECT_EQ(reception.notes, reference_notes(interface));
    EXPECT_EQ(lines_and_texts(reception), std::vector<std::string>{});
    EXPECT_EQ(reception.other_output, "");
    EXPECT_EQ(logo_files(reception), (std::set<std::string>{"E1C2210_3.PNG", "E1C2210_4.PNG"}));
    EXPECT_EQ(reception.files.size(), 2U);  // the link at the third logo's name is gone
}

// After every struck reception another one is played, without a fault; under ThreadSanitizer, where a
// reception takes ten times as long, after every eighth. Every point itself is tried there too.
#if defined(__SANITIZE_THREAD__)
constexpr long kFollowEvery = 8;
#else
constexpr long kFollowEvery = 1;
#endif

inline void expect_a_faultless_reception(surface interface) {
    whole_reception reception(interface);
    expect_faultless(reception.run(), interface);
}
