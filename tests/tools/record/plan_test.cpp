// What a plan may say, and what is said of one that is wrong.

#include "tools/record/plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> errors_of(const std::string& text) {
    std::vector<std::string> errors;
    for (const dabspi::plan_error& each : dabspi::read_plan(text).errors)
        errors.push_back(each.where + ": " + each.text);
    return errors;
}

std::string error_of(const std::string& text) {
    const std::vector<std::string> errors = errors_of(text);
    return errors.size() == 1 ? errors.front() : "there are: " + testing::PrintToString(errors);
}

std::string step_error(const std::string& step, const std::string& plan = R"("data_service": 1,)") {
    return error_of("{" + plan + "\"steps\": [" + step + "]}");
}

std::string object_error(const std::string& object) {
    return step_error("{\"feed\": {" + object + "}}");
}

TEST(Plan, ReadsWhatItSays) {
    const dabspi::plan plan = dabspi::read_plan(R"({
        "about": ["A day.", "A station."],
        "data_service": "0xE1C00098",
        "clock": {"from": "2026-03-02T05:00", "to": "2026-03-02T09:00", "every": 5},
        "services": {"one": {"sid": "0xC221", "ecc": "0xE1", "scids": 1, "ensemble": 49541}},
        "carousels": {"all": {"objects_a_minute": 3, "data_service": {"sid": 7, "ecc": 8, "scids": 9}, "objects": [
            {"xml": "a-{date}.xml", "days": [0, 1, -1], "tokens": {"0x0B": "News"}, "ensemble": "e1.c185", "lenient": true},
            {"image": "a.png", "name": "logo", "file": "objects/x.png", "content_subtype": 1},
            {"object": "b.bin", "name": "b", "content_type": 7, "content_subtype": 0, "inline": true}]}},
        "steps": [{"at": "2026-03-02T05:05", "note": "x", "service": "one"}, {"carousel": "all"}, {"resend": true}]})");
    ASSERT_THAT(plan.errors, IsEmpty()) << plan.errors.front().where << plan.errors.front().text;
    EXPECT_EQ(plan.about, "A day.\nA station.");
    EXPECT_EQ(plan.data_service->ecc, 0xE1);
    EXPECT_EQ(plan.clock->from.text(), "2026-03-02T05:00");
    EXPECT_EQ(plan.clock->to.date() + plan.clock->to.time(), "202603020900");
    EXPECT_EQ(plan.clock->every, 5u);
    EXPECT_EQ(plan.services.at("one").ensemble, 0xC185);
    EXPECT_EQ(plan.services.at("one").service.scids, 1);
    const dabspi::planned_carousel& all = plan.carousels.at("all");
    EXPECT_EQ(all.data_service->scids, 9);
    EXPECT_EQ(all.objects_a_minute, 3u);
    ASSERT_EQ(all.objects.size(), 3u);
    EXPECT_THAT(all.objects[0].days, ElementsAre(0, 1, -1));
    EXPECT_EQ(all.objects[0].tokens.given.at(0x0B), "News");
    EXPECT_EQ(all.objects[0].ensemble->eid, 0xC185);
    EXPECT_TRUE(all.objects[0].lenient);
    EXPECT_EQ(all.objects[1].what, dabspi::planned_object::kind::image);
    EXPECT_EQ(*all.objects[1].file, "objects/x.png");
    EXPECT_EQ(*all.objects[1].content_subtype, 1);
    EXPECT_TRUE(all.objects[2].in_line);
    ASSERT_EQ(plan.steps.size(), 3u);
    EXPECT_EQ(plan.steps[0].at->time(), "0505");
    EXPECT_EQ(*plan.steps[1].carousel, "all");
    EXPECT_TRUE(plan.steps[2].resend);
}

TEST(Plan, SaysTheLocalTimeOfADocument) {
    const auto plan = dabspi::read_plan(
        R"({"data_service": 1, "steps": [{"feed": {"xml": "a.xml", "offset": "+01:00"}}]})");
    ASSERT_THAT(plan.errors, IsEmpty());
    EXPECT_EQ(plan.steps.at(0).feed.value().local->at(0), 3600);
    EXPECT_EQ(step_error(R"({"feed": {"xml": "a.xml", "offset": "01:10"}})"),
              "/steps/0/feed/offset: \"01:10\" is no offset such as \"+01:00\", in half-hours");
    EXPECT_THAT(step_error(R"({"feed": {"xml": "a.xml", "zone": "Nowhere/City"}})"),
                HasSubstr("/steps/0/feed/zone: "));
    EXPECT_EQ(step_error(R"({"feed": {"xml": "a.xml", "zone": "UTC", "offset": "Z"}})"),
              "/steps/0/feed: \"offset\" and \"zone\" exclude one another");
}

TEST(Plan, MustBeAnObjectWithSteps) {
    EXPECT_EQ(error_of("[]"), ": is an array; a plan is an object: {...}");
    EXPECT_EQ(error_of("{}"), ": a plan needs the key \"steps\"");
    EXPECT_EQ(error_of(R"({"steps": 1})"), "/steps: is 1; an array is needed: [...]");
    EXPECT_EQ(step_error("7"), "/steps/0: is 7; a step is an object: {...}");
}

TEST(Plan, UnknownKeysAreErrorsThatNameTheKnown) {
    EXPECT_EQ(
        step_error(R"({"serivce": "x"})"),
        "/steps/0: unknown key \"serivce\"; a step takes at, note, clock, service, carousel, feed, resend");
    EXPECT_EQ(error_of(R"({"steps": [], "services": {"a/b": {"sid": 1, "ensemble": 1, "eid": 2}}})"),
              "/services/a~1b: unknown key \"eid\"; a service takes sid, ecc, scids, ensemble");
}

TEST(Plan, AKeyThatStandsTwiceIsAnError) {
    EXPECT_EQ(error_of(R"({"steps": [], "about": "a", "about": "b"})"),
              "/about: the key stands twice in one object");
    EXPECT_EQ(error_of(R"({"steps": [{"note": ["x", "y"]}, {"note": "a", "note": "b"}]})"),
              "/steps/1/note: the key stands twice in one object");
    EXPECT_EQ(error_of(R"({"steps": [], "services": {"a/b": {"sid": 1, "ensemble": 2, "sid": 3}}})"),
              "/services/a~1b/sid: the key stands twice in one object");
    EXPECT_THAT(errors_of(R"({"about": "a", "steps": [{"note": "a"}, {"note": "b"}]})"), IsEmpty());
}

TEST(Plan, TypesAreChecked) {
    EXPECT_EQ(step_error(R"({"service": 7})"), "/steps/0/service: is 7; a text is needed");
    EXPECT_EQ(step_error(R"({"resend": "yes"})"), "/steps/0/resend: is \"yes\"; true or false is needed");
    EXPECT_EQ(step_error(R"({"note": ["a", 7]})"),
              "/steps/0/note: is an array; a text or an array of lines is needed");
    EXPECT_EQ(error_of(R"({"steps": [], "clock": "now"})"), "/clock: is \"now\"; an object is needed: {...}");
    EXPECT_EQ(error_of(R"({"steps": [], "services": {"a": {"sid": 1, "ecc": 256, "ensemble": 1}}})"),
              "/services/a/ecc: 256 is out of range (0 to 255)");
    EXPECT_EQ(error_of(R"({"steps": [], "services": {"a": {"ensemble": 1}}})"),
              "/services/a: a service needs the key \"sid\"");
}

TEST(Plan, MinutesAreLocalAndWhole) {
    EXPECT_EQ(step_error(R"({"clock": "2026-03-02T10:30:00Z"})"),
              "/steps/0/clock: \"2026-03-02T10:30:00Z\" is no minute; write it like \"2026-03-10T05:00\", in "
              "local time");
    EXPECT_THAT(step_error(R"({"clock": "2026-02-29T10:30"})"), HasSubstr("is no minute"));
    EXPECT_THAT(step_error(R"({"clock": "1859-01-01T10:30"})"), HasSubstr("is no minute"));
}

TEST(Plan, TheClockMustHaveAnOrder) {
    EXPECT_EQ(error_of(R"({"steps": [], "clock": {"from": "2026-03-02T10:30", "to": "2026-03-02T10:29"}})"),
              "/clock: it ends before it begins");
    EXPECT_EQ(
        error_of(
            R"({"steps": [], "clock": {"from": "2026-03-02T10:30", "to": "2026-03-02T10:40", "every": 0}})"),
        "/clock/every: is 0; 1 to 1440 minutes are needed");
    EXPECT_EQ(error_of(R"({"steps": [], "clock": {"from": "2026-03-02T10:30", "to": "2062-03-02T10:29"}})"),
              "/clock: it ticks more than 1000000 times; are the years right?");
    EXPECT_THAT(errors_of(R"({"steps": [], "clock":
        {"from": "2026-03-02T10:30", "to": "2062-03-02T10:29", "every": 1440}})"),
                IsEmpty());
}

TEST(Plan, StepsAndTheClockMustGoTogether) {
    const std::string clock =
        R"("clock": {"from": "2026-03-02T10:30", "to": "2026-03-02T10:40", "every": 2},)";
    EXPECT_EQ(step_error(R"({"at": "2026-03-02T10:30"})"),
              "/steps/0/at: needs a clock that ticks: give the plan a \"clock\"");
    EXPECT_EQ(step_error(R"({"clock": "2026-03-02T10:30"})", clock),
              "/steps/0/clock: the plan's clock ticks by itself; use \"at\"");
    EXPECT_EQ(step_error(R"({"at": "2026-03-02T10:42"})", clock),
              "/steps/0/at: 2026-03-02T10:42 is outside the clock, 2026-03-02T10:30 to 2026-03-02T10:40");
    EXPECT_EQ(step_error(R"({"at": "2026-03-02T10:31"})", clock),
              "/steps/0/at: the clock does not tick at 2026-03-02T10:31");
    EXPECT_EQ(error_of(R"({"steps": [], "carousels": {"a": {"objects_a_minute": 1, "objects": []}}})"),
              "/carousels/a/objects_a_minute: needs a clock that ticks: give the plan a \"clock\"");
}

TEST(Plan, NamesMustBeKnown) {
    EXPECT_EQ(step_error(R"({"service": "two"})", R"("services": {"one": {"sid": 1, "ensemble": 1}},)"),
              "/steps/0/service: there is no service \"two\"; there are: one");
    EXPECT_EQ(step_error(R"({"carousel": "all"})"),
              "/steps/0/carousel: there is no carousel \"all\"; there are none");
}

TEST(Plan, AStepDoesOneThing) {
    EXPECT_EQ(step_error(R"({"clock": "2026-03-02T10:30", "resend": true})"),
              "/steps/0: a step does one thing; make two of it");
}

TEST(Plan, AnObjectIsOneOfThree) {
    EXPECT_EQ(object_error(R"("name": "x")"),
              "/steps/0/feed: say what is sent: \"xml\", \"image\" or \"object\", with the name of a file");
    EXPECT_EQ(object_error(R"("xml": "a", "image": "b")"),
              "/steps/0/feed: \"xml\", \"image\" and \"object\" exclude one another");
    EXPECT_THAT(errors_of(R"({"data_service": 1, "steps": [{"feed": {"object": "x"}}]})"),
                ElementsAre(HasSubstr("needs the key \"content_type\""),
                            HasSubstr("needs the key \"content_subtype\""),
                            "/steps/0/feed: an object that is sent as it is needs the key \"name\""));
}

TEST(Plan, AnObjectNeedsADataService) {
    EXPECT_EQ(
        step_error(R"({"feed": {"xml": "a"}})", ""),
        "/steps/0/feed: no \"data_service\" carries it: name one here, in its carousel, or in the plan");
    EXPECT_EQ(step_error(R"({"feed": {"xml": "a", "data_service": {"ecc": 1}}})"),
              "/steps/0/feed/data_service: a data service needs the key \"sid\"");
}

TEST(Plan, FilesStayInsideTheRecordingsFolder) {
    for (const char* file : {"/etc/x", "../x", "a/../../x", "a/", "", "a//b", "./a"})
        EXPECT_THAT(object_error(R"("xml": "a", "file": ")" + std::string(file) + "\""),
                    HasSubstr("is no name inside the recording's folder"))
            << file;
    EXPECT_EQ(object_error(R"("xml": "a", "file": "x", "inline": true)"),
              "/steps/0/feed: \"file\" and \"inline\" exclude one another");
}

TEST(Plan, DaysAreCounted) {
    EXPECT_EQ(object_error(R"("xml": "a", "days": [0, 367])"),
              "/steps/0/feed/days: 367 is no count of days from -366 to 366");
    EXPECT_THAT(object_error(R"("xml": "a", "days": ["x"])"), HasSubstr("\"x\" is no count of days"));
    EXPECT_THAT(object_error(R"("xml": "a", "days": [18446744073709551615])"), HasSubstr("no count of days"))
        << "-1 in 64 bits";
}

TEST(Plan, TokensMustBeTokens) {
    EXPECT_EQ(object_error(R"("xml": "a", "tokens": 1)"),
              "/steps/0/feed/tokens: is 1; true is needed, or the tokens: {\"0x01\": \"News\"}");
    for (const char* code : {"0x09", "0x14", "0", "x", "300"})
        EXPECT_EQ(object_error(R"("xml": "a", "tokens": {")" + std::string(code) + "\": \"News\"}"),
                  "/steps/0/feed/tokens/" + std::string(code) +
                      ": is no token byte; these are 0x01 to 0x08, 0x0B, 0x0C, 0x0E to 0x13");
    EXPECT_EQ(object_error(R"("xml": "a", "tokens": {"1": ""})"),
              "/steps/0/feed/tokens/1: a token stands for a text of 1 to 255 bytes");
    EXPECT_EQ(object_error(R"("xml": "a", "tokens": {"1": "a", "0x01": "b"})").substr(0, 26),
              "/steps/0/feed/tokens/1: th");
}

TEST(Plan, AnEnsembleIsEccAndEid) {
    EXPECT_EQ(object_error(R"("xml": "a", "ensemble": "c185")"),
              "/steps/0/feed/ensemble: \"c185\" is no ensemble such as \"e1.ce15\": ECC and EId");
}

TEST(Plan, WhatIsForDocumentsIsNotForImages) {
    EXPECT_THAT(object_error(R"("image": "a", "tokens": true)"), HasSubstr("unknown key \"tokens\""));
}

TEST(Plan, ReadsAServiceInOneText) {
    const dabspi::plan read = dabspi::read_plan(
        R"({"services": {"one": "e1.c185.c221.2", "two": "C221", "three": "49697"}, "steps": []})");
    const dabspi::planned_service& one = read.services.at("one");
    EXPECT_EQ(one.service.sid, 0xC221U);
    EXPECT_EQ(one.service.ecc, 0xE1);
    EXPECT_EQ(one.service.scids, 2);
    EXPECT_EQ(one.ensemble, 0xC185);
    ASSERT_EQ(read.errors.size(), 2U);
    EXPECT_EQ(read.errors[0].where, "/services/three");
    EXPECT_NE(read.errors[0].text.find("decimal 49697 is 0xC221"), std::string::npos);
    EXPECT_NE(read.errors[1].text.find("a plan needs ECC and EId as well"), std::string::npos);
}

}  // namespace
