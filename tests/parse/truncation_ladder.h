// Objects cut short on their way: each is fed cut behind every one of its bytes. Whatever the cut, what stood
// whole in front of it is delivered unchanged and in order, and nothing outside the bytes is read (bodies are
// arrays of exactly their size, so AddressSanitizer would see it).
//
// What stands whole is told from the positions of the built elements alone.
#pragma once

#include <algorithm>
#include <stdexcept>

#include "tests/parse/parse_fixture.h"

namespace truncation {

using namespace spi_builder;

// So long that its length takes three bytes.
inline const std::string kLongTitle = std::string(300, 'n') + " at Ten";

// Where the elements stand in an object: the position of the tag and the position behind the content.
struct extent {
    std::size_t begin;
    std::size_t end;
};

inline std::vector<extent> extents_of(const std::vector<bytes>& elements, const bytes& object) {
    std::vector<extent> out;
    auto from = object.begin();
    for (const bytes& element : elements) {
        from = std::search(from, object.end(), element.begin(), element.end());
        if (from == object.end()) throw std::logic_error("the object does not hold its own elements");
        const auto begin = static_cast<std::size_t>(from - object.begin());
        out.push_back({begin, begin + element.size()});
    }
    return out;
}

inline std::size_t whole_in_front_of(std::size_t cut_at, const std::vector<extent>& extents) {
    std::size_t count = 0;
    for (const extent& p : extents)
        count += p.end <= cut_at ? 1 : 0;
    return count;
}
// With the one that the cut goes through, as soon as its tag is there.
inline std::size_t begun_in_front_of(std::size_t cut_at, const std::vector<extent>& extents) {
    std::size_t count = 0;
    for (const extent& p : extents)
        count += p.begin < cut_at ? 1 : 0;
    return count;
}

inline bool starts_with(const std::string& whole, const std::string& beginning) {
    return whole.compare(0, beginning.size(), beginning) == 0;
}

// What may be left of a text. A two-byte length cut in half reads as 65535, and then the half that is there
// counts as the first byte of the text.
inline bool is_part_of(const std::string& whole, const std::string& part) {
    const std::string high_byte(1, static_cast<char>(whole.size() >> 8));
    return starts_with(whole, part) || part == high_byte;
}

using element_form = bytes (*)(std::uint8_t, const bytes&);

// Climbs the ladder. `feed` takes the cut object and gives what was sent; each record is compared by
// `expect_whole` or, where the cut goes through its element, by `expect_part`.
template <class Expected, class Feed>
void climb(const bytes& object, const std::vector<bytes>& elements, const std::vector<Expected>& expected,
           Feed feed) {
    const std::vector<extent> extents = extents_of(elements, object);
    for (std::size_t at = 0; at <= object.size(); ++at) {
        SCOPED_TRACE("cut behind byte " + std::to_string(at));
        const auto sent = feed(cut(object, at));
        const std::size_t whole = whole_in_front_of(at, extents);
        ASSERT_EQ(sent.size(), begun_in_front_of(at, extents));
        for (std::size_t i = 0; i < whole; ++i)
            expect_whole(sent[i], expected[i]);
        if (sent.size() > whole) expect_part(sent[whole], expected[whole]);
        if (::testing::Test::HasFailure()) return;
    }
}

}  // namespace truncation
