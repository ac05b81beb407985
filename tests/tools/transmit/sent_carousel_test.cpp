// Headers, directories, transport identifiers.
#include "tools/transmit/mot/sent_carousel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "testkit/carousel/mot_carousel.h"
#include "tests/tools/transmit/random_objects.h"
#include "tools/air/mot/mot_directory.h"

namespace {

using namespace dabspi::transmit;
using dabspi::air::read_directory;
namespace kit = carousel_kit;

sent_object object_named(const std::string& name, const bytes& body) {
    sent_object made;
    made.name = name;
    made.content_type = 7;
    made.content_subtype = 1;
    made.body = std::make_shared<const bytes>(body);
    return made;
}

std::uint16_t id_of(const sent_carousel& in, std::size_t object) {
    for (const sent_entity& each : in.entities)
        if (each.object == object) return each.transport_id;
    return 0;
}

bytes joined(const sent_entity& of) {
    constexpr std::size_t kInFront = 9;
    bytes all;
    for (const bytes& each : of.groups)
        all.insert(all.end(), each.begin() + kInFront, each.end() - 2);
    return all;
}

TEST(ParameterWriter, TakesTheShortestForm) {
    for (const std::size_t size : {0U, 1U, 2U, 4U, 5U, 127U, 128U, 300U}) {
        bytes made;
        append_parameter(made, 0x0C, bytes(size, 7));
        EXPECT_EQ(made, kit::parameter(0x0C, kit::bytes(size, 7))) << size;
    }
}

TEST(SentObject, HasAHeaderAsTheStandardHasIt) {
    sent_object object = object_named("w20260302dC221.EHB", bytes(300, 'x'));
    object.scope_id = {0x40, 0xE1, 0xC1, 0x85, 0xC2, 0x21};
    kit::object expected;
    expected.content_type = 7;
    expected.content_subtype = 1;
    expected.name = object.name;
    expected.body.assign(300, 'x');
    bytes version;
    append_number(version, version_of(*object.body), 4);
    expected.more_parameters = kit::parameter(0x0D, version);
    kit::append(expected.more_parameters, kit::parameter(0x27, object.scope_id));
    EXPECT_EQ(header_bytes(object, name_charset::utf_8), kit::header(expected));
}

TEST(SentObject, IsCompressedWhereThatHelpsAndOnlyThere) {
    sent_object text = object_named("text", bytes(300, 'x'));
    compress_where_it_helps(text);
    ASSERT_NE(text.packed, nullptr);
    EXPECT_LT(text.packed->size() + 2, text.body->size());
    sent_object noise = object_named("noise", {1, 7, 200, 13});
    compress_where_it_helps(noise);
    EXPECT_EQ(noise.packed, nullptr);
    EXPECT_EQ(noise.sent_body(), *noise.body);
}

TEST(SentObject, RefusesANameThatItsCharacterSetDoesNotHave) {
    EXPECT_THROW(header_bytes(object_named("☃", {1}), name_charset::ebu_latin), std::length_error);
    EXPECT_THROW(header_bytes(object_named(std::string(9000, 'n'), {1}), name_charset::utf_8),
                 std::length_error);
}

TEST(SentCarousel, ListsItsObjectsSortedByName) {
    carousel_maker maker({});
    const sent_carousel made =
        maker.make({object_named("b", {1}), object_named("c", {2}), object_named("a", {3})}, 240);
    ASSERT_EQ(made.entities.front().type, group_type::directory);
    dabspi::air::mot_directory read;
    const bytes directory = joined(made.entities.front());
    EXPECT_EQ(directory.size(), made.directory_size);
    ASSERT_TRUE(read_directory(directory, 100, read));
    EXPECT_EQ(read.period_tenths, 240U);
    EXPECT_EQ(read.segment_size, 505U);
    std::string names;
    for (const auto& each : read.entries)
        names += *each.header.name;
    EXPECT_EQ(names, "abc");
}

TEST(SentCarousel, HasBothFormsOfADirectoryUnderOneIdentifier) {
    carousel_settings settings;
    settings.directory = directory_form::both;
    const sent_carousel made = carousel_maker(settings).make({object_named("a", bytes(9, 'a'))});
    ASSERT_EQ(made.entities.size(), 3U);
    EXPECT_EQ(made.entities[0].type, group_type::directory);
    EXPECT_EQ(made.entities[1].type, group_type::compressed_directory);
    EXPECT_EQ(made.entities[0].transport_id, made.entities[1].transport_id);
}

TEST(SentCarousel, KeepsTheIdentifiersOfWhatIsUnchanged) {
    carousel_maker maker({});
    const std::vector<sent_object> before = {object_named("a", {1}), object_named("b", {2}),
                                             object_named("c", {3})};
    std::vector<sent_object> after = before;
    after[1] = object_named("b", {9});
    const sent_carousel first = maker.make(before);
    const sent_carousel second = maker.make(after);
    EXPECT_EQ(id_of(first, 0), id_of(second, 0));
    EXPECT_NE(id_of(first, 1), id_of(second, 1));
    EXPECT_EQ(id_of(first, 2), id_of(second, 2));
    EXPECT_NE(first.entities[0].transport_id, second.entities[0].transport_id);
    // A sender that is started again gives the same ones.
    EXPECT_EQ(id_of(carousel_maker({}).make(before), 2), id_of(first, 2));
    const sent_carousel third = maker.make(after);
    EXPECT_EQ(third.entities[0].transport_id, second.entities[0].transport_id);
}

TEST(TransportIds, AreNeverSharedNotEvenWithTheVersionBefore) {
    soak::dice dice(5);
    transport_ids ids;
    std::set<std::uint16_t> before;
    for (int version = 0; version < 50; ++version) {
        std::vector<transport_ids::entity> wanted;
        for (int i = 0; i < 300; ++i)
            wanted.push_back({std::to_string(version) + "/" + std::to_string(i),
                              static_cast<std::uint32_t>(dice.below(64))});
        const std::vector<std::uint16_t> given = ids.assign(wanted);
        std::set<std::uint16_t> all(given.begin(), given.end());
        EXPECT_EQ(all.size(), wanted.size());
        EXPECT_EQ(all.count(0), 0U);
        for (const std::uint16_t each : given)
            EXPECT_EQ(before.count(each), 0U);
        before = std::move(all);
    }
}

TEST(Segments, AreDataGroupsAsTheStandardHasThem) {
    const bytes entity(1200, 'e');
    std::vector<bytes> groups = segment_groups(group_type::body, 77, entity, 505);
    ASSERT_EQ(groups.size(), 3U);
    for (unsigned i = 0; i < 3; ++i) {
        finish_group(groups[i], 3 + i);
        kit::group_fields fields;
        fields.type = 4;
        fields.continuity = 3 + i;
        fields.repetition = 15;
        fields.last = i == 2;
        fields.number = i;
        fields.transport_id = 77;
        kit::bytes data;
        const std::size_t size = i == 2 ? 190 : 505;
        kit::append_u16(data, 7U << 13 | static_cast<unsigned>(size));
        data.insert(data.end(), size, 'e');
        EXPECT_EQ(groups[i], kit::data_group(fields, data)) << i;
    }
    EXPECT_EQ(segment_groups(group_type::body, 1, bytes{}, 505).size(), 1U);
    EXPECT_THROW(segment_groups(group_type::body, 1, bytes(40'000), 1), std::length_error);
}

TEST(Segments, OfTheUsualSizeFillPackets) {
    for (const std::size_t packet : {24U, 48U, 72U, 96U})
        EXPECT_EQ((usual_segment_size(packet) + kGroupOverhead) % (packet - 5), 0U);
}

}  // namespace
