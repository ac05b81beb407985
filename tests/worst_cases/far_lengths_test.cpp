// Lengths that point far beyond the body, in each element that is read: bytes that do not exist cost nothing,
// and those that exist are walked once. That the innermost element was really come to is told by the reads
// inside it: a walk that ended before, for whatever reason, would cost as little.
#include "tests/worst_cases/costed.h"
#include "tests/worst_cases/noted_bytes.h"

namespace {

using namespace hostile;

// What the innermost element's content is for its handler.
enum content_t {
    kElements,  // walked to its end
    kTokens,    // walked to its end, and the text of each child is read
    kText,      // read to its end
    kValue,     // a few bytes are read
    kNothing    // passed over: a token of more than 255 bytes defines nothing
};

// The way to each handler, from the outside in.
struct way {
    const char* name;
    bytes tags;
    content_t content;
};

const way kProgrammeWays[] = {
    {"epg", {0x02}, kElements},
    {"token table", {0x02, 0x04}, kTokens},
    {"token", {0x02, 0x04, 0x01}, kNothing},
    {"default content ID", {0x02, 0x05}, kValue},
    {"schedule", {0x02, 0x21}, kElements},
    {"scope", {0x02, 0x21, 0x24}, kElements},
    {"start time of a scope", {0x02, 0x21, 0x24, 0x80}, kValue},
    {"stop time of a scope", {0x02, 0x21, 0x24, 0x81}, kValue},
    {"service scope", {0x02, 0x21, 0x24, 0x25}, kElements},
    {"identifier of a service scope", {0x02, 0x21, 0x24, 0x25, 0x80}, kValue},
    {"programme", {0x02, 0x21, 0x1C}, kElements},
    {"short identifier", {0x02, 0x21, 0x1C, 0x81}, kValue},
    {"medium name", {0x02, 0x21, 0x1C, 0x11}, kElements},
    {"long name", {0x02, 0x21, 0x1C, 0x12}, kElements},
    {"text of a name", {0x02, 0x21, 0x1C, 0x12, 0x01}, kText},
    {"location", {0x02, 0x21, 0x1C, 0x19}, kElements},
    {"time", {0x02, 0x21, 0x1C, 0x19, 0x2C}, kElements},
    {"time's time", {0x02, 0x21, 0x1C, 0x19, 0x2C, 0x80}, kValue},
    {"time's duration", {0x02, 0x21, 0x1C, 0x19, 0x2C, 0x81}, kValue},
    {"bearer", {0x02, 0x21, 0x1C, 0x19, 0x2D}, kElements},
    {"bearer's identifier", {0x02, 0x21, 0x1C, 0x19, 0x2D, 0x80}, kValue},
};
const way kServiceWays[] = {
    {"service information", {0x03}, kElements},
    {"token table", {0x03, 0x04}, kTokens},
    {"token", {0x03, 0x04, 0x01}, kNothing},
    {"ensemble", {0x03, 0x26}, kElements},
    {"service", {0x03, 0x26, 0x28}, kElements},
    {"short name", {0x03, 0x26, 0x28, 0x10}, kElements},
    {"medium name", {0x03, 0x26, 0x28, 0x11}, kElements},
    {"text of a name", {0x03, 0x26, 0x28, 0x11, 0x01}, kText},
    {"bearer", {0x03, 0x26, 0x28, 0x29}, kElements},
    {"bearer's identifier", {0x03, 0x26, 0x28, 0x29, 0x80}, kValue},
    {"media description", {0x03, 0x26, 0x28, 0x13}, kElements},
    {"multimedia", {0x03, 0x26, 0x28, 0x13, 0x2B}, kElements},
    {"MIME type", {0x03, 0x26, 0x28, 0x13, 0x2B, 0x80}, kText},
    {"URL", {0x03, 0x26, 0x28, 0x13, 0x2B, 0x82}, kText},
    {"type", {0x03, 0x26, 0x28, 0x13, 0x2B, 0x83}, kValue},
    {"width", {0x03, 0x26, 0x28, 0x13, 0x2B, 0x84}, kValue},
    {"height", {0x03, 0x26, 0x28, 0x13, 0x2B, 0x85}, kValue},
};

// The parser's handlers run on one thread here: under ThreadSanitizer, where 80 million elements take a
// minute, smaller bodies show all that there is for it to see.
#if defined(__SANITIZE_THREAD__)
constexpr std::size_t kLargest = 65536;
#else
constexpr std::size_t kLargest = kSizes[2];
#endif

// 65,535 and 16,777,215 bytes.
const bytes kTwoByteLength = {0xFE, 0xFF, 0xFF};
const bytes kThreeByteLength = {0xFF, 0xFF, 0xFF, 0xFF};

class FarLengths : public Costed {
 protected:
    static bool walked(const way& to) { return to.content == kElements || to.content == kTokens; }

    work of(kind what, const bytes& body) { return what == kServiceInformation ? of_si(body) : of_pi(body); }

    // Each element on the way claims as far as it can, then come `rest` bytes of one value.
    void walk(kind what, const way& to, const bytes& far, std::size_t rest, std::uint8_t value) {
        SCOPED_TRACE(std::string(to.name) + ", then " + std::to_string(rest) + " times " +
                     std::to_string(value));
        bytes body;
        for (const std::uint8_t tag : to.tags)
            append(body, join({u8(tag), far}));
        const auto inside = static_cast<std::int64_t>(body.size());
        body.resize(body.size() + rest, value);
        noted_bytes::forget();
        const work done = of(what, body);
        ASSERT_LE(done.scopes, body.size());
        ASSERT_LE(done.string_bytes, body.size());
        ASSERT_LE(done.events + done.logos, body.size());
        ASSERT_LE(done.text, body.size());
        ASSERT_FALSE(done.exhausted);
        if (to.content == kNothing) {
            ASSERT_LT(noted_bytes::furthest(), inside);
        } else {
            ASSERT_GE(noted_bytes::furthest(), inside);
        }
        if (!walked(to)) {
            ASSERT_EQ(done.scopes, to.tags.size());
            ASSERT_EQ(done.string_bytes, to.content == kText ? rest : 0U);
        } else if (value == 0) {  // elements of two bytes, which nobody asks for
            ASSERT_EQ(done.scopes, to.tags.size() + rest / 2);
            ASSERT_EQ(done.string_bytes, 0U);
        }
    }

    template <std::size_t kWays>
    void walk_all(kind what, const way (&ways)[kWays]) {
        for (const way& to : ways) {
            for (unsigned value = 0; value < 256; ++value)
                for (const bytes& far : {kTwoByteLength, kThreeByteLength})
                    ASSERT_NO_FATAL_FAILURE(walk(what, to, far, 4000, static_cast<std::uint8_t>(value)));
            for (const int value : {0x00, 0x01, 0x7F, 0xFF})  // more than two bytes can claim
                ASSERT_NO_FATAL_FAILURE(
                    walk(what, to, kThreeByteLength, kLargest + 65536, static_cast<std::uint8_t>(value)));
        }
    }
};

TEST_F(FarLengths, OfProgrammeInformationCostNoMoreThanTheBodysBytes) {
    walk_all(kProgrammeInformation, kProgrammeWays);
}

TEST_F(FarLengths, OfServiceInformationCostNoMoreThanTheBodysBytes) {
    walk_all(kServiceInformation, kServiceWays);
}

// ---- the way again and again, each copy inside those in front of it ----

class OverlappingFarLengths : public FarLengths {
 protected:
    // The outermost element claims the copy itself, the inner ones all that follows. Two bytes end the
    // object: a length of three bytes is read only where a fourth one follows.
    static constexpr std::size_t kTail = 2;
    static std::size_t size_of_copy(const way& to, reach lengths) {
        return 2 + (lengths == reach::kTwoBytes ? 4 : 5) * (to.tags.size() - 1);
    }
    static bytes overlapping(const way& to, std::size_t count, reach lengths) {
        const bool two = lengths == reach::kTwoBytes;
        const std::size_t copy = size_of_copy(to, lengths);
        const std::size_t total = count * copy + kTail;
        bytes body;
        body.reserve(total);
        for (std::size_t i = 0; i < count; ++i) {
            body.push_back(to.tags[0]);
            body.push_back(static_cast<std::uint8_t>(copy - 2));
            for (std::size_t depth = 1; depth < to.tags.size(); ++depth) {
                body.push_back(to.tags[depth]);
                body.push_back(two ? 0xFE : 0xFF);
                append(body, two ? length_to(total, body) : length_ff_to(total, body));
            }
        }
        body.resize(total);
        return body;
    }

    void overlap(kind what, const way& to, std::size_t size) {
        const reach lengths = size > 65536 ? reach::kThreeBytes : reach::kTwoBytes;
        const std::size_t copy = size_of_copy(to, lengths);
        const std::size_t count = size / copy;
        SCOPED_TRACE(std::string(to.name) + ", " + std::to_string(count) + " times");
        const bytes body = overlapping(to, count, lengths);
        const work done = of(what, body);
        expect_within_budget(done, body.size());

        if (to.tags.size() == 1) {  // nothing overlaps
            EXPECT_EQ(done.scopes, count + 1);
            return;
        }
        // What it comes to by the letter: each innermost element holds all copies behind it, and the tail;
        // the outermost ones end before the tail.
        const std::size_t pairs = count * (count - 1) / 2;
        const std::size_t scopes = count * to.tags.size() + (walked(to) ? pairs + count : 0) + 1;
        const std::size_t text = to.content == kText     ? pairs * copy + count * kTail
                                 : to.content == kTokens ? pairs * (copy - 2)
                                                         : 0;
        if (text > 4 * body.size() + 65536) {
            expect_used_up(kStringBytes, done, body.size());
        } else if (scopes > 2 * body.size() + 4096) {
            expect_used_up(kScopes, done, body.size());
        } else {
            EXPECT_FALSE(done.exhausted);
            EXPECT_EQ(done.scopes, scopes);
            // The last tokens claim too few bytes to be passed over.
            EXPECT_LE(done.string_bytes, text + (to.content == kNothing ? 255 * 255 : 0));
            EXPECT_GE(done.string_bytes, text);
        }
        // In 64 kB everything that grows with the square of the body has come to its end.
        if (size >= 65536) {
            EXPECT_EQ(done.exhausted, walked(to) || to.content == kText);
        }
    }

    template <std::size_t kWays>
    void overlap_all(kind what, const way (&ways)[kWays]) {
        for (const std::size_t size : kSizes) {
            if (size > kLargest) break;
            for (const way& to : ways)
                overlap(what, to, size);
        }
    }
};

TEST_F(OverlappingFarLengths, OfProgrammeInformationStayWithinTheBudget) {
    overlap_all(kProgrammeInformation, kProgrammeWays);
}

TEST_F(OverlappingFarLengths, OfServiceInformationStayWithinTheBudget) {
    overlap_all(kServiceInformation, kServiceWays);
}

}  // namespace
