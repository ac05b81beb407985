// The JSON of inspect.
#include "tools/inspect/json_report.h"

#include <nlohmann/json.hpp>

#include "tests/tools/inspect/reports.h"

namespace {

using namespace dabspi;
using nlohmann::json;

json json_of(const sb::bytes& content, bool hex = false) {
    const std::string text = json_report(owned_report(content).report, hex);
    EXPECT_EQ(text.find('\n'), text.size() - 1) << "one line";
    return json::parse(text);
}

TEST(JsonReport, IsOneLineWithTheTreeAndTheReceiver) {
    EXPECT_EQ(
        json_report(owned_report(sb::elem(0x02, {sb::elem(0x06, sb::str("en"))})).report, false),
        R"({"file":"x.bin","kind":"programme information","size":6,"well_formed":true,"malformed":0,"remarks":0,)"
        R"("tree":[{"kind":"element","tag":"0x02","name":"epg","offset":0,"header":2,"length":4,"receiver":"read",)"
        R"("children":[{"kind":"element","tag":"0x06","name":"defaultLanguage","offset":2,"header":2,"length":2,)"
        R"("receiver":"passed over","value":"en"}]}],)"
        R"("receiver":{"reads":true,"ensemble":"0x0","programmes":[],"services":[]}})"
        "\n");
}

TEST(JsonReport, ValuesHaveTheirOwnKeys) {
    const json tree = json_of(small_programme_information())["tree"][0];
    const json programme = tree["children"][1]["children"][1]["children"];
    EXPECT_EQ(programme[0]["value"], 66051);
    EXPECT_EQ(programme[2]["children"][0]["value"], "News at Ten");
    EXPECT_EQ(programme[2]["children"][0]["coded"],
              "0120617420"
              "54656e");
    const json time = programme[3]["children"][0]["children"];
    EXPECT_EQ(time[0]["value"], "2026-03-10T10:00:00+01:00");
    EXPECT_EQ(time[0]["utc"], "2026-03-10T09:00:00Z");
    EXPECT_EQ(time[0]["local"], "2026-03-10 10:00");
    EXPECT_EQ(time[0]["offset_minutes"], 60);
    EXPECT_EQ(time[1]["value"], 5400);
    EXPECT_EQ(
        tree["children"][0]["children"][0],
        json::parse(
            R"({"kind":"token","tag":"0x01","offset":4,"header":2,"length":4,"receiver":"read","value":"News"})"));
}

TEST(JsonReport, EnumerationsHaveNameAndNumber) {
    const json media = json_of(
        small_service_information())["tree"][0]["children"][0]["children"][1]["children"][3]["children"][0];
    EXPECT_EQ(media["name"], "multimedia");
    EXPECT_EQ(media["children"][2]["value"], "logo_unrestricted");
    EXPECT_EQ(media["children"][2]["number"], 2);
}

TEST(JsonReport, ProblemsStandWithTheirNode) {
    const json report = json_of(sb::bytes{0x02, 0x0A, 0x21, 0x00});
    EXPECT_EQ(report["well_formed"], false);
    EXPECT_EQ(report["malformed"], 1);
    EXPECT_EQ(report["tree"][0]["stated_length"], 10);
    EXPECT_EQ(report["tree"][0]["problems"][0],
              json::parse(R"({"severity":"malformed","code":"length-beyond-object","offset":0,
                  "text":"the length says 10 bytes, and 2 are left in the object","receiver":"takes what is there, and the object as ended"})"));
    EXPECT_EQ(json_of(sb::bytes{})["problems"][0]["code"], "empty-object");
}

TEST(JsonReport, BytesOfWhatIsNotUnderstoodAreThere) {
    const sb::bytes object = sb::elem(0x02, {sb::elem(0x7A, {1, 0xAB}), sb::elem(0x06, sb::str("en"))});
    const json children = json_of(object)["tree"][0]["children"];
    EXPECT_EQ(children[0]["bytes"], "01ab");
    EXPECT_FALSE(children[0].contains("name"));
    EXPECT_FALSE(children[1].contains("bytes"));
    EXPECT_EQ(json_of(object, true)["tree"][0]["children"][1]["bytes"], "656e");
}

TEST(JsonReport, TextsThatAreNotUtf8HaveTheirBytesBesideThem) {
    const json report =
        json_of(sb::elem(0x02, {sb::elem(0x21, {sb::elem(0x1C, {sb::elem(0x12, {sb::text("a\xE9")})})})}));
    const json name = report["tree"][0]["children"][0]["children"][0]["children"][0]["children"][0];
    EXPECT_EQ(name["value"], "a\xEF\xBF\xBD");
    EXPECT_EQ(name["coded"], "61e9");
    EXPECT_EQ(report["receiver"]["programmes"][0]["name"], "a\xEF\xBF\xBD");
    EXPECT_EQ(report["receiver"]["programmes"][0]["name_hex"], "61e9");
    EXPECT_EQ(report["receiver"]["programmes"][0]["dropped"], true);
}

TEST(JsonReport, TellsWhatAReceiverTakes) {
    EXPECT_EQ(
        json_of(small_programme_information())["receiver"]["programmes"][0],
        json::parse(
            R"({"offset":24,"dropped":false,"sid":"0x1A01","ecc":"0xE0","scids":0,"date":"2026-03-10","time":"10:00","duration":90,"name":"News at Ten"})"));
    EXPECT_EQ(json_of(small_service_information())["receiver"]["services"][0],
              json::parse(R"({"offset":9,"sid":"0x1A01","ecc":"0xE0","scids":0,"name":"Orbitale","logos":[
                  {"offset":42,"sid":"0x1A01","ecc":"0xE0","scids":0,"format":2,"size_code":3,"name":"a.png"}]})"));
}

TEST(JsonReport, RecordingsAddWhatTheyKnow) {
    inspected_body body = gathered_body(sb::elem(0x02, {}), "day.jsonl");
    body.lines = {12, 40};
    body.content_name = "w.ehb";
    body.content_type = std::uint8_t{7};
    body.content_subtype = std::uint16_t{1};
    body.ensemble = std::uint16_t{0xC185};
    const json report = json::parse(json_report(owned_report(body).report, false));
    EXPECT_EQ(report["lines"], json::parse("[12,40]"));
    EXPECT_EQ(report["content_name"], "w.ehb");
    EXPECT_EQ(report["content_subtype"], 1);
    EXPECT_EQ(report["receiver"]["ensemble"], "0xC185");
}

TEST(JsonReport, ImagesAndOthersAreShort) {
    EXPECT_EQ(json_of_other(gathered_body(sb::join({sb::str("GIF89a"), {64, 1, 240, 0}}), "a.gif")),
              R"({"file":"a.gif","kind":"image","size":10,"format":"GIF","width":320,"height":240})"
              "\n");
    inspected_body body = gathered_body(sb::str("<a/>"), "a.xml");
    EXPECT_EQ(json_of_other(body), R"({"file":"a.xml","kind":"other","size":4,"text":"an XML document"})"
                                   "\n");
}

}  // namespace
