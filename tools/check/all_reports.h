// What is printed of one input or of several: of a tree of folders each ensemble by itself, and an index over
// all.
#pragma once

#include <string>
#include <vector>

#include "tools/check/report.h"
#include "tools/check/text_report.h"

namespace dabspi::check {

// `name`: what was given on the command line. At least one report. One alone comes without an index.
std::string text_of_all(const std::string& name, const std::vector<check_report>& reports,
                        const text_settings& how);
std::string json_of_all(const std::string& name, const std::vector<check_report>& reports);

struct page {
    std::string path;
    std::string content;
};
// The page of one report at `path`; of several the index there, and beside it a page for each:
// "day.html", "day-E1.C185.html", ...
std::vector<page> pages_of(const std::string& name, const std::vector<check_report>& reports,
                           const std::string& path);

}  // namespace dabspi::check
