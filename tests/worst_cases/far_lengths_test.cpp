// Lengths that point far beyond the body, in each element that is read: bytes that do not exist cost nothing,
// and those that exist are walked once.
#include "tests/worst_cases/costed.h"

namespace {

using namespace hostile;

// The way to each handler, from the outside in.
struct way {
    const char* name;
    bytes tags;
};

const way kProgrammeWays[] = {
    {"epg", {0x02}},
    {"token table", {0x02, 0x04}},
    {"token", {0x02, 0x04, 0x01}},
    {"default content ID", {0x02, 0x05}},
    {"schedule", {0x02, 0x21}},
    {"scope", {0x02, 0x21, 0x24}},
    {"start time of a scope", {0x02, 0x21, 0x24, 0x80}},
    {"service scope", {0x02, 0x21, 0x24, 0x25}},
    {"identifier of a service scope", {0x02, 0x21, 0x24, 0x25, 0x80}},
    {"programme", {0x02, 0x21, 0x1C}},
    {"short identifier", {0x02, 0x21, 0x1C, 0x81}},
    {"medium name", {0x02, 0x21, 0x1C, 0x11}},
    {"long name", {0x02, 0x21, 0x1C, 0x12}},
    {"text of a name", {0x02, 0x21, 0x1C, 0x12, 0x01}},
    {"location", {0x02, 0x21, 0x1C, 0x19}},
    {"time", {0x02, 0x21, 0x1C, 0x19, 0x2C}},
    {"time's time", {0x02, 0x21, 0x1C, 0x19, 0x2C, 0x80}},
    {"time's duration", {0x02, 0x21, 0x1C, 0x19, 0x2C, 0x81}},
    {"bearer", {0x02, 0x21, 0x1C, 0x19, 0x2D}},
    {"bearer's identifier", {0x02, 0x21, 0x1C, 0x19, 0x2D, 0x80}},
};
const way kServiceWays[] = {
    {"service information", {0x03}},
    {"token table", {0x03, 0x04}},
    {"token", {0x03, 0x04, 0x01}},
    {"ensemble", {0x03, 0x26}},
    {"service", {0x03, 0x26, 0x28}},
    {"short name", {0x03, 0x26, 0x28, 0x10}},
    {"medium name", {0x03, 0x26, 0x28, 0x11}},
    {"text of a name", {0x03, 0x26, 0x28, 0x11, 0x01}},
    {"bearer", {0x03, 0x26, 0x28, 0x29}},
    {"bearer's identifier", {0x03, 0x26, 0x28, 0x29, 0x80}},
    {"media description", {0x03, 0x26, 0x28, 0x13}},
    {"multimedia", {0x03, 0x26, 0x28, 0x13, 0x2B}},
    {"MIME type", {0x03, 0x26, 0x28, 0x13, 0x2B, 0x80}},
    {"URL", {0x03, 0x26, 0x28, 0x13, 0x2B, 0x82}},
    {"type", {0x03, 0x26, 0x28, 0x13, 0x2B, 0x83}},
    {"width", {0x03, 0x26, 0x28, 0x13, 0x2B, 0x84}},
    {"height", {0x03, 0x26, 0x28, 0x13, 0x2B, 0x85}},
};

// Far beyond any body here: 65,535 and 16,777,215 bytes.
const bytes kFarLengths[] = {{0xFE, 0xFF, 0xFF}, {0xFF, 0xFF, 0xFF, 0xFF}};
constexpr std::size_t kRest = 4000;

class FarLengths : public Costed {
 protected:
    work of(kind what, const bytes& body) { return what == kServiceInformation ? of_si(body) : of_pi(body); }

    // Each element on the way claims as far as it can, then come bytes of one value, all of them in turn.
    void walk(kind what, const way& to) {
        for (const bytes& far : kFarLengths) {
            for (unsigned value = 0; value < 256; ++value) {
                bytes body;
                for (const std::uint8_t tag : to.tags)
                    append(body, join({u8(tag), far}));
                body.resize(body.size() + kRest, static_cast<std::uint8_t>(value));
                const work done = of(what, body);
                ASSERT_LE(done.scopes, body.size()) << to.name << ", then " << value;
                ASSERT_LE(done.string_bytes, body.size()) << to.name << ", then " << value;
                ASSERT_LE(done.events + done.logos, body.size());
                ASSERT_LE(done.text, body.size());
            }
        }
    }

    // `count` times the way: the outermost element claims the copy itself, the inner ones all that follows,
    // so that each copy is read again inside the copies in front of it.
    static bytes overlapping(const way& to, std::size_t count) {
        const std::size_t inner = 4 * (to.tags.size() - 1);
        const std::size_t total = count * (2 + inner);
        bytes body;
        for (std::size_t i = 0; i < count; ++i) {
            append(body, {to.tags[0], static_cast<std::uint8_t>(inner)});
            for (std::size_t depth = 1; depth < to.tags.size(); ++depth) {
                append(body, {to.tags[depth], 0xFE});
                append(body, length_to(total, body));
            }
        }
        return body;
    }

    void overlap(kind what, const way& to) {
        for (const std::size_t size : {1024U, 65536U}) {
            const bytes body = overlapping(to, size / (2 + 4 * (to.tags.size() - 1)));
            const work done = of(what, body);
            SCOPED_TRACE(to.name);
            expect_within_budget(done, body.size());
        }
    }
};

TEST_F(FarLengths, OfProgrammeInformationCostNoMoreThanTheBodysBytes) {
    for (const way& to : kProgrammeWays)
        walk(kProgrammeInformation, to);
}

TEST_F(FarLengths, OfServiceInformationCostNoMoreThanTheBodysBytes) {
    for (const way& to : kServiceWays)
        walk(kServiceInformation, to);
}

TEST_F(FarLengths, ThatOverlapInProgrammeInformationStayWithinTheBudget) {
    for (const way& to : kProgrammeWays)
        overlap(kProgrammeInformation, to);
}

TEST_F(FarLengths, ThatOverlapInServiceInformationStayWithinTheBudget) {
    for (const way& to : kServiceWays)
        overlap(kServiceInformation, to);
}

}  // namespace
