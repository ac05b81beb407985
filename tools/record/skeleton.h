// A plan to start from: what some documents, objects and images would be as a broadcast.
#pragma once

#include <string>
#include <vector>

namespace dabspi {

struct plan_skeleton {
    std::string text;                   // JSON; empty when there is nothing to send
    std::vector<std::string> messages;  // what was guessed, and what was left out
    std::vector<std::string> errors;    // printable; then there is no text
};

// `paths` are documents (XML), binary SPI objects, images, and folders of these; the plan names them as they
// are named here, so it belongs into the current directory. `today` ("2026-03-10") is the day of the clock
// when there is no schedule to tell one.
plan_skeleton make_skeleton(const std::vector<std::string>& paths, const std::string& today);

}  // namespace dabspi
