// What there is to inspect behind the names on the command line: objects in files, in recordings and in
// folders of bodies as receivers dump them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/recording/recording.h"

namespace dabspi {

enum class body_kind { spi_object, image, other };

// One body, once, however often it was sent.
struct inspected_body {
    std::string source;              // the file, as named
    std::vector<std::size_t> lines;  // of the recording that feed it; empty for a file
    std::string place;               // of a multiplex: "frame 7, 2026-03-02 10:31"; else empty
    std::string content_name;        // of a recording's and a multiplex's; else empty
    std::optional<std::uint8_t> content_type;
    std::optional<std::uint16_t> content_subtype;
    std::optional<std::uint16_t> ensemble;  // current when it was first fed
    std::shared_ptr<const bytes> body;
    body_kind kind = body_kind::spi_object;
    std::string what;  // of another kind: what it looks like

    // "day.jsonl:12", "objects/si.bin", "a.eti, frame 7"
    std::string location() const;
};

struct gathered {
    std::vector<inspected_body> bodies;
    std::vector<std::string> errors;  // "FILE: what is wrong": none of these can be used
};

struct gather_options {
    std::vector<std::size_t> lines;  // of recordings: only these calls; empty: all
    // Of all files together, in MiB, and of the bodies of a recording.
    std::size_t limit = 256;
    std::string flow;  // of packet captures: PORT or ADDRESS:PORT
    std::string fic;   // see air::open_options
    int address = -1;
};

// Reads files; standard input is "-". `progress` is called after each file.
gathered gather(const std::vector<std::string>& paths, const gather_options& options,
                const std::function<void(std::size_t)>& progress = {});

// The calls of one recording, each different body once.
void gather_recording(const recording& from, const gather_options& options, gathered& into);

// By the first bytes: a recording begins with "{" or "#", after blanks.
bool looks_like_recording(const bytes& content);

// By its first bytes, for a body of unknown content type.
void classify(inspected_body& body);

}  // namespace dabspi
