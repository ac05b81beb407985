// Documents and the objects that another encoder made of them: what those say, ours say too.
//
// DABSPI_TWINS names a file with a line for each pair, paths from that file's folder:
//
//     DOCUMENT OBJECT [ENSEMBLE]
//     + PART OF A STATEMENT     that the other encoder alone makes, by the pair above
//
// Documents are encoded leniently. What ours say beyond the others is counted in the output, not compared.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>

#include "tests/tools/encode/statements.h"
#include "tests/tools/files/files.h"
#include "tools/encode/broadcast_object.h"
#include "tools/spi/decode.h"

namespace {

namespace fs = std::filesystem;
namespace so = dabspi::spi_object;

struct twins {
    std::string document;
    std::string object;
    std::string ensemble;
    std::vector<std::string> added;
};

std::vector<twins> read_list(const std::string& file) {
    std::vector<twins> all;
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#') continue;
        if (line[0] == '+' && !all.empty()) {
            all.back().added.push_back(line.substr(2));
            continue;
        }
        twins each;
        std::istringstream(line) >> each.document >> each.object >> each.ensemble;
        all.push_back(each);
    }
    return all;
}

// Of all objects that the document gives, unless an ensemble is chosen.
std::set<std::string> ours(const std::string& document, const std::string& ensemble) {
    dabspi::encode_options options;
    options.lenient = true;
    if (!ensemble.empty()) options.ensembles = {so::parse_ensemble_id(ensemble).value()};
    const dabspi::encoded_document made = encode_document(dabspi::xml_source(read_file(document)), options);
    for (const dabspi::source_note& each : made.errors)
        ADD_FAILURE() << note_text(document, each);
    std::set<std::string> all;
    for (const dabspi::encoded_object& each : made.objects) {
        dabspi::token_choice tokens;
        tokens.build = true;
        all.merge(statements_of(so::decode(make_object(each, tokens).body)));
    }
    return all;
}

// What their object says and ours does not.
std::vector<std::string> missing_in_ours(const twins& pair, const fs::path& folder) {
    const std::string theirs_as_read = read_file((folder / pair.object).string());
    const so::bytes body(theirs_as_read.begin(), theirs_as_read.end());
    const std::set<std::string> theirs = statements_of(so::decode(body));
    const std::set<std::string> mine = ours((folder / pair.document).string(), pair.ensemble);
    EXPECT_FALSE(theirs.empty()) << pair.object << " says nothing";
    std::vector<std::string> missing;
    std::size_t set_aside = 0;
    for (const std::string& each : theirs) {
        const bool known = std::any_of(pair.added.begin(), pair.added.end(), [&](const std::string& part) {
            return each.find(part) != std::string::npos;
        });
        if (known) ++set_aside;
        if (!known && mine.count(each) == 0) missing.push_back(each);
    }
    std::cout << pair.object << ": " << theirs.size() << " statements, " << set_aside
              << " of them set aside; ours has " << mine.size() << "\n";
    return missing;
}

// The comparison itself, on a pair of our own: the other object has another title.
TEST(Twins, WhatOursDoesNotSayIsFound) {
    const temporary_directory folder;
    const auto document = [](const std::string& title) {
        return "<epg xmlns=\"http://www.worlddab.org/schemas/spi/31\"><schedule><scope><serviceScope "
               "id=\"dab:1e0.10c1.1a01.0\"/></scope><programme><mediumName>" +
               title +
               "</mediumName><location><time time=\"2026-03-10T10:00:00Z\" duration=\"PT1H\"/></location>"
               "</programme></schedule></epg>";
    };
    write_file(folder, "pi.xml", document("Morning Post"));
    const auto write_object = [&](const std::string& title) {
        const dabspi::encoded_document made =
            encode_document(dabspi::xml_source(document(title)), dabspi::encode_options());
        ASSERT_EQ(made.objects.size(), 1u);
        const so::bytes body = make_object(made.objects.front(), dabspi::token_choice()).body;
        write_file(folder, "pi.bin", std::string(body.begin(), body.end()));
    };
    const twins pair{"pi.xml", "pi.bin", "", {}};
    write_object("Morning Post");
    EXPECT_TRUE(missing_in_ours(pair, folder.path()).empty());
    write_object("Evening Post");
    const std::vector<std::string> missing = missing_in_ours(pair, folder.path());
    ASSERT_EQ(missing.size(), 1u);
    EXPECT_NE(missing.front().find("Evening Post"), std::string::npos) << missing.front();
    EXPECT_TRUE(missing_in_ours({"pi.xml", "pi.bin", "", {"Evening Post"}}, folder.path()).empty());
}

// A test for each pair of the list; none where no list is named.
std::vector<twins> named_pairs() {
    const char* const list = std::getenv("DABSPI_TWINS");
    if (list == nullptr) return {};
    std::vector<twins> all = read_list(list);
    for (twins& each : all) {
        const fs::path folder = fs::path(list).parent_path();
        each.document = (folder / each.document).string();
        each.object = (folder / each.object).string();
    }
    if (all.empty()) all.push_back({std::string(list) + " (names no pair)", list, "", {}});  // fails
    return all;
}

void PrintTo(const twins& pair, std::ostream* out) {
    *out << pair.document << " and " << pair.object;
}

class NamedTwins : public testing::TestWithParam<twins> {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(NamedTwins);

TEST_P(NamedTwins, SayTheSame) {
    for (const std::string& file : {GetParam().document, GetParam().object})
        ASSERT_TRUE(fs::is_regular_file(file)) << file;
    for (const std::string& statement : missing_in_ours(GetParam(), {}))
        ADD_FAILURE() << GetParam().object << " says, and ours does not: " << statement;
}

INSTANTIATE_TEST_SUITE_P(OfTheList, NamedTwins, testing::ValuesIn(named_pairs()));

}  // namespace
