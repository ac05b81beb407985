// What a programme guide is read from.
#include "tools/guide/guide_input.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "testkit/spi_builder_objects.h"
#include "tests/tools/files/files.h"

namespace {

namespace sb = spi_builder;
using dabspi::guide::guide_input;
using dabspi::guide::read_guide;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const char* const kDocument = R"(<?xml version="1.0"?>
<epg xmlns="http://www.worlddab.org/schemas/spi"><schedule>
<scope startTime="2026-03-10T00:00:00+01:00" stopTime="2026-03-11T00:00:00+01:00">
<serviceScope id="dab:ce1.c185.c221.0"/></scope>
<programme shortId="1"><mediumName>Written</mediumName>
<location><time time="2026-03-10T07:00:00+01:00" duration="PT1H"/></location></programme>
</schedule></epg>)";

std::string schedule_object() {
    sb::schedule_data data;
    data.scope = sb::service_id{0xE1, 0xC185, 0xC221, 0};
    data.programmes = {{{"", "Broadcast", ""}, sb::local_time(61109, 8, 0, 2), 3600, {}, {}}};
    const sb::bytes made = sb::pi_object({data});
    return {made.begin(), made.end()};
}

std::vector<std::string> programmes_of(const guide_input& read) {
    EXPECT_THAT(read.errors, IsEmpty());
    std::vector<std::string> names;
    for (const auto& service : read.guide.services)
        for (const auto& each : service.programmes)
            names.push_back(name_of(each));
    return names;
}

TEST(GuideInput, IsADocumentAnObjectOrBothTogether) {
    const temporary_directory files;
    const std::string document = write_file(files, "pi.xml", kDocument);
    const std::string object = write_file(files, "pi.bin", schedule_object());
    EXPECT_THAT(programmes_of(read_guide({document}, {})), ElementsAre("Written"));
    EXPECT_THAT(programmes_of(read_guide({object}, {})), ElementsAre("Broadcast"));
    EXPECT_THAT(programmes_of(read_guide({object, document}, {})), ElementsAre("Written", "Broadcast"));
}

TEST(GuideInput, IsAFolderOrARecording) {
    const temporary_directory files;
    write_file(files, "pi.bin", schedule_object());
    EXPECT_THAT(programmes_of(read_guide({files.path().string()}, {})), ElementsAre("Broadcast"));
    const std::string recording = write_file(
        files, "day.jsonl",
        "{\"call\":\"FeedMotBody\",\"content_type\":7,\"content_subtype\":1,\"content_name\":\"a\","
        "\"sid\":1,\"file\":\"pi.bin\"}\n");
    EXPECT_THAT(programmes_of(read_guide({recording}, {})), ElementsAre("Broadcast"));
}

TEST(GuideInput, SaysWhatCannotBeUsed) {
    const temporary_directory files;
    const std::string bad = write_file(files, "pi.xml", "<epg><schedule></epg>");
    EXPECT_THAT(read_guide({bad}, {}).errors, ElementsAre(HasSubstr("pi.xml:1:")));
    EXPECT_THAT(read_guide({files.path().string() + "/none"}, {}).errors,
                ElementsAre(HasSubstr("none: cannot open")));
}

TEST(GuideInput, CodesTheLocalTimeOfDocuments) {
    const temporary_directory files;
    std::string text = kDocument;
    text.replace(text.find("2026-03-10T07:00:00+01:00"), 25, "2026-03-10T06:00:00Z");
    const std::string document = write_file(files, "pi.xml", text);
    dabspi::guide::guide_settings settings;
    settings.local = dabspi::local_offset::fixed("+01:00");
    EXPECT_EQ(read_guide({document}, settings).guide.services.at(0).programmes.at(0).offset, 2);
    EXPECT_EQ(read_guide({document}, {}).guide.services.at(0).programmes.at(0).offset, std::nullopt);
}

}  // namespace
