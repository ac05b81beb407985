#include "tools/encode/token_builder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <queue>
#include <utility>

namespace dabspi {

namespace {

constexpr std::size_t kLongestToken = 255;
constexpr std::size_t kEntryHeader = 2;  // token byte and length
constexpr char kBorder = '\0';           // between texts; no text holds it, and no token crosses it
constexpr std::size_t kKey = 8;          // bytes that are compared at once
// Places that are looked at, for each byte of the texts. A few are enough for what people write; texts made
// to need more get the tokens that were found by then.
constexpr std::uint64_t kLooksPerByte = 25;

bool begins_character(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

// What `count` uses of a token of `length` bytes save: all but a byte of each use, less the entry.
std::int64_t saving(std::size_t count, std::size_t length) {
    return static_cast<std::int64_t>(count * (length - 1)) - static_cast<std::int64_t>(length + kEntryHeader);
}

// Places in the text that begin with the same `longest` bytes, and with no others in more than `shortest`:
// order[begin] to order[end].
struct repetition {
    std::uint32_t begin;
    std::uint32_t end;
    std::uint8_t shortest;
    std::uint8_t longest;
};

struct token_place {
    std::int64_t saved = 0;
    std::size_t length = 0;
    std::size_t at = 0;
    std::size_t of = 0;  // the repetition
};

// All repeated parts of the texts, found once. Taking a token only shortens what can stand at a place, so
// what a repetition saves only gets less: an earlier value is an upper bound, and most need not be looked at
// again.
class repetitions {
 public:
    explicit repetitions(std::string text) : text_(std::move(text)), size_(text_.size()) {
        text_.append(kLongestToken + kKey, kBorder);
        looks_left_ = kLooksPerByte * (size_ + 1000);
        for (std::size_t i = 0; i < size_; ++i)
            if (text_[i] != kBorder && begins_character(text_[i]))
                order_.push_back(static_cast<std::uint32_t>(i));
        sort();
        find();
        room_.resize(text_.size());
        note_room();
    }

    // The part that saves most, taken out of the texts; empty when none saves anything.
    std::string take_best() {
        token_place best;
        std::vector<bound> again;
        while (!bounds_.empty() && bounds_.top().saved >= std::max<std::int64_t>(best.saved, 1) &&
               looks_left_ != 0) {
            const std::size_t index = bounds_.top().index;
            bounds_.pop();
            const token_place found = best_of(index);
            if (found.saved <= 0) continue;
            again.push_back({found.saved, index});
            if (is_better(found, best)) best = found;
        }
        for (const bound& each : again)
            bounds_.push(each);
        if (best.saved <= 0) return {};
        std::string token = text_.substr(best.at, best.length);
        uses(all_[best.of], best.length, [&](std::size_t each) {
            std::fill_n(text_.begin() + static_cast<std::ptrdiff_t>(each), best.length, kBorder);
        });
        note_room();
        return token;
    }

 private:
    struct bound {
        std::int64_t saved;
        std::size_t index;
        bool operator<(const bound& other) const { return saved < other.saved; }
    };

    // Bytes from `at` on as a number that sorts like them; zeroes from the first border on.
    std::uint64_t key(std::size_t at, std::size_t depth) const {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < kKey; ++i)
            value = value << 8 | static_cast<unsigned char>(text_[at + depth + i]);
        if (depth + kKey > kLongestToken) value &= ~std::uint64_t{0xFF};
        for (unsigned shift = 64; shift > 0; shift -= 8)
            if ((value >> (shift - 8) & 0xFF) == 0) return shift == 64 ? 0 : value >> shift << shift;
        return value;
    }

    // By the texts up to the border, eight bytes at a time; equal ones by their place.
    void sort() {
        struct range {
            std::size_t begin, end, depth;
        };
        std::vector<range> open = {{0, order_.size(), 0}};
        std::vector<std::pair<std::uint64_t, std::uint32_t>> keys;
        while (!open.empty()) {
            const range now = open.back();
            open.pop_back();
            if (now.begin == now.end) continue;
            keys.clear();
            for (std::size_t i = now.begin; i < now.end; ++i)
                keys.emplace_back(key(order_[i], now.depth), order_[i]);
            // Where most are alike, as in "aaaa", those are set aside instead of being sorted at each depth.
            const std::uint64_t middle = keys[keys.size() / 2].first;
            const auto alike = [middle](const auto& each) { return each.first == middle; };
            if (static_cast<std::size_t>(std::count_if(keys.begin(), keys.end(), alike)) > keys.size() / 2) {
                const auto below = std::stable_partition(
                    keys.begin(), keys.end(), [middle](const auto& each) { return each.first < middle; });
                const auto above = std::stable_partition(below, keys.end(), alike);
                std::sort(keys.begin(), below);
                std::sort(above, keys.end());
            } else {
                std::sort(keys.begin(), keys.end());
            }
            for (std::size_t i = 0; i < keys.size(); ++i)
                order_[now.begin + i] = keys[i].second;
            for (std::size_t i = 0; i < keys.size();) {
                std::size_t end = i + 1;
                while (end < keys.size() && keys[end].first == keys[i].first)
                    ++end;
                if (end - i > 1 && (keys[i].first & 0xFF) != 0)
                    open.push_back({now.begin + i, now.begin + end, now.depth + kKey});
                i = end;
            }
        }
    }

    std::size_t common(std::size_t a, std::size_t b) const {
        std::size_t length = 0;
        while (length < kLongestToken && text_[a + length] == text_[b + length] &&
               text_[a + length] != kBorder)
            ++length;
        // Back to where a character begins, in both.
        while (length > 0 && !(begins_character(text_[a + length]) && begins_character(text_[b + length])))
            --length;
        return length;
    }

    // Every longest common beginning of neighbours in the order, with all that share it.
    void find() {
        std::vector<repetition> open;
        for (std::size_t i = 1; i <= order_.size(); ++i) {
            const auto length =
                static_cast<std::uint8_t>(i < order_.size() ? common(order_[i - 1], order_[i]) : 0);
            auto begin = static_cast<std::uint32_t>(i - 1);
            while (!open.empty() && open.back().longest > length) {
                repetition done = open.back();
                open.pop_back();
                begin = done.begin;
                done.end = static_cast<std::uint32_t>(i);
                done.shortest = std::max(length, open.empty() ? std::uint8_t{0} : open.back().longest);
                keep(done);
            }
            if (length > 0 && (open.empty() || open.back().longest < length))
                open.push_back({begin, 0, 0, length});
        }
    }

    void keep(const repetition& done) {
        if (done.longest < 2) return;
        const std::int64_t at_most =
            saving(std::min<std::size_t>(done.end - done.begin, size_ / done.longest), done.longest);
        // A shorter beginning of it can save more only where it does not overlap itself.
        const std::int64_t shorter = saving(done.end - done.begin, done.longest);
        if (shorter <= 0) return;
        bounds_.push({std::max(at_most, std::min<std::int64_t>(shorter, static_cast<std::int64_t>(size_))),
                      all_.size()});
        all_.push_back(done);
    }

    // How long a token from each place on may be: up to the next border.
    void note_room() {
        std::size_t room = 0;
        for (std::size_t i = text_.size(); i-- > 0;) {
            room = text_[i] == kBorder ? 0 : std::min(room + 1, kLongestToken);
            room_[i] = static_cast<std::uint8_t>(room);
        }
    }

    static bool is_better(const token_place& a, const token_place& b, std::string_view text) {
        if (a.saved != b.saved) return a.saved > b.saved;
        if (a.length != b.length) return a.length > b.length;
        return text.substr(a.at, a.length) < text.substr(b.at, b.length);
    }
    bool is_better(const token_place& a, const token_place& b) const { return is_better(a, b, text_); }

    // The length at which a repetition saves most.
    token_place best_of(std::size_t index) {
        const repetition& of = all_[index];
        look(of.end - of.begin);
        std::array<std::size_t, kLongestToken + 1> counts{};
        std::array<std::uint32_t, kLongestToken + 1> example{};
        for (std::size_t i = of.begin; i < of.end; ++i) {
            const std::size_t length = std::min(room_[order_[i]], of.longest);
            ++counts[length];
            example[length] = order_[i];
        }
        token_place best;
        best.of = index;
        std::size_t count = 0;
        for (std::size_t length = of.longest; length > std::max<std::size_t>(of.shortest, 1); --length) {
            if (counts[length] == 0) continue;  // what is longer saves more
            count += counts[length];
            const std::size_t at_most = std::min(count, size_ / length);
            if (saving(at_most, length) <= std::max<std::int64_t>(best.saved, 0)) continue;
            const std::int64_t saved = saving(uses(of, length), length);
            if (saved > best.saved) best = {saved, length, example[length], index};
        }
        return best;
    }

    // How often it can be used without overlapping itself, from the front; `use` is called with each place.
    template <class Use>
    std::size_t uses(const repetition& of, std::size_t length, Use use) {
        look(of.end - of.begin);
        std::vector<std::uint32_t> positions;
        for (std::size_t i = of.begin; i < of.end; ++i)
            if (room_[order_[i]] >= length) positions.push_back(order_[i]);
        in_order(positions);
        std::size_t count = 0;
        std::size_t free_from = 0;
        for (const std::size_t each : positions) {
            if (each < free_from) continue;
            ++count;
            use(each);
            free_from = each + length;
        }
        return count;
    }
    std::size_t uses(const repetition& of, std::size_t length) {
        return uses(of, length, [](std::size_t) {});
    }

    // Many places are put in order by marking them.
    void in_order(std::vector<std::uint32_t>& positions) {
        if (positions.size() < size_ / 64) return std::sort(positions.begin(), positions.end());
        marks_.resize(size_ / 64 + 1);
        for (const std::uint32_t each : positions)
            marks_[each / 64] |= std::uint64_t{1} << each % 64;
        positions.clear();
        for (std::size_t word = 0; word < marks_.size(); ++word) {
            std::uint32_t at = static_cast<std::uint32_t>(word * 64);
            for (std::uint64_t left = std::exchange(marks_[word], 0); left != 0; left >>= 1, ++at)
                if ((left & 1) != 0) positions.push_back(at);
        }
    }

    void look(std::uint64_t positions) { looks_left_ -= std::min(looks_left_, positions); }

    std::string text_;
    std::size_t size_;
    std::vector<std::uint32_t> order_;
    std::vector<repetition> all_;
    std::vector<std::uint8_t> room_;
    std::priority_queue<bound> bounds_;
    std::vector<std::uint64_t> marks_;
    std::uint64_t looks_left_ = 0;
};

}  // namespace

token_texts choose_tokens(const std::vector<std::string_view>& texts) {
    std::string all;
    for (const std::string_view each : texts)
        (all += each) += kBorder;
    repetitions found(std::move(all));
    token_texts tokens;
    for (const std::uint8_t code : token_codes()) {
        std::string best = found.take_best();
        if (best.empty()) break;
        tokens[code] = std::move(best);
    }
    return tokens;
}

}  // namespace dabspi
