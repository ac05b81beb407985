// An object of any content: its tree covers its bytes once, the texts, the JSON and the XML made of it are
// what they should be and bounded, and what a receiver is said to take is what the library's parsers send.
#include <nlohmann/json.hpp>
#include <pugixml.hpp>

#include "fuzz/fuzz_support.h"
#include "src/event/payloads.h"
#include "src/parse/body/pi_body_parser.h"
#include "src/parse/body/si_body_parser.h"
#include "tools/inspect/json_report.h"
#include "tools/inspect/text_report.h"
#include "tools/spi/xml_document.h"
#include "tools/text/utf8.h"

namespace {

namespace so = dabspi::spi_object;

void check_tree(const so::object& tree, std::size_t size) {
    std::size_t nodes = 0;
    so::visit(tree, [&](const so::node& each, const std::vector<const so::node*>& above) {
        ++nodes;
        expect(each.offset < each.content() && each.end() <= (above.empty() ? size : above.back()->end()),
               "a node lies inside its parent");
        std::uint32_t at = each.content();
        for (const so::node& child : each.children) {
            expect(child.offset == at, "children leave no gap");
            at = child.end();
        }
    });
    expect(nodes <= size, "a node has a byte of its own");
    for (const so::problem_at& each : so::problems_of(tree))
        expect(each.what->offset <= size, "a problem has a place");
}

void check_receiver(const std::uint8_t* data, std::size_t size, std::uint16_t ensemble) {
    static sender& out = *new sender;
    spi::PiBodyParser(out.worker, ensemble).parse(body_of(data, size));
    const so::receiver_view pi = so::take({data, size}, 1, ensemble);
    std::size_t sent = 0;
    for (const so::taken_programme& each : pi.programmes) {
        if (each.dropped) continue;
        expect(sent < out.router.events.size(), "no programme is invented");
        const auto& event = dynamic_cast<const spi::pi_programme_event&>(*out.router.events[sent++].payload);
        expect(event.service == each.service && event.programme.name == each.programme.name,
               "programmes agree");
    }
    expect(sent == out.router.events.size() || pi.more != 0, "no programme is missed");
    out.router.events.clear();
    spi::SiBodyParser(out.worker).parse({}, body_of(data, size));
    const so::receiver_view si = so::take({data, size}, 0, ensemble);
    expect(si.services.size() + si.more == out.router.events.size(), "services agree");
    out.router.events.clear();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    dabspi::inspected_body body;
    body.source = "fuzzed";
    if (data[0] < 4) body.content_subtype = std::uint16_t{data[0]};
    if (data[0] < 4) body.content_type = std::uint8_t{7};
    data += 2;
    size -= 2;
    body.body = std::make_shared<const dabspi::bytes>(data, data + size);
    const dabspi::object_report report = dabspi::inspect_object(body, std::nullopt);
    check_tree(report.tree, size);
    check_receiver(data, size, so::home_ensemble(report.tree).value_or(0));

    dabspi::text_style style;
    style.hex = true;
    const std::string text = dabspi::text_report(report, style);
    // Deep nodes are indented, receivers read overlapping elements again and expand tokens: linear, with a
    // large factor.
    expect(text.size() <= 4096 * size + (2U << 20), "the text is bounded");
    expect(dabspi::is_well_formed_utf8(text), "the text is UTF-8");
    for (const char c : text)
        expect(c == '\n' || static_cast<unsigned char>(c) >= 0x20, "no byte drives a terminal");
    expect(nlohmann::json::accept(dabspi::json_report(report, true)), "the JSON is JSON");
    const so::xml_document xml = so::xml_of(report.tree);
    if (!xml.text.empty()) {
        pugi::xml_document parsed;
        expect(static_cast<bool>(parsed.load_string(xml.text.c_str())), "the XML is XML");
        expect(dabspi::is_well_formed_utf8(xml.text), "the XML is UTF-8");
    }
    return 0;
}
