#include "tools/text/nearest.h"

#include <algorithm>

namespace dabspi {

namespace {

constexpr std::size_t kLongestWord = 64;
constexpr std::size_t kMostEdits = 3;

std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before, last(b.size() + 1), row(b.size() + 1);
    for (std::size_t j = 0; j < last.size(); ++j)
        last[j] = j;
    for (std::size_t i = 0; i < a.size(); ++i) {
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            row[j + 1] = std::min({last[j + 1] + 1, row[j] + 1, last[j] + (a[i] == b[j] ? 0 : 1)});
            if (i > 0 && j > 0 && a[i] == b[j - 1] && a[i - 1] == b[j])
                row[j + 1] = std::min(row[j + 1], before[j - 1] + 1);
        }
        before = last;
        last = row;
    }
    return last.back();
}

}  // namespace

std::string nearest(std::string_view mistyped, const std::vector<std::string>& words) {
    if (mistyped.empty() || mistyped.size() > kLongestWord) return {};
    // Of a short word little may be wrong.
    std::size_t best = std::min(kMostEdits, (mistyped.size() + 1) / 3) + 1;
    std::string found;
    for (const std::string& each : words) {
        const std::size_t here = distance(mistyped, each);
        if (here < best) found = each;
        best = std::min(best, here);
    }
    return found;
}

std::string did_you_mean(std::string_view mistyped, const std::vector<std::string>& words) {
    const std::string word = nearest(mistyped, words);
    return word.empty() ? word : "; did you mean " + word + "?";
}

}  // namespace dabspi
