// Opens a multiplex, whatever its container, recognised by its content. Standard input is read as it comes.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "tools/air/container/byte_source.h"
#include "tools/air/container/capture_reader.h"
#include "tools/air/container/frame_source.h"
#include "tools/air/container/input_window.h"
#include "tools/files/content_kind.h"

namespace dabspi::air {

struct open_options {
    std::string flow;                // of captures: PORT or ADDRESS:PORT; empty: the first with EDI
    std::string fic;                 // the input is one sub-channel's bytes, and this file its FIC
    int address = -1;                // with it: the packet address, where there are several
    std::function<bool()> given_up;  // asked while reading; true ends the input
};

// The frames of one input, and what it is. Owns everything under them.
struct opened_frames {
    std::unique_ptr<byte_source> bytes;
    std::unique_ptr<input_window> window;
    std::unique_ptr<byte_source> all_bytes;   // of captures: those of the window, then the rest
    std::unique_ptr<frame_source> frames;     // null: it could not be opened
    const capture_reader* capture = nullptr;  // `frames`, if that is one
    content found;
    std::string error;       // with null `frames`: for the user, one line, with the file's name
    std::uint64_t size = 0;  // of the file in bytes, 0 if it is none
    int read_error() const { return bytes == nullptr ? 0 : bytes->error(); }
};

// `path` "-" is standard input. Folders, recordings and everything else that has no frames give an error that
// says what they are.
opened_frames open_frames(const std::string& path, const open_options& options = {});

// The same for bytes that come from anywhere; `name` is for messages.
opened_frames open_frames(std::unique_ptr<byte_source> bytes, const std::string& name,
                          const open_options& options = {});

}  // namespace dabspi::air
