// What a file, a folder or a pipe holds, by its first bytes: one place for every subcommand. Pure.
#pragma once

#include <cstddef>
#include <string>

#include "tools/spi/byte_view.h"

namespace dabspi {

enum class content_kind {
    raw_eti,
    streamed_eti,
    framed_eti,
    edi,
    capture,      // pcap, pcapng
    sub_channel,  // of a receiver's dump, with its FIC in another file
    recording,
    plan,      // any other JSON document
    document,  // XML
    spi_object,
    image,
    folder,
    empty,
    something_else,  // known, and nothing that dabspi takes: `words` says what
    unknown,
};

struct content {
    content_kind kind = content_kind::unknown;
    std::string words;   // "an MPEG transport stream"
    std::string remedy;  // for something_else, where there is one: what to do with it, a sentence
};

// `first` are the first bytes, better 24 KiB than fewer; `whole`: there are no others. `path` helps where
// bytes say little; it is not opened.
content content_of(spi_object::byte_view first, bool whole, const std::string& path);

// For scripts: "raw", "streamed", "framed", "edi", "pcap", "recording", ...
const char* short_name(content_kind kind);

// A folder, without its bytes.
content content_of_folder();

// "FILE: it looks like WORDS; taken are ...", for an input that is nothing of what a command takes. `taken`
// says what that is.
std::string refusal(const std::string& path, const content& found, const std::string& taken);

// What a command takes that reads multiplexes.
extern const char* const kMultiplexes;

}  // namespace dabspi
