// A token table of any content, and a string read with it. Checked against a table read in the plainest way.
#include <map>
#include <string>

#include "fuzz/fuzz_support.h"
#include "src/parse/reader/spi_token_table.h"

namespace {

bool is_code(unsigned byte) {
    return (byte >= 0x01 && byte <= 0x08) || byte == 0x0B || byte == 0x0C || (byte >= 0x0E && byte <= 0x13);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    // The first two bytes: how much of the rest is the table; what follows is the string.
    const std::size_t table_size = std::min(std::size_t{data[0]} << 8 | data[1], size - 2);
    std::vector<std::uint8_t> object{0x04, 0xFE, static_cast<std::uint8_t>(table_size >> 8),
                                     static_cast<std::uint8_t>(table_size)};
    const std::size_t table_begin = object.size();
    const std::size_t table_end = table_begin + table_size;
    object.insert(object.end(), data + 2, data + size);
    spi::ReadBuffer buffer(body_of(object.data(), object.size()));
    spi::SpiTokenTable tokens;
    {
        spi::spi_parseable element(buffer);
        tokens.parse(element);
    }
    std::string text;
    const std::uint32_t rest = buffer.size - buffer.pos;
    expect(buffer.pos == table_end, "closing the table moves behind it");
    expect(buffer.read_string(text, rest, tokens) == rest, "a string read returns the stated length");

    std::map<unsigned, std::string> expected;
    std::string plain;
    std::size_t i = table_begin;
    while (i < table_end) {
        // Headers that reach over the table's end are read from behind it: the walk alone is of interest.
        if (i + 1 >= table_end) return 0;
        const unsigned code = object[i];
        std::size_t len = object[i + 1];
        std::size_t begin = i + 2;
        if (code == 0x7F || len == 0xFF) return 0;  // no tag; three-byte lengths
        if (len == 0xFE) {
            if (i + 3 >= table_end) return 0;
            len = static_cast<std::size_t>(object[i + 2] << 8 | object[i + 3]);
            begin = i + 4;
        }
        if (begin + len > table_end) return 0;
        if (len > 0 && len <= 255)
            expected.emplace(code, std::string(object.begin() + static_cast<long>(begin),
                                               object.begin() + static_cast<long>(begin + len)));
        i = begin + len;
    }
    for (std::size_t at = table_end; at < object.size(); ++at) {
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
