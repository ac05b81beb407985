#include "tools/air/container/open_frames.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "tools/air/container/container_form.h"
#include "tools/air/container/dump_reader.h"
#include "tools/air/container/edi_reader.h"
#include "tools/air/container/eti_reader.h"
#include "tools/text/utf8.h"

namespace dabspi::air {

namespace {

// What a window gives, from its place on: for libpcap, which reads by itself.
class window_source final : public byte_source {
 public:
    explicit window_source(input_window& window) : window_(window) {}
    std::size_t read(std::uint8_t* to, std::size_t space) override {
        const byte_view seen = window_.see(1).part(0, space);
        std::copy(seen.begin(), seen.end(), to);
        window_.skip(seen.size());
        return seen.size();
    }

 private:
    input_window& window_;
};

std::string message(const std::string& name, const std::string& what) {
    return printable(name == "-" ? "<stdin>" : name) + ": " + what;
}

// Looks further only where the beginning says nothing: of a pipe, no more than needed is waited for.
content look(input_window& window, const std::string& name) {
    content found;
    for (const std::size_t count : {kFormSeen / 2, kFormSeen, input_window::kMostSeen}) {
        const byte_view seen = window.see(count);
        const bool whole = seen.size() < count;
        found = content_of(seen.part(0, count), whole, name);
        if (whole || found.kind != content_kind::unknown) break;
    }
    return found;
}

void make_reader(opened_frames& in, const std::string& name, const open_options& options) {
    input_window& window = *in.window;
    switch (in.found.kind) {
        case content_kind::raw_eti: in.frames = std::make_unique<eti_reader>(window, eti_form::raw); return;
        case content_kind::streamed_eti:
            in.frames = std::make_unique<eti_reader>(window, eti_form::streamed);
            return;
        case content_kind::framed_eti:
            in.frames = std::make_unique<eti_reader>(window, eti_form::framed);
            return;
        case content_kind::edi: in.frames = std::make_unique<edi_reader>(window); return;
        case content_kind::capture: break;
        default: in.error = refusal(name, in.found, kMultiplexes); return;
    }
    try {
        in.all_bytes = std::make_unique<window_source>(window);
        auto reader = std::make_unique<capture_reader>(*in.all_bytes, options.flow);
        in.capture = reader.get();
        in.frames = std::move(reader);
    } catch (const std::runtime_error& problem) {
        in.error = message(name, problem.what());
    }
}

}  // namespace

namespace {

bool is_multiplex(content_kind kind) {
    return kind == content_kind::raw_eti || kind == content_kind::streamed_eti ||
           kind == content_kind::framed_eti || kind == content_kind::edi || kind == content_kind::capture;
}

void make_dump_reader(opened_frames& in, const std::string& name, const open_options& options) {
    if (is_multiplex(in.found.kind)) {
        in.error = message(name, "it is " + in.found.words + ", and has its FIC in it; leave --fic out");
        return;
    }
    std::ifstream file(options.fic, std::ios::binary);
    std::vector<std::uint8_t> fic((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    spi_component component;
    std::string error = "cannot be read: " + std::generic_category().message(errno);
    if (!file || !find_dumped_component(fic, options.address, component, error)) {
        in.error = message(options.fic, error);
        return;
    }
    in.found = {content_kind::sub_channel, "one sub-channel's bytes, with its FIC", ""};
    in.frames = std::make_unique<dump_reader>(*in.window, std::move(fic), component);
}

}  // namespace

opened_frames open_frames(std::unique_ptr<byte_source> bytes, const std::string& name,
                          const open_options& options) {
    opened_frames in;
    in.bytes = std::move(bytes);
    in.window = std::make_unique<input_window>(*in.bytes);
    in.found = look(*in.window, name);
    if (in.read_error() != 0) {
        in.error = message(name, "cannot be read: " + std::generic_category().message(in.read_error()));
        return in;
    }
    if (options.fic.empty()) {
        make_reader(in, name, options);
    } else {
        make_dump_reader(in, name, options);
    }
    return in;
}

opened_frames open_frames(const std::string& path, const open_options& options) {
    opened_frames in;
    const bool standard_input = path == "-";
    const int descriptor = standard_input ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat about {};
    if (descriptor < 0 || ::fstat(descriptor, &about) != 0) {
        in.error = message(path, "cannot be opened: " + std::generic_category().message(errno));
        return in;
    }
    auto bytes = std::make_unique<descriptor_source>(descriptor, options.given_up);
    if (S_ISDIR(about.st_mode)) {
        in.found = content_of_folder();
        in.error = refusal(path, in.found, kMultiplexes);
        return in;
    }
    in = open_frames(std::move(bytes), path, options);
    if (S_ISREG(about.st_mode)) in.size = static_cast<std::uint64_t>(about.st_size);
    return in;
}

}  // namespace dabspi::air
