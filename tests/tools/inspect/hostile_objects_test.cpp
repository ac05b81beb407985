// Everything that inspect prints, of objects that nobody should send.
#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <random>

#include "tests/tools/inspect/reports.h"
#include "tools/inspect/json_report.h"
#include "tools/inspect/text_report.h"
#include "tools/spi/xml_document.h"
#include "tools/text/utf8.h"

namespace {

using namespace dabspi;

void expect_sound(const sb::bytes& content) {
    const owned_report owned(gathered_body(content));
    text_style style;
    style.hex = true;
    const std::string text = text_report(owned.report, style);
    ASSERT_TRUE(is_well_formed_utf8(text));
    ASSERT_LT(text.size(), 2000 * content.size() + 10000);
    ASSERT_TRUE(nlohmann::json::accept(json_report(owned.report, true)));
    const spi_object::xml_document xml = spi_object::xml_of(owned.report.tree);
    if (xml.text.empty()) return;
    pugi::xml_document parsed;
    ASSERT_TRUE(parsed.load_string(xml.text.c_str()));
    ASSERT_TRUE(is_well_formed_utf8(xml.text));
}

TEST(InspectHostileObjects, EveryCutIsShown) {
    for (const sb::bytes& whole : {small_programme_information(), small_service_information()})
        for (std::size_t size = 0; size <= whole.size(); ++size)
            expect_sound(sb::cut(whole, size));
}

TEST(InspectHostileObjects, RandomBytesAreShown) {
    std::mt19937 random(20260311);
    for (int round = 0; round < 800; ++round) {
        sb::bytes body(random() % 200);
        for (auto& byte : body)
            byte = static_cast<std::uint8_t>(random() % 3 == 0 ? random() : random() % 0x40);
        if (!body.empty()) body[0] = static_cast<std::uint8_t>(2 + random() % 2);
        if (body.size() > 1) body[1] = 0xFD;
        expect_sound(body);
    }
}

TEST(InspectHostileObjects, OverlappingLengthsAreShownOnce) {
    sb::bytes body;
    while (body.size() + 8 < 65536) {
        const std::size_t left = 65536 - body.size() - 6;
        body = sb::join({body,
                         {0x02, 0x06, 0x21, 0xFE, static_cast<std::uint8_t>(left >> 8),
                          static_cast<std::uint8_t>(left), 0x1C, 0x06}});
    }
    const owned_report owned(gathered_body(body));
    EXPECT_LT(text_report(owned.report, {}).size(), 8U << 20);
    EXPECT_LT(json_report(owned.report, false).size(), 16U << 20);
    EXPECT_LT(spi_object::xml_of(owned.report.tree).text.size(), 8U << 20);
}

}  // namespace
