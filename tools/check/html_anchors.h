// Where on the page each finding belongs, and which findings belong to each anchor: both ways for links.
//
// Identifiers: f0 a finding, s0 a service, p0 a programme (its index in the history), g0 the gap behind a
// programme, l0 the logos that an image led to, o0 an object.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/check/report.h"

namespace dabspi::check::html {

std::string id(char kind, std::size_t index);

class anchors {
 public:
    explicit anchors(const check_report& of);

    // The identifier of the anchor, "" for none.
    const std::string& of_finding(std::size_t finding) const { return anchor_of_.at(finding); }
    // In their order.
    const std::vector<std::size_t>& findings_at(const std::string& id) const;
    // Links to the findings at a place, one for each kind, to the first of it; empty for none.
    std::string links_at(const check_report& of, const std::string& id) const;

 private:
    std::string anchor(const finding& what) const;

    std::map<std::pair<spi::ServElemId, long>, std::size_t> starts_;  // to programmes
    std::map<std::pair<spi::ServElemId, long>, std::size_t> ends_;    // of two, the first
    std::map<spi::ServElemId, std::size_t> services_;
    std::vector<bool> has_logos_;  // of objects
    std::vector<std::string> anchor_of_;
    std::map<std::string, std::vector<std::size_t>> at_;
};

}  // namespace dabspi::check::html
