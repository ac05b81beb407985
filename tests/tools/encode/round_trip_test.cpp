// Every document that has a coding comes back from its object as it was.
//
// DABSPI_ROUND_TRIP_DOCUMENTS asks for more documents, DABSPI_ROUND_TRIP_SEED for others.

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "tests/stress/stress_settings.h"
#include "tests/tools/encode/random_documents.h"
#include "tools/encode/broadcast_object.h"
#include "tools/spi/decode.h"
#include "tools/spi/xml_document.h"

namespace {

namespace so = dabspi::spi_object;

constexpr unsigned kFlags = pugi::parse_default | pugi::parse_ws_pcdata_single;

std::string canonical_text(const std::string& document) {
    pugi::xml_document parsed;
    if (!parsed.load_buffer(document.data(), document.size(), kFlags)) return "not XML";
    return canonical(parsed.document_element());
}

std::string notes(const dabspi::encoded_document& of) {
    std::string text;
    for (const auto& each : of.errors)
        text += note_text("document", each) + "\n";
    for (const auto& each : of.omitted.notes())
        text += note_text("document", each.note) + "\n";
    return text;
}

TEST(RoundTrip, EveryRandomDocumentComesBackAsItWas) {
    const std::uint32_t documents = stress_number("DABSPI_ROUND_TRIP_DOCUMENTS", 3000);
    const std::uint32_t seed = stress_number("DABSPI_ROUND_TRIP_SEED", 1);
    random_documents random(seed);
    std::set<std::string> seen;  // "time/@duration"
    std::size_t with_tokens = 0;
    for (std::uint32_t i = 0; i < documents; ++i) {
        const std::string document = random.next();
        SCOPED_TRACE("seed " + std::to_string(seed) + ", document " + std::to_string(i));
        const dabspi::xml_source source(document);
        const dabspi::encoded_document made = dabspi::encode_document(source, {});
        ASSERT_EQ(made.objects.size(), 1u) << notes(made) << document;
        ASSERT_TRUE(made.omitted.empty() && made.warnings.empty()) << notes(made) << document;
        dabspi::token_choice tokens;
        tokens.build = i % 2 == 1;
        const dabspi::broadcast_object object = make_object(made.objects.front(), tokens);
        ASSERT_LE(object.body.size(), object.size_without_tokens);
        if (!object.tokens.empty()) ++with_tokens;
        const so::object tree = so::decode(object.body);
        ASSERT_TRUE(tree.well_formed()) << document;
        const so::xml_document back = xml_of(tree);
        ASSERT_TRUE(back.notes.empty()) << back.notes.front().text << "\n" << document;
        ASSERT_EQ(canonical_text(back.text), canonical_text(document)) << document;
        so::visit(tree, [&](const so::node& each, const std::vector<const so::node*>& above) {
            if (each.kind == so::node_kind::token) return;
            seen.insert((above.empty() ? "" : so::shown_name(*above.back()) + "/") + so::shown_name(each));
        });
    }
    EXPECT_GT(with_tokens, documents / 10);
    if (documents < 1000) return;
    for (const so::element_entry& each : so::all_elements()) {
        if (!so::is_in_xml(each)) continue;
        for (const std::uint8_t parent : each.parents)
            EXPECT_EQ(seen.count(std::string(so::find_element(parent)->name) + "/" + each.name), 1u)
                << each.name << " was in no document";
        for (const so::attribute_entry& attribute : each.attributes)
            EXPECT_EQ(seen.count(std::string(each.name) + "/@" + attribute.name), 1u)
                << each.name << "/@" << attribute.name << " was in no document";
    }
}

}  // namespace
