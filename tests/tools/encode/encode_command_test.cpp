// dabspi encode as a user runs it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "tests/tools/command_line/run_command.h"
#include "tests/tools/files/files.h"

namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string kNamespace = "http://www.worlddab.org/schemas/spi/31";

std::string day(const std::string& programmes) {
    return "<epg xmlns='" + kNamespace +
           "'><schedule><scope startTime='2026-03-02T00:00:00+01:00' stopTime='2026-03-03T00:00:00+01:00'>"
           "<serviceScope id='dab:ce1.c185.c221.0'/></scope>" +
           programmes + "</schedule></epg>";
}

std::string titled(const std::string& name) {
    return "<programme><longName>" + name + "</longName></programme>";
}

std::string two_ensembles() {
    return "<serviceInformation xmlns='" + kNamespace +
           "'><services><service><bearer id='dab:ce1.c185.c221.0' cost='1'/><bearer "
           "id='dab:ce1.c186.c221.0'/>"
           "<bearer id='fm:ce1.c221.09580'/></service></services></serviceInformation>";
}

class EncodeCommand : public testing::Test {
 protected:
    finished_command encode(const std::vector<std::string>& more) {
        command_input input{{"encode"}};
        input.arguments.insert(input.arguments.end(), more.begin(), more.end());
        input.directory = files_.path().string();
        input.standard_input = standard_input_;
        return run_dabspi(input);
    }

    std::vector<std::string> files_made() const {
        std::vector<std::string> names;
        for (const auto& each : fs::recursive_directory_iterator(files_.path()))
            if (each.is_regular_file() && each.path().extension() != ".xml")
                names.push_back(each.path().lexically_relative(files_.path()).string());
        std::sort(names.begin(), names.end());
        return names;
    }

    temporary_directory files_;
    std::string standard_input_;
};

TEST_F(EncodeCommand, WritesTheObjectUnderItsContentNameAndPrintsATable) {
    write_file(files_, "pi.xml", day(titled("News")));
    const finished_command end = encode({"pi.xml"});
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_EQ(end.out,
              "FILE                CONTENT NAME        TYPE  BYTES\n"
              "w20260302dC221.EHB  w20260302dC221.EHB   7/1     40\n");
    EXPECT_EQ(end.err, "");
    EXPECT_THAT(files_made(), ElementsAre("w20260302dC221.EHB"));
    EXPECT_EQ(read_file((files_.path() / "w20260302dC221.EHB").string()).size(), 40u);
}

TEST_F(EncodeCommand, WritesAnObjectForEachEnsembleIntoADirectoryThatItMakes) {
    write_file(files_, "si.xml", two_ensembles());
    const finished_command end = encode({"--directory", "a/b", "si.xml"});
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_EQ(end.err,
              "dabspi: si.xml: left out: attributes that have no coding (1), bearers of other domains (1); "
              "--verbose lists them\n");
    EXPECT_THAT(files_made(), ElementsAre("a/b/dC185.EHS", "a/b/dC186.EHS"));
}

TEST_F(EncodeCommand, ListsWhatWasLeftOut) {
    write_file(files_, "si.xml", two_ensembles());
    const std::string err = encode({"--verbose", "si.xml"}).err;
    EXPECT_THAT(err,
                HasSubstr("serviceInformation/services/service/bearer/@cost: has no coding; left out\n"));
    EXPECT_THAT(err, HasSubstr("bearer/@id: \"fm:ce1.c221.09580\" is not of the DAB domain; left out\n"));
}

TEST_F(EncodeCommand, OneEnsembleCanBeChosenAndNamed) {
    write_file(files_, "si.xml", two_ensembles());
    EXPECT_EQ(encode({"--ensemble", "e1.c186", "--output", "x.bin", "--name", "si/now", "si.xml"}).status, 0);
    EXPECT_THAT(files_made(), ElementsAre("x.bin"));
}

TEST_F(EncodeCommand, OneNameForSeveralObjectsIsRefused) {
    write_file(files_, "si.xml", two_ensembles());
    const finished_command end = encode({"--output", "x.bin", "si.xml"});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(
        end.err,
        HasSubstr("dabspi: --output and --name are for one object, and there are 2: dC185.EHS (e1.c185), "
                  "dC186.EHS (e1.c186); choose with --ensemble, or use --directory\n"));
    EXPECT_THAT(files_made(), IsEmpty());
}

TEST_F(EncodeCommand, ObjectsOfOneNameAreNumbered) {
    write_file(files_, "a.xml", day(""));
    write_file(files_, "b.xml", day(titled("x")));
    write_file(files_, "c.xml", day(titled("y")));
    const finished_command end = encode({"a.xml", "b.xml", "c.xml"});
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.err,
              "dabspi: w20260302dC221.EHB is the usual name of 3 objects; the others are named "
              "w20260302dC221-2.EHB, w20260302dC221-3.EHB\n");
    EXPECT_THAT(files_made(),
                ElementsAre("w20260302dC221-2.EHB", "w20260302dC221-3.EHB", "w20260302dC221.EHB"));
}

TEST_F(EncodeCommand, ConversionsAreCountedAndListedOnDemand) {
    write_file(files_, "pi.xml", day("<programme><link url='a'/><link url='b'/></programme>"));
    EXPECT_EQ(encode({"pi.xml"}).err,
              "dabspi: pi.xml: converted: <link url> as uri (2); --verbose lists them\n");
    EXPECT_THAT(encode({"--verbose", "pi.xml"}).err,
                HasSubstr("epg/schedule/programme/link/@url: is taken as uri\n"));
}

TEST_F(EncodeCommand, AnEmptyShellIsNoSuccess) {
    write_file(files_, "pi.xml", day("<programme><location><time time='tomorrow'/></location></programme>"));
    const finished_command end = encode({"--lenient", "pi.xml"});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.err, HasSubstr("no <programme> of 1 kept its <time>"));
    EXPECT_THAT(files_made(), IsEmpty());
    EXPECT_THAT(encode({"pi.xml"}).err, HasSubstr("dabspi: nothing was written\n"))
        << "lenient does not help";
}

TEST_F(EncodeCommand, LocalTimeIsGivenByOffsetOrZone) {
    write_file(files_, "pi.xml",
               day("<programme><location><time time='2026-07-10T06:00:00Z'/></location></programme>"));
    EXPECT_THAT(encode({"pi.xml"}).err,
                HasSubstr("1 time in UTC, without an offset: receivers show UTC plus"));
    EXPECT_THAT(encode({"--offset", "+01:00", "pi.xml"}).err,
                HasSubstr("converted: times in UTC with the offset of local time (1)"));
    EXPECT_EQ(encode({"--offset", "1", "pi.xml"}).status, 2);
    EXPECT_EQ(encode({"--offset", "+01:00", "--zone", "UTC", "pi.xml"}).status, 2);
    EXPECT_THAT(encode({"--zone", "Nowhere/Land", "pi.xml"}).err,
                HasSubstr("\"Nowhere/Land\" is no time zone"));
}

TEST_F(EncodeCommand, WithoutZoneDataTheRemedyIsSaid) {
    write_file(files_, "pi.xml", day(""));
    const finished_command end = run_dabspi({{"encode", "--zone", "Europe/London", "pi.xml"},
                                             "",
                                             files_.path().string(),
                                             {{"TZDIR", files_.path().string()}}});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.err, HasSubstr("there is no time zone data in "));
    EXPECT_THAT(end.err, HasSubstr("install the package tzdata, or give --offset +01:00 instead"));
}

TEST_F(EncodeCommand, TheServiceOfProgrammesThatNameNoneIsGiven) {
    write_file(files_, "pi.xml",
               "<epg xmlns='" + kNamespace + "'><schedule>" + titled("x") + "</schedule></epg>");
    EXPECT_THAT(encode({"pi.xml"}).err,
                HasSubstr("no service is named: receivers keep none of the programmes"));
    EXPECT_EQ(encode({"--service", "e1.ce15.c221.0", "pi.xml"}).status, 0);
    EXPECT_THAT(files_made(), testing::Contains("dC221.EHB"));
    EXPECT_EQ(encode({"--service", "x", "pi.xml"}).status, 2);
}

TEST_F(EncodeCommand, ANameThatIsNoFileNameNeedsAnOutput) {
    write_file(files_, "a.xml", day(""));
    const finished_command end = encode({"--name", "pi/today", "a.xml"});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(
        end.err,
        HasSubstr(
            "dabspi: the name \"pi/today\" is no file name; say with --output where the object goes\n"));
}

TEST_F(EncodeCommand, ErrorsHaveTheirPlaceAndNothingIsWritten) {
    write_file(files_, "good.xml", day(""));
    write_file(files_, "bad.xml", "<epg xmlns='" + kNamespace + "'>\n  <schedule version='x'/></epg>");
    const finished_command end = encode({"good.xml", "bad.xml"});
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.out, "");
    EXPECT_EQ(end.err,
              "dabspi: bad.xml:2:13: epg/schedule/@version: \"x\" is no whole number from 0 to 65535\n"
              "dabspi: nothing was written; --lenient codes what can be coded\n");
    EXPECT_THAT(files_made(), IsEmpty());
}

TEST_F(EncodeCommand, LenientlyTheSameIsAWarning) {
    write_file(files_, "bad.xml", "<epg xmlns='" + kNamespace + "'>\n  <schedule version='x'/></epg>");
    const finished_command end = encode({"--lenient", "bad.xml"});
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(
        end.err,
        "dabspi: bad.xml:2:13: epg/schedule/@version: \"x\" is no whole number from 0 to 65535; left out\n");
    EXPECT_THAT(files_made(), ElementsAre("epg.EHB"));
}

TEST_F(EncodeCommand, AFileThatCannotBeReadIsUnusable) {
    const finished_command end = encode({"none.xml"});
    EXPECT_EQ(end.status, 2);
    EXPECT_EQ(end.err,
              "dabspi: none.xml: cannot be read: No such file or directory\ndabspi: nothing was written\n");
    EXPECT_THAT(encode({"."}).err, HasSubstr("dabspi: .: cannot be read: Is a directory\n"));
}

TEST_F(EncodeCommand, ManyErrorsAreCountedNotPrinted) {
    std::string content;
    for (int i = 0; i < 150; ++i)
        content += "<x/>";
    write_file(files_, "bad.xml", day(content));
    const std::string err = encode({"bad.xml"}).err;
    EXPECT_THAT(err, HasSubstr("dabspi: and 50 more errors\n"));
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 102);
}

TEST_F(EncodeCommand, TokensSayWhatTheySave) {
    write_file(files_, "pi.xml",
               day(titled("Morning News") + titled("Evening News") + titled("Late Evening News")));
    const finished_command end = encode({"--tokens", "--verbose", "pi.xml"});
    EXPECT_EQ(end.out,
              "FILE                CONTENT NAME        TYPE  BYTES  TOKENS  SAVED\n"
              "w20260302dC221.EHB  w20260302dC221.EHB   7/1     78       1     11  12.3 %\n"
              "w20260302dC221.EHB: tokens\n"
              "  0x01  \"ning News\"\n");
}

TEST_F(EncodeCommand, TokensOfSeveralObjectsSayWhatTheySaveInAll) {
    write_file(files_, "a.xml",
               day(titled("Morning News") + titled("Evening News") + titled("Late Evening News")));
    write_file(files_, "si.xml", two_ensembles());
    const finished_command end = encode({"--tokens", "a.xml", "si.xml"});
    EXPECT_EQ(end.out,
              "FILE                CONTENT NAME        TYPE  BYTES  TOKENS  SAVED\n"
              "w20260302dC221.EHB  w20260302dC221.EHB   7/1     78       1     11  12.3 %\n"
              "dC185.EHS           dC185.EHS            7/0     21       0      0   0.0 %\n"
              "dC186.EHS           dC186.EHS            7/0     21       0      0   0.0 %\n"
              "3 objects: 120 bytes; tokens save 11, 8.3 %\n");
}

TEST_F(EncodeCommand, JsonHasTheMotParameters) {
    write_file(files_, "pi.xml",
               day(titled("Morning News") + titled("Evening News") + titled("Late Evening News")));
    const finished_command end = encode({"--json", "--tokens", "pi.xml"});
    EXPECT_EQ(
        end.out,
        "{\"source\":\"pi.xml\",\"file\":\"w20260302dC221.EHB\",\"content_type\":7,\"content_subtype\":1,"
        "\"content_name\":\"w20260302dC221.EHB\",\"body_size\":78,\"body_size_without_tokens\":89,"
        "\"tokens\":{\"0x01\":\"ning News\"},\"parameters\":["
        "{\"id\":\"0x0C\",\"name\":\"ContentName\",\"value\":\"w20260302dC221.EHB\"},"
        "{\"id\":\"0x25\",\"name\":\"ScopeStart\",\"value\":\"2026-03-01T23:00:00Z\"},"
        "{\"id\":\"0x26\",\"name\":\"ScopeEnd\",\"value\":\"2026-03-02T23:00:00Z\"},"
        "{\"id\":\"0x27\",\"name\":\"ScopeID\",\"value\":\"dab:ce1.c185.c221.0\"}]}\n");
}

TEST_F(EncodeCommand, StandardInputAndOutputAreMinus) {
    standard_input_ = day("");
    const finished_command end = encode({"-", "-o", "-"});
    EXPECT_EQ(end.status, 0) << end.err;
    EXPECT_EQ(end.out.substr(0, 1), "\x02");
    EXPECT_THAT(end.err, HasSubstr("7/1"));
    standard_input_ = "<epg";
    EXPECT_THAT(encode({"-"}).err, HasSubstr("dabspi: <stdin>:1:"));
}

TEST_F(EncodeCommand, TheLatestObjectReplacesTheOneBefore) {
    write_file(files_, "pi.xml", day(titled("A longer title than the next")));
    EXPECT_EQ(encode({"pi.xml"}).status, 0);
    write_file(files_, "pi.xml", day(titled("B")));
    EXPECT_EQ(encode({"pi.xml"}).status, 0);
    EXPECT_THAT(files_made(), ElementsAre("w20260302dC221.EHB"));
    EXPECT_EQ(read_file((files_.path() / "w20260302dC221.EHB").string()).size(), 37u);
}

TEST_F(EncodeCommand, AnObjectThatCannotBeWrittenIsAFailure) {
    write_file(files_, "pi.xml", day(""));
    write_file(files_, "out", "a file");
    const finished_command end = encode({"-d", "out", "pi.xml"});
    EXPECT_EQ(end.status, 3);
    EXPECT_THAT(end.err, HasSubstr("out/w20260302dC221.EHB cannot be written: "));
    EXPECT_EQ(encode({"-o", "/dev/full", "pi.xml"}).status, 3);
}

TEST_F(EncodeCommand, UsageErrorsEndWithTwo) {
    write_file(files_, "pi.xml", day(""));
    EXPECT_EQ(encode({}).status, 2);
    EXPECT_EQ(encode({"-o", "a", "-d", "b", "pi.xml"}).status, 2);
    const finished_command end = encode({"--ensemble", "c185", "pi.xml"});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.err, HasSubstr("\"c185\" is no ensemble such as e1.ce15: ECC and EId"));
}

TEST_F(EncodeCommand, EmptyNamesAndImpossibleOnesAreRefused) {
    write_file(files_, "pi.xml", day(""));
    for (const char* const option : {"-d", "-o", "--name"}) {
        const finished_command end = encode({option, "", "pi.xml"});
        EXPECT_EQ(end.status, 2) << option;
        EXPECT_THAT(end.err, HasSubstr("a name is needed, and it is empty")) << option;
    }
    for (const std::string& name : {std::string("."), std::string(".."), std::string(250, 'n')})
        EXPECT_THAT(encode({"--name", name, "pi.xml"}).err, HasSubstr("is no file name")) << name;
}

TEST_F(EncodeCommand, ADocumentIsNotWrittenOver) {
    write_file(files_, "pi.xml", day(""));
    const finished_command end = encode({"-o", "./pi.xml", "pi.xml"});
    EXPECT_EQ(end.status, 2);
    EXPECT_THAT(end.err, HasSubstr("./pi.xml is one of the documents, and would be written over"));
    EXPECT_EQ(read_file((files_.path() / "pi.xml").string()), day(""));
    fs::create_symlink("pi.xml", files_.path() / "w20260302dC221.EHB");
    EXPECT_EQ(encode({"pi.xml"}).status, 2) << "nor through a link";
}

}  // namespace
