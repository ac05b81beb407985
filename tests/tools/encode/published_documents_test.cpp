// Documents that broadcasters published, and the same in the vocabulary of today.
//
// They are other people's: DABSPI_REAL names the folder that has them, with xml/orig and xml/norm.

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "tests/tools/encode/encoding.h"
#include "tests/tools/encode/statements.h"
#include "tests/tools/files/files.h"
#include "tools/spi/decode.h"

namespace {

namespace fs = std::filesystem;

dabspi::encode_options for_published() {
    dabspi::encode_options options;
    options.service = dabspi::spi_object::parse_content_id("dab:ce1.ce15.c221.0");  // where none is named
    return options;
}

// Of all objects, with the number that an equal statement has.
std::set<std::string> statements_in(const dabspi::encoded_document& made) {
    std::set<std::string> all;
    for (const dabspi::encoded_object& each : made.objects)
        all.merge(statements_of(dabspi::spi_object::decode(make_object(each, {}).body)));
    return all;
}

TEST(PublishedDocuments, AreEncodedAndSayWhatTheirTwinsOfTodaySay) {
    const char* const material = std::getenv("DABSPI_REAL");
    if (material == nullptr) GTEST_SKIP() << "DABSPI_REAL names no folder with documents of broadcasters";
    std::size_t documents = 0;
    for (const auto& each : fs::directory_iterator(fs::path(material) / "xml" / "orig")) {
        ++documents;
        SCOPED_TRACE(each.path().filename().string());
        const auto made =
            encode_document(dabspi::xml_source(read_file(each.path().string())), for_published());
        EXPECT_THAT(texts_of(made.errors), testing::IsEmpty());
        const std::string twin = (fs::path(material) / "xml" / "norm" / each.path().filename()).string();
        dabspi::encode_options leniently = for_published();
        leniently.lenient = true;
        const std::set<std::string> ours = statements_in(made);
        std::size_t missing = 0;
        for (const std::string& one :
             statements_in(encode_document(dabspi::xml_source(read_file(twin)), leniently)))
            if (ours.count(one) == 0 && ++missing <= 5) ADD_FAILURE() << "not said: " << one;
        EXPECT_EQ(missing, 0u);
    }
    EXPECT_EQ(documents, 8u);
}

}  // namespace
