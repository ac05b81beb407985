// The guide as XML documents for a web server.
#include "tools/export/spi_documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pugixml.hpp>

#include "tests/tools/export/example_guide.h"
#include "tools/encode/broadcast_object.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using files = std::map<std::string, std::string>;

files documents() {
    std::vector<std::string> said;
    return dabspi::spi_documents(example_guide::made(), said);
}

const std::string kToday = "radiodns/spi/3.1/dab/ce1/c185/c221/0/20260310_PI.xml";

TEST(SpiDocuments, AreLaidOutByServiceAndDay) {
    std::vector<std::string> names;
    for (const auto& [name, content] : documents())
        names.push_back(name);
    EXPECT_THAT(names, ElementsAre("logos/_logos_a.png", "radiodns/spi/3.1/SI.xml", kToday,
                                   "radiodns/spi/3.1/dab/ce1/c185/c221/0/20260311_PI.xml",
                                   "radiodns/spi/3.1/dab/ce1/c186/c221/0/20260310_PI.xml",
                                   "radiodns/spi/3.1/dab/ce1/c186/c221/0/20260311_PI.xml"));
}

TEST(SpiDocuments, HaveTheDaysProgrammesInFull) {
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(documents().at(kToday).c_str()));
    const pugi::xml_node schedule = document.child("epg").child("schedule");
    const pugi::xml_node scope = schedule.child("scope");
    EXPECT_STREQ(scope.attribute("startTime").value(), "2026-03-10T07:00:00+01:00");
    EXPECT_STREQ(scope.attribute("stopTime").value(), "2026-03-11T01:30:00+01:00");
    EXPECT_STREQ(scope.child("serviceScope").attribute("id").value(), "dab:ce1.c185.c221.0");
    const pugi::xml_node first = schedule.child("programme");
    EXPECT_STREQ(first.attribute("id").value(), "crid://example.org/p1");
    EXPECT_STREQ(first.attribute("xml:lang").value(), "en") << "the object's default language";
    EXPECT_STREQ(first.child_value("longName"), "Jazz \"now\"");
    EXPECT_STREQ(first.child("mediaDescription").child_value("longDescription"), "All about it & <more>");
    EXPECT_STREQ(first.child("genre").attribute("href").value(), "urn:tva:metadata:cs:ContentCS:2005:3.6.2");
    const auto programmes = schedule.children("programme");
    EXPECT_EQ(std::distance(programmes.begin(), programmes.end()), 3);
}

TEST(SpiDocuments, HaveAServiceOnceWithTheBearersOfAllEnsembles) {
    pugi::xml_document document;
    ASSERT_TRUE(document.load_string(documents().at("radiodns/spi/3.1/SI.xml").c_str()));
    const pugi::xml_node service = document.child("serviceInformation").child("services").child("service");
    EXPECT_FALSE(service.next_sibling("service"));
    EXPECT_STREQ(service.child_value("mediumName"), "Radio One");
    EXPECT_TRUE(service.find_child_by_attribute("bearer", "id", "dab:ce1.c185.c221.0"));
    EXPECT_TRUE(service.find_child_by_attribute("bearer", "id", "dab:ce1.c186.c221.0"));
}

TEST(SpiDocuments, CanBeEncodedAgain) {
    for (const auto& [name, content] : documents()) {
        if (name.find(".xml") == std::string::npos) continue;
        const dabspi::encoded_document again =
            dabspi::encode_document(dabspi::xml_source(std::string(content)), {});
        EXPECT_THAT(again.errors, IsEmpty()) << name;
        EXPECT_FALSE(again.objects.empty()) << name;
    }
}

TEST(SpiDocuments, PicturesStayInTheirFolder) {
    std::vector<std::string> said;
    const files made = dabspi::spi_documents(example_guide::made(), said);
    EXPECT_EQ(made.at("logos/_logos_a.png"), "\x89PNG");
    EXPECT_THAT(said, ElementsAre(HasSubstr("\"../logos/a.png\" is in the file logos/_logos_a.png")));
}

}  // namespace
