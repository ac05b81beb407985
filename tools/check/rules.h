// The rules that look for findings in a history. Each adds what it finds; the same thing in the repetitions
// of one object is found once.
#pragma once

#include <map>
#include <optional>
#include <tuple>
#include <vector>

#include "tools/check/finding.h"
#include "tools/check/history.h"
#include "tools/check/received_input.h"
#include "tools/check/replay_result.h"
#include "tools/check/schedules.h"

namespace dabspi::check {

// Collects findings. Two with the same code, object and `what` are one.
class finding_list {
 public:
    // False when it was there already.
    bool add(finding what, const std::string& same = {});
    // Counts all of one object together: the first one stays, the others are told as a number. `same` keeps
    // one thing from being counted twice.
    void add_of_object(finding what, const std::string& same);

    // By severity, code, line and byte.
    std::vector<finding> take_sorted();

 private:
    std::vector<finding> all_;
    std::map<std::tuple<finding_code, std::size_t, std::string>, std::size_t> known_;
    std::map<std::pair<finding_code, std::size_t>, std::size_t> of_object_;
};

void look_at_objects(const history& in, finding_list& found);
void look_at_programmes(const history& in, finding_list& found);
void look_at_schedules(const history& in, const std::vector<service_schedule>& schedules,
                       finding_list& found);
// `ends_within`: hours after the end of the clock in which the end of a schedule is a finding.
void look_at_dates(const history& in, long ends_within, finding_list& found);
void look_at_listening(const recording& played, const replay_result& replayed, finding_list& found);
void look_at_announcements(const history& in, finding_list& found);
void look_at_images(const history& in, finding_list& found);
void look_at_carousels(const received_carousels& air, const history& in, finding_list& found);

// `ends_within`: see look_at_dates(); without it nothing is held against the clock, which is guessed. `air`:
// of a multiplex, else null.
std::vector<finding> find_all(const recording& played, const history& in, const replay_result& replayed,
                              const std::vector<service_schedule>& schedules, const received_carousels* air,
                              std::optional<long> ends_within);

}  // namespace dabspi::check
