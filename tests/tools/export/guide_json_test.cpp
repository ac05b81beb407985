// The guide as JSON, and its schema.
#include "tools/export/guide_json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <set>

#include "tests/tools/export/example_guide.h"
#include "tests/tools/files/files.h"

namespace {

using nlohmann::json;

json guide() {
    return json::parse(dabspi::guide_json(example_guide::made()));
}

TEST(GuideJson, HasServicesWithTheirProgrammes) {
    const json made = guide();
    EXPECT_EQ(made.at("ensembles").size(), 2U);
    ASSERT_EQ(made.at("services").size(), 1U);
    const json& service = made["services"][0];
    EXPECT_EQ(service.at("id"), "e1.c221.0");
    EXPECT_EQ(service.at("ensembles"), json({"e1.c185", "e1.c186"}));
    EXPECT_EQ(service.at("names").at("medium")[0].at("text"), "Radio One");
    EXPECT_EQ(service.at("logos")[0].at("bytes"), 4);
    EXPECT_FALSE(service.at("logos")[1].contains("bytes")) << "it was not sent";
    const json& programme = service.at("programmes")[0];
    EXPECT_EQ(programme.at("start"), "2026-03-10T07:00:00+01:00");
    EXPECT_EQ(programme.at("stop"), "2026-03-10T08:00:00+01:00");
    EXPECT_EQ(programme.at("id"), "crid://example.org/p1");
    EXPECT_EQ(programme.at("descriptions").at("long")[0].at("text"), "All about it & <more>");
    EXPECT_EQ(programme.at("genres")[0].at("name"), "Music: Jazz");
    EXPECT_EQ(made.at("counts").at("objects"), 3);
}

// The parts of JSON Schema that the schema uses: type, properties, required, additionalProperties, items,
// pattern is left to editors.
void check(const json& value, const json& schema, const json& whole, const std::string& where) {
    if (schema.contains("$ref")) {
        const std::string name = schema["$ref"].get<std::string>().substr(std::string("#/$defs/").size());
        return check(value, whole.at("$defs").at(name), whole, where);
    }
    const std::string type = schema.at("type");
    if (type == "string") {
        EXPECT_TRUE(value.is_string()) << where;
    }
    if (type == "integer") {
        EXPECT_TRUE(value.is_number_integer()) << where;
    }
    if (type == "boolean") {
        EXPECT_TRUE(value.is_boolean()) << where;
    }
    if (type == "array") {
        ASSERT_TRUE(value.is_array()) << where;
        for (const json& each : value)
            check(each, schema.at("items"), whole, where + "[]");
    }
    if (type != "object") return;
    ASSERT_TRUE(value.is_object()) << where;
    EXPECT_EQ(schema.at("additionalProperties"), false) << where;
    for (const json& name : schema.value("required", json::array()))
        EXPECT_TRUE(value.contains(name.get<std::string>())) << where << " has no " << name;
    for (const auto& [name, each] : value.items()) {
        if (!schema.at("properties").contains(name)) {
            ADD_FAILURE() << where << ": the schema does not know " << name;
        } else {
            check(each, schema["properties"][name], whole, where + "." + name);
        }
    }
}

TEST(GuideJson, IsWhatItsSchemaSays) {
    const json schema = json::parse(read_file(DABSPI_DOCS "/export.schema.json"));
    check(guide(), schema, schema, "guide");
}

}  // namespace
