// A document of any bytes: it is refused with a place in it, or gives objects that are well formed, that say
// the same with tokens, and that are the same again when encoded from what they are shown as.
#include "fuzz/fuzz_support.h"
#include "tools/encode/broadcast_object.h"
#include "tools/spi/decode.h"
#include "tools/spi/xml_document.h"

namespace {

namespace so = dabspi::spi_object;

void check_notes(const std::vector<dabspi::source_note>& notes) {
    for (const dabspi::source_note& each : notes)
        expect(each.line > 0 && each.column > 0 && !each.text.empty(), "a note has a place and a text");
}

void check_object(const dabspi::encoded_object& object) {
    dabspi::token_choice tokens;
    tokens.build = true;
    const dabspi::broadcast_object smaller = make_object(object, tokens);
    const so::bytes plain = write_object(object.top);
    expect(smaller.body.size() <= plain.size(), "tokens save");
    expect(so::decode(smaller.body).well_formed(), "well formed");
    const std::string shown = xml_of(so::decode(plain)).text;
    expect(xml_of(so::decode(smaller.body)).text == shown, "tokens change nothing");

    // Line ends around a text are layout in a document, and texts in an object.
    const std::size_t top = shown.find(" xmlns=");
    const std::string again = shown.substr(0, top) + " xml:space=\"preserve\"" + shown.substr(top);
    const dabspi::xml_source source(again);
    const dabspi::encoded_document made = encode_document(source, {});
    expect(made.objects.size() == 1, "what was encoded can be encoded");
    expect(write_object(made.objects.front().top) == plain, "and is the same again");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1 || size > 20000) return 0;
    dabspi::encode_options options;
    options.lenient = (data[0] & 1) != 0;
    const dabspi::xml_source source(std::string(reinterpret_cast<const char*>(data) + 1, size - 1));
    const dabspi::encoded_document made = encode_document(source, options);
    check_notes(made.errors);
    check_notes(made.warnings);
    expect(made.errors.empty() != made.objects.empty(), "objects or errors");
    for (const dabspi::encoded_object& each : made.objects)
        check_object(each);
    return 0;
}
