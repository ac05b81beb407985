// What recordings come of plans.

#include "tools/record/made_recording.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/tools/files/files.h"

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kTop =
    "<epg xmlns='http://www.worlddab.org/schemas/spi/31'><schedule><programme><longName>";
constexpr const char* kEnd = "</longName></programme></schedule></epg>";
const std::string kPng = std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\x80\0\0\0\x80", 24);

class MadeRecording : public testing::Test {
 protected:
    MadeRecording() {
        for (const char* name : {"a", "b", "a-20260310", "a-20260311"})
            write_file(files_, std::string(name) + ".xml", kTop + std::string(name) + kEnd);
        write_file(files_, "logo.png", kPng);
    }

    dabspi::made_recording make(const std::string& text) {
        const dabspi::plan plan = dabspi::read_plan(text);
        EXPECT_THAT(plan.errors, IsEmpty()) << plan.errors.front().where << plan.errors.front().text;
        return make_recording(plan, files_.path().string());
    }

    // "0500", "one", "epg.EHB", "#note", in their order.
    std::vector<std::string> course(const std::string& text) {
        std::vector<std::string> result;
        std::istringstream lines(make(text).text);
        for (std::string line; std::getline(lines, line);) {
            if (line.empty()) continue;
            if (line[0] == '#') {
                result.push_back("#" + line.substr(2));
                continue;
            }
            const json call = json::parse(line);
            result.push_back(call.value("time", call.value("content_name", call.value("sid", "resend"))));
        }
        return result;
    }

    std::vector<std::string> errors_of(const std::string& text) {
        std::vector<std::string> errors;
        for (const dabspi::plan_error& each : make(text).errors)
            errors.push_back(each.where + ": " + each.text);
        return errors;
    }

    temporary_directory files_;
};

TEST_F(MadeRecording, WithoutAClockStepsFollowOneAnother) {
    EXPECT_THAT(
        course(R"({"about": "x", "data_service": 1, "services": {"one": {"sid": 7, "ensemble": 1}}, "steps": [
        {"note": ["n", "m"], "clock": "2026-03-10T05:00"}, {"service": "one"}, {"feed": {"xml": "a.xml"}},
        {"resend": true}, {"note": "end"}]})"),
        ElementsAre("#x", "#n", "#m", "0500", "0x7", "epg.EHB", "resend", "#end"));
}

TEST_F(MadeRecording, AClockTicksAndStepsComeAfterItsTick) {
    EXPECT_THAT(course(R"({"clock": {"from": "2026-03-09T23:58", "to": "2026-03-10T00:04", "every": 2},
        "services": {"one": {"sid": 7, "ensemble": 1}, "two": {"sid": 8, "ensemble": 1}}, "steps": [
        {"note": "first"}, {"at": "2026-03-10T00:02", "service": "two"}, {"note": "same"},
        {"at": "2026-03-10T00:00", "service": "one"}]})"),
                ElementsAre("2358", "#first", "0000", "0x7", "0002", "0x8", "#same", "0004"));
}

TEST_F(MadeRecording, ACarouselGoesOverTheMinutes) {
    EXPECT_THAT(course(R"({"data_service": 1, "clock": {"from": "2026-03-10T05:00", "to": "2026-03-10T05:02"},
        "services": {"one": {"sid": 7, "ensemble": 1}},
        "carousels": {"c": {"objects_a_minute": 2, "objects": [{"xml": "a.xml", "name": "1"}, {"image": "logo.png"},
            {"xml": "a-{date}.xml", "days": [0, 1], "name": "pi-{date}", "file": "pi/{date}.bin"}]}},
        "steps": [{"carousel": "c"}, {"service": "one"}]})"),
                ElementsAre("0500", "1", "logo.png", "0x7", "0501", "pi-20260310", "pi-20260311", "0502"));
}

TEST_F(MadeRecording, ACarouselWithoutAPaceGoesInOneMinute) {
    EXPECT_THAT(course(R"({"data_service": 1,
        "carousels": {"c": {"objects": [{"xml": "a.xml", "name": "1"}, {"image": "logo.png"}]}},
        "steps": [{"clock": "2026-03-10T05:00"}, {"carousel": "c"}]})"),
                ElementsAre("0500", "1", "logo.png"));
}

TEST_F(MadeRecording, BodiesAreKeptInFilesOrInLine) {
    const dabspi::made_recording made =
        make(R"({"data_service": {"sid": "0x1234", "ecc": 225, "scids": 2}, "steps": [
        {"feed": {"image": "logo.png", "name": "http://example.org/logo.png"}},
        {"feed": {"xml": "a.xml", "name": "x/y"}},
        {"feed": {"object": "logo.png", "name": "z", "content_type": 7, "content_subtype": 1, "inline": true}}]})");
    EXPECT_EQ(
        made.text,
        R"({"call":"FeedMotBody","content_type":2,"content_subtype":3,"content_name":"http://example.org/logo.png",)"
        R"("sid":"0x1234","ecc":"0xE1","scids":2,"file":"objects/logo.png"})"
        "\n"
        R"({"call":"FeedMotBody","content_type":7,"content_subtype":1,"content_name":"x/y","sid":"0x1234",)"
        R"("ecc":"0xE1","scids":2,"file":"objects/x_y"})"
        "\n"
        R"({"call":"FeedMotBody","content_type":7,"content_subtype":1,"content_name":"z","sid":"0x1234",)"
        R"("ecc":"0xE1","scids":2,"body":"iVBORw0KGgoAAAANSUhEUgAAAIAAAACA"})"
        "\n");
    EXPECT_EQ(made.calls, 3u);
    ASSERT_EQ(made.files.size(), 2u);
    EXPECT_EQ(*made.files.at("objects/logo.png"), dabspi::bytes(kPng.begin(), kPng.end()));
}

TEST_F(MadeRecording, TimesAreCodedWithTheOffsetThatIsSaid) {
    const auto body = [&](const std::string& time, const std::string& offset) {
        write_file(files_, "p.xml",
                   "<epg xmlns='http://www.worlddab.org/schemas/spi'><schedule><programme id='x' shortId='1'>"
                   "<location><time time='" +
                       time + "' duration='PT1H'/></location></programme></schedule></epg>");
        return *make(R"({"data_service": 1, "steps": [{"feed": {"xml": "p.xml", "file": "p")" + offset +
                     "}}]}")
                    .files.at("p");
    };
    const auto local = body("2026-07-02T06:00:00+01:00", "");
    EXPECT_EQ(body("2026-07-02T05:00:00Z", R"(, "offset": "+01:00")"), local);
    EXPECT_EQ(body("2026-07-02T05:00:00Z", R"(, "zone": "Europe/London")"), local);
    EXPECT_NE(body("2026-07-02T05:00:00Z", ""), local);
}

TEST_F(MadeRecording, TokensCanBeBuiltOrGiven) {
    const std::string same(40, 'x');
    write_file(files_, "t.xml", kTop + same + " " + same + kEnd);
    const auto body = [&](const std::string& tokens) {
        return make(R"({"data_service": 1, "steps": [{"feed": {"xml": "t.xml", "file": "t")" + tokens +
                    "}}]}")
            .files.at("t");
    };
    EXPECT_LT(body(R"(, "tokens": true)")->size(), body("")->size());
    EXPECT_LT(body(R"(, "tokens": {"0x13": "xxxxxxxxxx"})")->size(), body("")->size());
}

TEST_F(MadeRecording, OneFileHoldsOneObject) {
    EXPECT_THAT(
        errors_of(
            R"({"data_service": 1, "steps": [{"feed": {"xml": "a.xml"}}, {"feed": {"xml": "b.xml"}}]})"),
        ElementsAre("/steps/1/feed: another object is already kept in \"objects/epg.EHB\"; give one of them "
                    "another \"file\""));
}

TEST_F(MadeRecording, ADateMustBeKnown) {
    EXPECT_THAT(errors_of(R"({"data_service": 1, "steps": [{"feed": {"xml": "a-{date}.xml"}}]})"),
                ElementsAre("/steps/0/feed: {date} is not known before the first \"clock\""));
}

TEST_F(MadeRecording, ACarouselMustEndWithinTheClock) {
    EXPECT_THAT(
        errors_of(R"({"data_service": 1, "clock": {"from": "2026-03-10T05:00", "to": "2026-03-10T05:00"},
        "carousels": {"c": {"objects_a_minute": 1, "objects": [{"xml": "a.xml"}, {"image": "logo.png"}]}},
        "steps": [{"carousel": "c"}]})"),
        ElementsAre(
            "/steps/0: the carousel goes on after the clock's end, until 2026-03-10T05:01; let the clock "
            "tick longer"));
}

TEST_F(MadeRecording, AnImageMustBeOne) {
    EXPECT_THAT(
        errors_of(
            R"({"data_service": 1, "steps": [{"feed": {"image": "a.xml"}}, {"feed": {"image": "no.png"}}]})"),
        ElementsAre(
            "/steps/0/feed: \"a.xml\" is no PNG, JPEG, GIF or BMP image; send it as an \"object\", or say "
            "its \"content_subtype\"",
            HasSubstr("/steps/1/feed: cannot read the body file \"no.png\"")));
}

TEST_F(MadeRecording, ADocumentMustGiveOneObject) {
    write_file(files_, "si.xml",
               "<serviceInformation xmlns='http://www.worlddab.org/schemas/spi'><services><service>"
               "<bearer id='dab:ce1.c185.c221.0'/><bearer id='dab:ce1.c186.c221.0'/></service></services>"
               "</serviceInformation>");
    EXPECT_THAT(errors_of(R"({"data_service": 1, "steps": [{"feed": {"xml": "si.xml"}}]})"),
                ElementsAre(HasSubstr(
                    "si.xml: the document gives 2 objects; choose one with \"ensemble\": e1.c185, e1.c186")));
    EXPECT_EQ(make(R"({"data_service": 1, "steps": [{"feed": {"xml": "si.xml", "ensemble": "e1.c186"}}]})")
                  .files.size(),
              1u);
}

TEST_F(MadeRecording, AFaultyDocumentIsReportedOnceInFull) {
    write_file(files_, "bad.xml", "<epg/>");
    EXPECT_THAT(
        errors_of(
            R"({"data_service": 1, "steps": [{"feed": {"xml": "bad.xml"}}, {"feed": {"xml": "bad.xml"}}]})"),
        ElementsAre(HasSubstr("the element is in no namespace"),
                    "/steps/1/feed: \"bad.xml\" cannot be used, see above"));
}

// A few lines that unfold into gigabytes.
TEST_F(MadeRecording, APlanThatBecomesTooMuchIsRefused) {
    write_file(files_, "a.bin", std::string(1000, 'a'));
    std::string days;
    for (int i = -366; i <= 366; ++i)
        days += (days.empty() ? "" : ",") + std::to_string(i);
    std::string objects;
    for (int i = 0; i < 100; ++i)
        objects +=
            std::string(i == 0 ? "" : ",") +
            R"({"object": "a.bin", "name": "n", "content_type": 7, "content_subtype": 1, "inline": true, "days": [)" +
            days + "]}";
    std::string steps;
    for (int i = 0; i < 1000; ++i)
        steps += std::string(i == 0 ? "" : ",") + R"({"carousel": "c"})";
    EXPECT_THAT(
        errors_of(R"({"data_service": 1, "clock": {"from": "2026-03-10T05:00", "to": "2026-03-10T05:00"},
        "carousels": {"c": {"objects": [)" +
                  objects + R"(]}}, "steps": [)" + steps + "]}"),
        ElementsAre(HasSubstr("the plan becomes more than 64 MiB; send less or for fewer days, or raise "
                              "--limit")));
}

TEST_F(MadeRecording, ManyDatesInOneNameAreReplacedInOneGo) {
    std::string name;
    for (int i = 0; i < 100000; ++i)
        name += "{date}";
    EXPECT_THAT(
        errors_of(R"({"data_service": 1, "clock": {"from": "2026-03-10T05:00", "to": "2026-03-10T05:00"},
        "steps": [{"feed": {"object": ")" +
                  name + R"(", "name": "n", "content_type": 7, "content_subtype": 1}}]})"),
        ElementsAre(HasSubstr("cannot read the body file")));
}

}  // namespace
