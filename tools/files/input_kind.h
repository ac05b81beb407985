// What an input is, by its first bytes, in the words of those who have such files, and which subcommand takes
// it. Pure: any bytes are an input, nothing is read or kept. Any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace dabspi {

enum class input_kind {
    empty,
    spi_object,
    xml,
    plan,
    call_recording,
    other_json,
    image,
    eti,
    edi,
    capture,
    gzip,
    zip,
    text,
    unknown,
};

struct sniffed_input {
    input_kind kind = input_kind::unknown;
    std::string what;      // "an XML document", printable
    std::string taken_by;  // the subcommands' names, "encode" or "replay, check and inspect"; empty: none
};

// So many bytes from the beginning are enough to tell; fewer will do when the input is shorter.
constexpr std::size_t kSniffedBytes = 16384;

sniffed_input sniff(std::string_view beginning);

// "it is an XML document (programme information); \"dabspi encode\" takes it"
std::string what_it_is(const sniffed_input& input);

// The same for a folder.
std::string what_a_folder_is();

}  // namespace dabspi
