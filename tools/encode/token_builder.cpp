#include "tools/encode/token_builder.h"

#include <algorithm>
#include <cstdint>
#include <numeric>

namespace dabspi {

namespace {

constexpr std::size_t kLongestToken = 255;
constexpr std::size_t kEntryHeader = 2;  // token byte and length
constexpr char kBorder = '\0';           // between texts; no text holds it, and no token crosses it

bool begins_character(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

// What `count` uses of a token of `length` bytes save: all but a byte of each use, less the entry.
std::int64_t saving(std::size_t count, std::size_t length) {
    return static_cast<std::int64_t>(count * (length - 1)) - static_cast<std::int64_t>(length + kEntryHeader);
}

// Positions in `text` that begin with the same `length` bytes: order[begin] to order[end].
struct candidate {
    std::size_t begin;
    std::size_t end;
    std::size_t length;
    std::int64_t at_most;  // saved, if no more uses overlap than must
};

class repetitions {
 public:
    explicit repetitions(std::string_view text) : text_(text) {
        for (std::size_t i = 0; i < text_.size(); ++i)
            if (text_[i] != kBorder && begins_character(text_[i])) order_.push_back(i);
        std::sort(order_.begin(), order_.end(), [this](std::size_t a, std::size_t b) {
            const int compared = suffix(a).compare(suffix(b));
            return compared != 0 ? compared < 0 : a < b;
        });
    }

    // The substring that saves most; empty when none saves anything.
    std::string_view best() const {
        std::vector<candidate> found = candidates();
        std::stable_sort(found.begin(), found.end(),
                         [](const candidate& a, const candidate& b) { return a.at_most > b.at_most; });
        std::string_view winner;
        std::int64_t most = 0;
        for (const candidate& each : found) {
            if (each.at_most < most || each.at_most <= 0) break;
            const std::string_view substring = text_.substr(order_[each.begin], each.length);
            const std::int64_t saved = saving(uses(each), each.length);
            const bool better = saved > most || (saved == most && saved > 0 &&
                                                 (substring.size() > winner.size() ||
                                                  (substring.size() == winner.size() && substring < winner)));
            if (!better) continue;
            most = saved;
            winner = substring;
        }
        return winner;
    }

 private:
    // What a token that begins here could hold: to the border, no half characters.
    std::string_view suffix(std::size_t at) const {
        const std::string_view rest = text_.substr(at, kLongestToken);
        return rest.substr(0, rest.find(kBorder));
    }

    std::size_t common(std::size_t a, std::size_t b) const {
        const std::string_view one = suffix(a);
        const std::string_view other = suffix(b);
        const std::size_t most = std::min(one.size(), other.size());
        std::size_t length = 0;
        while (length < most && one[length] == other[length])
            ++length;
        // Back to where a character begins, in both.
        while (length > 0 && !(ends_between_characters(a + length) && ends_between_characters(b + length)))
            --length;
        return length;
    }

    bool ends_between_characters(std::size_t at) const {
        return at >= text_.size() || begins_character(text_[at]);
    }

    // Every longest common beginning of neighbours in the order, with all that share it.
    std::vector<candidate> candidates() const {
        std::vector<candidate> result;
        std::vector<candidate> open;
        for (std::size_t i = 1; i <= order_.size(); ++i) {
            const std::size_t length = i < order_.size() ? common(order_[i - 1], order_[i]) : 0;
            std::size_t begin = i - 1;
            while (!open.empty() && open.back().length > length) {
                candidate done = open.back();
                open.pop_back();
                begin = done.begin;
                done.end = i;
                done.at_most =
                    saving(std::min(done.end - done.begin, text_.size() / done.length), done.length);
                if (done.length > 1 && done.at_most > 0) result.push_back(done);
            }
            if (length > 1 && (open.empty() || open.back().length < length))
                open.push_back({begin, 0, length, 0});
        }
        return result;
    }

    // How often it can be used without overlapping itself.
    std::size_t uses(const candidate& of) const {
        const auto first = order_.begin() + static_cast<std::ptrdiff_t>(of.begin);
        std::vector<std::size_t> positions(first, first + static_cast<std::ptrdiff_t>(of.end - of.begin));
        std::sort(positions.begin(), positions.end());
        std::size_t count = 0;
        std::size_t free_from = 0;
        for (const std::size_t each : positions) {
            if (each < free_from) continue;
            ++count;
            free_from = each + of.length;
        }
        return count;
    }

    std::string_view text_;
    std::vector<std::size_t> order_;
};

// Each use of the token becomes a border.
std::string without(const std::string& all, const std::string& token) {
    std::string rest;
    std::size_t from = 0;
    for (std::size_t at = 0; (at = all.find(token, from)) != std::string::npos; from = at + token.size())
        rest.append(all, from, at - from) += kBorder;
    return rest.append(all, from, std::string::npos);
}

}  // namespace

token_texts choose_tokens(const std::vector<std::string_view>& texts) {
    std::string all;
    for (const std::string_view each : texts)
        (all += each) += kBorder;
    token_texts tokens;
    for (const std::uint8_t code : token_codes()) {
        const std::string best(repetitions(all).best());
        if (best.empty()) break;
        tokens[code] = best;
        all = without(all, best);
    }
    return tokens;
}

}  // namespace dabspi
