// Token tables: a byte of a name may stand for 255. Well-formed objects may do that, so there is no limit but
// the factor itself.
#include "tests/worst_cases/costed.h"

namespace {

using namespace hostile;

class TokenTables : public Costed {};

const std::uint8_t kCodes[] = {0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08,
                               0x0B, 0x0C, 0x0E, 0x0F, 0x10, 0x11, 0x12, 0x13};

// All sixteen codes stand for 255 bytes each.
bytes longest_texts() {
    std::vector<std::pair<std::uint8_t, std::string>> entries;
    for (const std::uint8_t code : kCodes)
        entries.emplace_back(code, std::string(255, static_cast<char>('A' + code)));
    return token_table(entries);
}

bytes tokens_only(std::size_t count) {
    bytes name(count);
    for (std::size_t i = 0; i < count; ++i)
        name[i] = kCodes[i % std::size(kCodes)];
    return name;
}

TEST_F(TokenTables, MultiplyAProgrammesNameBy255AndItsMemoryWithIt) {
    for (const std::size_t size : kSizes) {
        const bytes body = join(
            {service_named_first(),
             elem(tag::epg, {longest_texts(),
                             elem(tag::schedule,
                                  {elem(tag::programme,
                                        {elem(tag::long_name, {elem(tag::text, tokens_only(size))})})})})});
        const cost all = cost_of("programme's name of tokens", kProgrammeInformation, body);
        EXPECT_EQ(all.done.text, 255 * size);
        EXPECT_EQ(all.done.string_bytes, 16 * 255 + size);
        expect_below(all, body.size(), {258, 10000}, {258, 10000});
    }
}

TEST_F(TokenTables, MultiplyAServicesNameAndItsUrlBy255AndTheirMemoryWithThem) {
    for (const std::size_t size : {1024U, 65536U, 524288U}) {
        const bytes media =
            elem(tag::media_description,
                 {elem(tag::multimedia, {attr(attribute::multimedia::url, tokens_only(size / 2))})});
        const bytes body =
            elem(tag::service_information,
                 {longest_texts(),
                  elem(tag::ensemble,
                       {elem(tag::service,
                             {elem(tag::medium_name, {elem(tag::text, tokens_only(size / 2))}), media})})});
        const cost all = cost_of("service's name and URL of tokens", kServiceInformation, body);
        EXPECT_EQ(all.done.text, 255 * size);
        expect_below(all, body.size(), {258, 20000}, {258, 20000});
    }
}

// Overlapping names of nothing but tokens: what is expanded has a budget of its own.
TEST_F(TokenTables, MakeNoMoreOfOverlappingNamesThanOfWellFormedOnes) {
    const bytes head = join({service_named_first(), elem(tag::epg, {longest_texts()})});
    for (const auto& [size, lengths] :
         {std::pair(kSizes[0], reach::kTwoBytes), std::pair(kSizes[1], reach::kTwoBytes),
          std::pair(kSizes[2], reach::kThreeBytes)}) {
        const bytes body = nested_names(size / size_of_nested_name(lengths), head, lengths);
        const cost all = cost_of("overlapping names with tokens", kProgrammeInformation, body);
        EXPECT_LE(all.done.string_bytes, 4 * body.size() + 65536);
        EXPECT_EQ(all.done.text, 255 * body.size() + 65536);  // all of it
        EXPECT_TRUE(all.done.exhausted);
        expect_below(all, body.size(), {256, 100000}, {256, 100000});
    }
}

// 256 codes, most of which no string asks for, of 255 bytes each, repeated: what is kept of them has an end.
TEST_F(TokenTables, OfAnyNumberOfDefinitionsKeepAtMostOneTextForEachCode) {
    std::vector<std::pair<std::uint8_t, std::string>> first;
    std::vector<std::pair<std::uint8_t, std::string>> again;
    for (unsigned code = 0; code < 256; ++code) {
        if (code == 0x7F) continue;  // reads as no tag
        first.emplace_back(static_cast<std::uint8_t>(code), std::string(255, 'a'));
        again.emplace_back(static_cast<std::uint8_t>(code), std::string(255, 'b'));
    }
    std::vector<bytes> tables{token_table(first)};
    for (int i = 0; i < 15; ++i)
        tables.push_back(token_table(again));
    tables.push_back(elem(
        tag::schedule, {elem(tag::programme, {elem(tag::long_name, {elem(tag::text, tokens_only(16))})})}));
    const bytes body = join({service_named_first(), elem(tag::epg, tables)});
    const cost all = cost_of("16 tables of 255 definitions", kProgrammeInformation, body);
    EXPECT_EQ(all.done.events, 1U);
    EXPECT_EQ(all.done.text, 16U * 255);
    expect_below(all, body.size(), {1.1, 200000}, {2.5, 200000});
}

TEST_F(TokenTables, KeepTheFirstOfRepeatedDefinitions) {
    const bytes body = join(
        {service_named_first(),
         elem(tag::epg,
              {token_table({{0x01, "first"}, {0x01, "second"}}),
               token_table({{0x01, "third"}, {0x02, "other"}}),
               elem(tag::schedule, {elem(tag::programme, {elem(tag::long_name, {text("\x01 \x02")})})})})});
    router.keep = true;
    events_of(1, body);
    ASSERT_EQ(router.kept.size(), 1U);
    EXPECT_EQ(payload_of<spi::pi_programme_event>(router.kept.front()).programme.name, "first other");
    router.kept.clear();
}

}  // namespace
