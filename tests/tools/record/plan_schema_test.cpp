// docs/plan.schema.json allows the keys that are read, and no others.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "tests/tools/files/files.h"
#include "tools/record/plan.h"

namespace {

using nlohmann::json;

json schema() {
    return json::parse(read_file(DABSPI_DOCS "/plan.schema.json"));
}

std::set<std::string> allowed(const json& object) {
    EXPECT_EQ(object.at("additionalProperties"), false);
    std::set<std::string> names;
    for (const auto& [name, value] : object.at("properties").items())
        names.insert(name);
    return names;
}

// From "unknown key "?"; a step takes at, note, ...".
std::set<std::string> read_keys(const std::string& plan) {
    for (const dabspi::plan_error& each : dabspi::read_plan(plan).errors) {
        const std::size_t list = each.text.find(" takes ");
        if (each.text.rfind("unknown key", 0) != 0 || list == std::string::npos) continue;
        std::set<std::string> names;
        std::istringstream words(each.text.substr(list + 7));
        for (std::string word; words >> word;)
            names.insert(word.substr(0, word.find(',')));
        return names;
    }
    ADD_FAILURE() << "no unknown key in " << plan;
    return {};
}

TEST(PlanSchema, HasTheKeysThatAreRead) {
    const json all = schema();
    const json& parts = all.at("$defs");
    EXPECT_EQ(allowed(all), read_keys(R"({"?": 1})"));
    EXPECT_EQ(allowed(all.at("properties").at("clock")), read_keys(R"({"clock": {"?": 1}})"));
    EXPECT_EQ(allowed(parts.at("service")), read_keys(R"({"services": {"x": {"?": 1}}})"));
    EXPECT_EQ(allowed(parts.at("carousel")), read_keys(R"({"carousels": {"x": {"?": 1}}})"));
    EXPECT_EQ(allowed(parts.at("step")), read_keys(R"({"steps": [{"?": 1}]})"));
    EXPECT_EQ(allowed(parts.at("object")), read_keys(R"({"steps": [{"feed": {"xml": "x", "?": 1}}]})"));
    EXPECT_EQ(allowed(parts.at("data_service").at("oneOf").at(1)),
              read_keys(R"({"data_service": {"?": 1}})"));
}

TEST(PlanSchema, TheDescriptionsExampleIsAPlan) {
    const std::string text = read_file(DABSPI_DOCS "/plans.md");
    const std::size_t begin = text.find("```json\n") + 8;
    const dabspi::plan plan = dabspi::read_plan(text.substr(begin, text.find("```", begin) - begin));
    EXPECT_THAT(plan.errors, testing::IsEmpty()) << plan.errors.front().where << plan.errors.front().text;
    EXPECT_EQ(plan.steps.size(), 3u);
}

}  // namespace
