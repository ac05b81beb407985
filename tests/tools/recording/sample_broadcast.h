// A small broadcast for tests of the replay: one service with two programmes and a logo.
//
// Service E1.C221.0 on ensemble C185. On 2 March 2026: Breakfast at 10:00, Elevenses at 11:00, an hour each.
// One logo is announced, 128x128 pixels, and comes once.
#pragma once

#include <string>
#include <vector>

#include "testkit/temporary_directory.h"

namespace sample_broadcast {

// Calls, one line each, without line end.
extern const char* const kClock;         // 2026-03-02 10:30
extern const char* const kService;       // E1.C221.0
extern const char* const kSchedule;      // names the file objects/pi.bin
extern const char* const kAnnouncement;  // names the file objects/si.bin
extern const char* const kLogo;          // names the file objects/logo.png
extern const char* const kResend;

// The notifications as JSON, without line end.
extern const char* const kFirstPair;   // Breakfast, next unset
extern const char* const kSecondPair;  // Breakfast and Elevenses
extern const char* const kEmptyPair;
extern const char* const kBreakfast;  // programme_info
extern const char* const kElevenses;  // programme_info
extern const char* const kLogoWritten;
constexpr const char* kLogoFile = "E1C2210_3.PNG";
constexpr const char* kLogoBytes = "the image's bytes, whatever they are";

std::string lines(const std::vector<const char*>& each);

// Writes the objects, and a recording of these calls beside them; returns the recording's name.
std::string write_recording(const temporary_directory& in, const std::vector<const char*>& calls);

// Every call but the last, which the host-facing layer has not.
std::vector<const char*> whole();
std::vector<const char*> whole_received_by_wrapper();
std::vector<const char*> whole_received_by_core();

}  // namespace sample_broadcast
