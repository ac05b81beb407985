// A token table of any content, and a string read with it. Checked against a table read in the plainest way.
#include <map>
#include <string>

#include "fuzz/fuzz_support.h"
#include "src/parse/spi_token_table.h"

namespace {

bool is_code(unsigned byte) {
    return (byte >= 0x01 && byte <= 0x08) || byte == 0x0B || byte == 0x0C || (byte >= 0x0E && byte <= 0x13);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    // First byte: how much of the rest is the table, in one-byte lengths only; what follows is the string.
    const std::size_t table_size = std::min<std::size_t>({data[0], size - 1, 253});
    std::vector<std::uint8_t> object{0x04, static_cast<std::uint8_t>(table_size)};
    object.insert(object.end(), data + 1, data + size);
    spi::ReadBuffer buffer(body_of(object.data(), object.size()));
    spi::SpiTokenTable tokens;
    {
        spi::spi_parseable element(buffer);
        tokens.parse(element);
    }
    std::string text;
    const std::uint32_t rest = buffer.size - buffer.pos;
    expect(buffer.pos == 2 + table_size, "closing the table moves behind it");
    expect(buffer.read_string(text, rest, tokens) == rest, "a string read returns the stated length");

    std::map<unsigned, std::string> expected;
    std::string plain;
    std::size_t i = 2;
    while (i + 1 < 2 + table_size) {
        const unsigned code = object[i];
        const std::size_t len = object[i + 1];
        if (code == 0x7F || len >= 0xFE) return 0;  // other forms: the walk alone is of interest
        const std::size_t end = i + 2 + len;
        if (end > object.size()) return 0;
        if (len > 0)
            expected.emplace(code, std::string(object.begin() + static_cast<long>(i) + 2,
                                               object.begin() + static_cast<long>(end)));
        i = end;
    }
    if (i + 1 == 2 + table_size) return 0;  // a tag alone at the end takes its length from behind the table
    for (std::size_t at = 2 + table_size; at < object.size(); ++at) {
        const unsigned byte = object[at];
        if (!is_code(byte)) {
            plain += static_cast<char>(byte);
        } else if (expected.count(byte) != 0) {
            plain += expected[byte];
        }
    }
    expect(text == plain, "the string is expanded as the table says");
    return 0;
}
