// The guide as XMLTV.
#include "tools/export/xmltv.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pugixml.hpp>
#include <set>

#include "tests/tools/export/example_guide.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

pugi::xml_document parsed(const dabspi::guide::programme_guide& guide) {
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(dabspi::xmltv_of(guide).c_str()));
    return document;
}

TEST(Xmltv, HasAChannelForEachService) {
    const pugi::xml_document document = parsed(example_guide::made());
    const pugi::xml_node tv = document.child("tv");
    const pugi::xml_node channel = tv.child("channel");
    EXPECT_FALSE(channel.next_sibling("channel")) << "a service that is on two ensembles is there once";
    EXPECT_STREQ(channel.attribute("id").value(), "0.c221.ce1.dab");
    EXPECT_STREQ(channel.child_value("display-name"), "Radio One");
    std::vector<std::string> icons;
    for (const pugi::xml_node each : channel.children("icon"))
        icons.emplace_back(each.attribute("src").value());
    EXPECT_THAT(icons, ElementsAre("data:image/png;base64,iVBORw==", "https://example.org/b.png"));
}

TEST(Xmltv, GivesLocalTimesWithTheirOffset) {
    const pugi::xml_document document = parsed(example_guide::made());
    std::vector<std::string> times;
    for (const pugi::xml_node each : document.child("tv").children("programme"))
        times.push_back(std::string(each.attribute("start").value()) + "/" + each.attribute("stop").value());
    EXPECT_THAT(times, ElementsAre("20260310070000 +0100/20260310080000 +0100",
                                   "20260310090000 +0100/20260310233000 +0100",  // until the next one
                                   "20260310233000 +0100/20260311013000 +0100",
                                   "20260311013000 +0100/20260311013100 +0100"));
}

TEST(Xmltv, HasTitleDescriptionCategoryAndIdentifier) {
    const pugi::xml_document document = parsed(example_guide::made());
    const pugi::xml_node first = document.child("tv").child("programme");
    EXPECT_STREQ(first.child_value("title"), "Jazz \"now\"");
    EXPECT_STREQ(first.child("title").attribute("lang").value(), "en");
    EXPECT_STREQ(first.child_value("desc"), "All about it & <more>");
    EXPECT_STREQ(first.child_value("category"), "Music: Jazz");
    EXPECT_STREQ(first.find_child_by_attribute("episode-num", "system", "crid").child_value(),
                 "crid://example.org/p1");
    EXPECT_STREQ(first.find_child_by_attribute("episode-num", "system", "dab-short-id").child_value(), "77");
    EXPECT_STREQ(first.next_sibling("programme").child_value("title"), "No title")
        << "the document type wants one";
}

// What the document type says of the order of elements; programs that validate refuse another one.
TEST(Xmltv, KeepsTheOrderOfTheDocumentType) {
    const std::vector<std::string> order = {"title",    "desc", "category", "keyword",
                                            "language", "icon", "url",      "episode-num"};
    const pugi::xml_document document = parsed(example_guide::made());
    std::set<std::string> seen;
    for (const pugi::xml_node programme : document.child("tv").children("programme")) {
        auto at = order.begin();
        for (const pugi::xml_node each : programme.children()) {
            seen.insert(each.name());
            at = std::find(at, order.end(), each.name());
            ASSERT_NE(at, order.end()) << each.name();
        }
    }
    EXPECT_TRUE(seen.count("episode-num") == 1 && seen.count("category") == 1);
}

TEST(Xmltv, NamesChannelsOfLongIdentifiersToo) {
    EXPECT_EQ(dabspi::xmltv_channel({0xE1, 0xE1C12345, 2}), "2.e1c12345.ce1.dab");
    EXPECT_EQ(dabspi::xmltv_channel({0xE0, 0x0A01, 0}), "0.0a01.0e0.dab");
}

TEST(Xmltv, HostileNamesStayTexts) {
    namespace sb = spi_builder;
    sb::schedule_data data;
    data.scope = example_guide::kOne;
    data.programmes = {{{"", "]]></title><x y='\x1B", ""}, sb::local_time(61109, 8, 0, 2), 60, {}, {}}};
    dabspi::guide::guide_reader reader;
    reader.add_object(example_guide::shared(sb::pi_object({data})), "", {});
    const auto guide = reader.finish();
    EXPECT_STREQ(parsed(guide).child("tv").child("programme").child_value("title"),
                 "]]></title><x y='\uFFFD");
    EXPECT_THAT(dabspi::xmltv_of(guide), testing::Not(HasSubstr("\x1B")));
}

}  // namespace
