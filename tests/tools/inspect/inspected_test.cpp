// Files, recordings and folders.
#include "tools/inspect/inspected.h"

#include "tests/tools/files/files.h"
#include "tests/tools/inspect/reports.h"

namespace {

using namespace dabspi;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const char* const kService = R"({"call":"SetCurrentService","sid":1,"ensemble":"0xC185"})"
                             "\n";
const char* const kObject =
    R"({"call":"FeedMotBody","content_type":7,"content_subtype":1,"content_name":"a","sid":1,"body":"AgA="})"
    "\n";
const char* const kOther =
    R"({"call":"FeedMotBody","content_type":7,"content_subtype":1,"content_name":"a","sid":1,"body":"AgIGAA=="})"
    "\n";
const char* const kImage =
    R"({"call":"FeedMotBody","content_type":2,"content_subtype":3,"content_name":"i","sid":1,"body":"AAAA"})"
    "\n";
const char* const kText =
    R"({"call":"FeedMotBody","content_type":1,"content_subtype":0,"content_name":"t","sid":1,"body":"AAAA"})"
    "\n";

gathered gather_text(const std::string& text, const std::vector<std::size_t>& lines = {}) {
    gathered result;
    gather_options options;
    options.lines = lines;
    gather_recording(parse_recording(text, "r.jsonl", ""), options, result);
    return result;
}

std::vector<std::string> locations(const gathered& in) {
    std::vector<std::string> all;
    for (const inspected_body& each : in.bodies)
        all.push_back(each.location());
    return all;
}

TEST(GatherRecording, RepeatedBodiesAreOne) {
    const gathered found = gather_text(std::string(kObject) + kObject + kOther + kObject);
    EXPECT_THAT(locations(found), ElementsAre("r.jsonl:1", "r.jsonl:3"));
    EXPECT_THAT(found.bodies[0].lines, ElementsAre(1U, 2U, 4U));
    EXPECT_THAT(found.errors, IsEmpty());
}

TEST(GatherRecording, TheSameBodyUnderAnotherEnsembleIsAnother) {
    const gathered found = gather_text(std::string(kObject) + kService + kObject);
    ASSERT_EQ(found.bodies.size(), 2U);
    EXPECT_EQ(found.bodies[0].ensemble, std::nullopt);
    EXPECT_EQ(found.bodies[1].ensemble, std::uint16_t{0xC185});
}

TEST(GatherRecording, ContentTypesTellTheKind) {
    const gathered found = gather_text(std::string(kObject) + kImage + kText);
    EXPECT_EQ(found.bodies[0].kind, body_kind::spi_object);
    EXPECT_EQ(found.bodies[1].kind, body_kind::image);
    EXPECT_EQ(found.bodies[2].kind, body_kind::other);
    EXPECT_EQ(found.bodies[2].what, "of ContentType 1");
}

TEST(GatherRecording, LinesCanBeChosen) {
    const gathered found = gather_text(std::string(kService) + kObject + kOther, {3});
    EXPECT_THAT(locations(found), ElementsAre("r.jsonl:3"));
    EXPECT_EQ(found.bodies[0].ensemble, std::uint16_t{0xC185});
}

TEST(GatherRecording, LinesWithoutABodyAreErrors) {
    EXPECT_THAT(gather_text(std::string(kService) + kObject, {1, 9}).errors,
                ElementsAre("r.jsonl:1: there is no FeedMotBody on this line",
                            "r.jsonl:9: there is no FeedMotBody on this line"));
}

TEST(GatherRecording, WhatIsGoodInABadRecordingIsThere) {
    const gathered found = gather_text(std::string(kObject) + "{\n" + kOther);
    EXPECT_EQ(found.bodies.size(), 2U);
    ASSERT_EQ(found.errors.size(), 1U);
    EXPECT_THAT(found.errors[0], testing::StartsWith("r.jsonl:2: "));
}

TEST(LooksLikeRecording, ByTheFirstByteThatIsNoBlank) {
    const auto looks = [](const std::string& text) {
        return looks_like_recording(bytes(text.begin(), text.end()));
    };
    EXPECT_TRUE(looks("{}"));
    EXPECT_TRUE(looks("\n\t # a comment"));
    EXPECT_TRUE(looks("\xEF\xBB\xBF{}"));
    EXPECT_FALSE(looks(""));
    EXPECT_FALSE(looks("\x02{}"));
}

class GatherFiles : public testing::Test {
 protected:
    gathered gather_all(const std::vector<std::string>& names, const std::vector<std::size_t>& lines = {}) {
        gather_options options;
        options.lines = lines;
        return gather(names, options);
    }
    std::string only_error(const std::string& name, const std::string& content) {
        const gathered found = gather_all({write_file(files_, name, content)});
        EXPECT_EQ(found.errors.size(), 1U);
        EXPECT_THAT(found.bodies, IsEmpty());
        return found.errors.empty() ? "" : found.errors[0];
    }
    temporary_directory files_;
};

TEST_F(GatherFiles, ObjectsImagesAndRecordingsAreRecognised) {
    const gathered found = gather_all(
        {write_file(files_, "a", "\x02\x01 "), write_file(files_, "b", std::string("\x89PNG\r\n\x1A\n")),
         write_file(files_, "c", kObject), write_file(files_, "d", "\x09nothing\x01known")});
    ASSERT_EQ(found.bodies.size(), 4U);
    EXPECT_EQ(found.bodies[0].kind, body_kind::spi_object);
    EXPECT_EQ(found.bodies[1].kind, body_kind::image);
    EXPECT_THAT(found.bodies[2].lines, ElementsAre(1U));
    EXPECT_EQ(found.bodies[3].kind, body_kind::spi_object) << "what is named is meant to be an object";
}

TEST_F(GatherFiles, WhatIsPlainlySomethingElseIsRefused) {
    EXPECT_THAT(
        only_error("a.xml", "<?xml?>"),
        HasSubstr("a.xml: this is no binary SPI object: it is an XML document; \"dabspi encode\" takes it"));
    EXPECT_THAT(only_error("a.gz", "\x1F\x8B\x08"),
                HasSubstr("this is no binary SPI object: it is compressed with gzip; unpack it first"));
}

TEST_F(GatherFiles, WhatCannotBeReadIsAnError) {
    const gathered found = gather_all({(files_.path() / "none").string()});
    ASSERT_EQ(found.errors.size(), 1U);
    EXPECT_THAT(found.errors[0], HasSubstr("none: cannot open it: No such file or directory"));
}

TEST_F(GatherFiles, LinesAreForRecordings) {
    const gathered found = gather_all({write_file(files_, "a", "\x02\x01 ")}, {1});
    ASSERT_EQ(found.errors.size(), 1U);
    EXPECT_THAT(found.errors[0], HasSubstr("a: it is no recording, and has no lines to choose from"));
}

TEST_F(GatherFiles, FoldersAreReadWholeAndInOrder) {
    write_file(files_, "dump/z.bin", "\x02\x01 ");
    write_file(files_, "dump/1/b.png", "\x89PNG\r\n\x1A\n");
    write_file(files_, "dump/1/a.bin", "\x03\x01 ");
    write_file(files_, "dump/notes.txt", "hello");
    write_file(files_, "dump/r.jsonl", kObject);
    std::size_t last = 0;
    const gathered found =
        gather({(files_.path() / "dump").string()}, {}, [&last](std::size_t read) { last = read; });
    EXPECT_EQ(last, 5U);
    ASSERT_EQ(found.bodies.size(), 5U);
    EXPECT_THAT(found.bodies[0].source, testing::EndsWith("dump/1/a.bin"));
    EXPECT_EQ(found.bodies[1].kind, body_kind::image);
    EXPECT_EQ(found.bodies[2].what, "a text");
    EXPECT_EQ(found.bodies[3].what, "a call recording (JSON Lines)");
    EXPECT_EQ(found.bodies[4].kind, body_kind::spi_object);
    EXPECT_THAT(found.errors, IsEmpty());
}

TEST_F(GatherFiles, AnEmptyFolderIsAnError) {
    std::filesystem::create_directory(files_.path() / "empty");
    EXPECT_THAT(gather_all({(files_.path() / "empty").string()}).errors,
                ElementsAre(HasSubstr("empty: there is no file in the folder")));
}

}  // namespace
