// Any bytes: no crash, no byte outside, work and result bounded by the size.
#include <random>

#include "tests/tools/spi/decoded.h"

namespace {

sb::bytes sample() {
    sb::schedule_data schedule;
    schedule.scope = sb::service_id{0xE0, 0x10C1, 0x1A01, 0};
    sb::programme_data programme;
    programme.name = {"Short", "Medium", "\x01 Long"};
    programme.start = {sb::mjd(2026, 3, 10), 6, 0, -2, sb::utc_fraction{1, 2}};
    programme.duration = 5400;
    programme.short_id = 0x010203;
    programme.bearers = {{0xE0, 0x10C1, 0xE0D00001, 2}};
    schedule.programmes = {programme, programme};
    return sb::pi_object({schedule}, {{1, "News"}});
}

// Nodes lie inside their parents, one behind the other, and there are no more than bytes.
void expect_sound(const so::object& read, std::size_t size) {
    std::size_t nodes = 0;
    std::size_t text = 0;
    so::visit(read, [&](const so::node& each, const std::vector<const so::node*>& above) {
        ++nodes;
        const std::uint32_t limit = above.empty() ? static_cast<std::uint32_t>(size) : above.back()->end();
        const std::uint32_t from = above.empty() ? 0 : above.back()->content();
        ASSERT_GE(each.offset, from);
        ASSERT_LE(each.end(), limit);
        std::uint32_t at = each.content();
        for (const so::node& child : each.children) {
            ASSERT_EQ(child.offset, at) << "children leave no gap";
            at = child.end();
        }
        if (const auto* value = std::get_if<so::text_value>(&each.decoded)) text += value->text.size();
    });
    ASSERT_LE(nodes, size);
    ASSERT_LE(text, 17 * size + 65536);
    std::size_t problems = 0;
    for (const so::problem_at& each : so::problems_of(read)) {
        ASSERT_LE(each.what->offset, size);
        ASSERT_FALSE(each.what->text.empty());
        ++problems;
    }
    ASSERT_EQ(problems + read.omitted, read.malformed + read.remarks);
}

TEST(DecodeHostileBytes, EveryCutOfAnObjectIsMalformedAndSound) {
    const sb::bytes whole = sample();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const so::object read = so::decode(sb::cut(whole, size));
        EXPECT_FALSE(read.well_formed()) << size;
        expect_sound(read, size);
    }
    EXPECT_TRUE(so::decode(whole).well_formed());
}

TEST(DecodeHostileBytes, EveryChangedByteIsTaken) {
    const sb::bytes whole = sample();
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFD, 0xFE, 0xFF}) {
            sb::bytes changed = whole;
            changed[at] = static_cast<std::uint8_t>(value);
            expect_sound(so::decode(changed), changed.size());
        }
    }
}

TEST(DecodeHostileBytes, RandomBytesAreTaken) {
    std::mt19937 random(20260310);
    for (int round = 0; round < 3000; ++round) {
        sb::bytes body(random() % 300);
        for (auto& byte : body)
            byte = static_cast<std::uint8_t>(random() % 4 == 0 ? random() % 256 : random() % 0x40);
        if (!body.empty() && round % 2 == 0) body[0] = static_cast<std::uint8_t>(2 + random() % 2);
        expect_sound(so::decode(body), body.size());
    }
}

TEST(DecodeHostileBytes, OverlappingLengthsAreReadOnce) {
    // Each element claims all that is left of the object; a receiver's walk goes back and forth.
    sb::bytes body;
    while (body.size() + 8 < 65536) {
        const std::size_t left = 65536 - body.size();
        const auto high = [left](std::size_t used) { return static_cast<std::uint8_t>((left - used) >> 8); };
        const auto low = [left](std::size_t used) { return static_cast<std::uint8_t>(left - used); };
        body = sb::join({body, {0x02, 0x06, 0x21, 0xFE, high(6), low(6), 0x1C, 0x06}});
    }
    expect_sound(so::decode(body), body.size());
}

TEST(DecodeHostileBytes, MillionsOfElementsEndAtALimit) {
    sb::bytes body(600000, 0x00);
    for (std::size_t i = 0; i < body.size(); i += 2)
        body[i] = 0x7A;
    const so::object read = so::decode(sb::elem(0x02, body));
    EXPECT_EQ(read.tops.front().children.size(), 249999U);
    EXPECT_EQ(read.problems.front().code, so::problem_code::too_many_elements);
}

}  // namespace
