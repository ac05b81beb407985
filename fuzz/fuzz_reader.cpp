// The reader itself, walked in a way that the input decides: no read leaves the body, and no walk exceeds its
// budget.
#include "fuzz/fuzz_support.h"
#include "src/parse/reader/spi_parseable.h"
#include "src/parse/reader/spi_token_table.h"

namespace {

std::uint64_t opened;
std::uint64_t string_bytes;

void walk(spi::spi_parseable& element, spi::SpiTokenTable& tokens, unsigned depth) {
    while (element.has_more()) {
        spi::spi_parseable child(element);
        ++opened;
        expect(child.content_left() <= element.buf.size, "content lies in the body");
        std::string text;
        switch (child.tag % 9) {
            case 0: child.ru8(); break;
            case 1: child.ru16(); break;
            case 2: child.ru32(); break;
            case 3: child.buf.ru24(); break;
            case 4: child.buf.skip_elem(); break;
            case 5: tokens.parse(child); break;
            case 6: child.buf.read_string(text, child.content_left(), tokens); break;
            case 7: child.buf.read_string(text, child.len); break;
            default:
                if (depth < 200) walk(child, tokens, depth + 1);
        }
        string_bytes += text.size();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    opened = 0;
    string_bytes = 0;
    spi::ReadBuffer buffer(body_of(data, size));
    spi::SpiTokenTable tokens;
    while (buffer.in_body()) {
        spi::spi_parseable element(buffer);
        ++opened;
        walk(element, tokens, 0);
    }
    expect(opened <= 2 * std::uint64_t{size} + 4096 + 256,
           "scopes within the budget (each open one may notice its end)");
    expect(string_bytes <= 255 * std::uint64_t{size} + 65536 + 4 * std::uint64_t{size} + 65536,
           "string bytes within the budget");
    return 0;
}
