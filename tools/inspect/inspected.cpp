#include "tools/inspect/inspected.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <map>
#include <string_view>
#include <system_error>
#include <tuple>
#include <unordered_map>

#include "src/parse/mot_content.h"
#include "tools/air/calls/multiplex_calls.h"
#include "tools/air/calls/open_calls.h"
#include "tools/air/container/opened_messages.h"
#include "tools/files/input_kind.h"
#include "tools/inspect/image_header.h"
#include "tools/spi/schema.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::size_t kLongestBody = 0x0FFFFFFF;  // a MOT body's size has 28 bits
constexpr std::size_t kMostOfOther = 1024 * 1024;
constexpr std::size_t kBeginning = 4096;

std::string_view text_of(const bytes& content) {
    return {reinterpret_cast<const char*>(content.data()), content.size()};
}

// From the first byte that is no blank, and no byte order mark.
std::string_view without_blanks(std::string_view text) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    return text;
}

struct file_closer {
    void operator()(std::FILE* file) const {
        if (file != stdin) std::fclose(file);
    }
};

bool is_other(const bytes& content) {
    inspected_body body;
    body.body = std::make_shared<const bytes>(content.begin(), content.begin() + kBeginning);
    classify(body);
    return body.kind == body_kind::other && !looks_like_recording(*body.body);
}

// Of what is no SPI object, no image and no recording only the beginning is read.
//
// Null, and `error` filled, when it cannot be read, or is longer than `most`.
std::shared_ptr<const bytes> read_all(const recording_text& from, std::size_t most, std::string& error) {
    bytes content;
    char buffer[65536];
    while (content.size() <= most) {
        const std::size_t got = from.read(buffer, sizeof buffer);
        content.insert(content.end(), buffer, buffer + got);
        if (got == 0 || (content.size() > kMostOfOther && is_other(content))) break;
    }
    if (const int failed = from.error()) {
        error = "cannot read it: " + std::generic_category().message(failed);
        return nullptr;
    }
    if (content.size() > kLongestBody && !looks_like_recording(content)) {
        error = "it is longer than the longest body of 268435455 bytes";
        return nullptr;
    }
    if (content.size() > most) {
        error = "with it more would be read than is taken; --limit raises that";
        return nullptr;
    }
    return std::make_shared<const bytes>(std::move(content));
}

class gatherer {
 public:
    gatherer(const gather_options& options, gathered& into)
        : options_(options), into_(into), left_(options.limit << 20) {}

    void argument(const std::string& path) {
        std::error_code error;
        if (path != "-" && std::filesystem::is_directory(path, error)) {
            folder(path);
        } else {
            file(path);
        }
    }

    std::function<void(std::size_t)> progress;

 private:
    void fail(const std::string& source, const std::string& text) {
        into_.errors.push_back(printable(source) + ": " + text);
    }

    void read_one() {
        ++read_;
        if (progress) progress(read_);
    }

    std::shared_ptr<const bytes> read(const std::string& path, std::string& error) {
        const std::unique_ptr<std::FILE, file_closer> file(std::fopen(path.c_str(), "re"));
        if (file == nullptr) {
            error = "cannot open it: " + std::generic_category().message(errno);
            read_one();
            return nullptr;
        }
        errno = 0;
        const auto failed = [&file] { return std::ferror(file.get()) != 0 ? errno : 0; };
        return read(
            {[&file](char* to, std::size_t space) { return std::fread(to, 1, space, file.get()); }, failed},
            error);
    }

    std::shared_ptr<const bytes> read(const recording_text& from, std::string& error) {
        const std::shared_ptr<const bytes> content = read_all(from, left_, error);
        if (content != nullptr) left_ -= content->size();
        read_one();
        return content;
    }

    void file(const std::string& path) {
        const std::string name = path == "-" ? "<stdin>" : path;
        air::open_options how;
        how.flow = options_.flow;
        how.fic = options_.fic;
        how.address = options_.address;
        air::opened_frames in = air::open_frames(path, how);
        if (in.frames != nullptr) return multiplex(in, name);
        if (!options_.fic.empty() || air::is_multiplex_kind(in.found.kind)) {
            into_.errors.push_back(in.error);
            return;
        }
        std::string error;
        const auto content = in.window == nullptr ? read(path, error) : read(air::text_of(in), error);
        if (content == nullptr) return fail(name, error);
        const sniffed_input kind = sniff(text_of(*content).substr(0, kSniffedBytes));
        const bool is_object = kind.kind == input_kind::spi_object || kind.kind == input_kind::image ||
                               kind.kind == input_kind::unknown || kind.kind == input_kind::empty;
        // Named on the command line, it is meant to be an object; for what is plainly something else, say so.
        if (!is_object && kind.kind != input_kind::call_recording && kind.kind != input_kind::other_json)
            return fail(name, "this is no binary SPI object: " + what_it_is(kind));
        if (looks_like_recording(*content)) {
            const std::string directory =
                path == "-" ? "" : std::filesystem::path(path).parent_path().string();
            return gather_recording(
                parse_recording(text_of(*content), name, directory, recording_limits::of(options_.limit)),
                options_, into_);
        }
        if (!options_.lines.empty()) return fail(name, "it is no recording, and has no lines to choose from");
        inspected_body body;
        body.source = name;
        body.body = content;
        classify(body);
        if (body.kind == body_kind::other && content->size() > kMostOfOther)
            return fail(name,
                        "it is long, and does not begin as an SPI object, an image or a recording does");
        if (body.kind == body_kind::other) body.kind = body_kind::spi_object;
        into_.bodies.push_back(std::move(body));
    }

    // Each different object that its carousels bring.
    void multiplex(air::opened_frames& in, const std::string& name) {
        air::calls_options how;
        how.which = air::delivery::once;
        air::multiplex_calls calls(*in.frames, how);
        recording received;
        received.name = name;
        std::vector<std::string> places = {{}};
        std::string clock;
        while (std::optional<call> next = calls.next()) {
            if (const auto* const now = std::get_if<set_date_time>(&next->what)) clock = ", " + now->text();
            if (const auto* const fed = std::get_if<feed_mot_body>(&next->what)) {
                if (fed->body->size() > left_)
                    return fail(name, "with it more would be read than is taken; --limit raises that");
                left_ -= fed->body->size();
            }
            next->line = places.size();
            places.push_back("frame " + std::to_string(next->frame) + clock);
            received.calls.push_back(std::move(*next));
        }
        read_one();
        const std::string why = air::why_no_frame(in, options_.flow);
        if (!why.empty()) return fail(name, why);
        if (!options_.lines.empty()) return fail(name, "it is no recording, and has no lines to choose from");
        const std::size_t before = into_.bodies.size();
        gather_recording(received, options_, into_);
        for (std::size_t i = before; i < into_.bodies.size(); ++i) {
            into_.bodies[i].place = places.at(into_.bodies[i].lines.front());
            into_.bodies[i].lines.clear();
        }
        if (before == into_.bodies.size())
            fail(name, "no object was received; \"dabspi scan\" says what there is");
    }

    void folder(const std::string& path) {
        std::vector<std::string> files;
        std::error_code error;
        auto each = std::filesystem::recursive_directory_iterator(path, error);
        for (; !error && each != std::filesystem::recursive_directory_iterator(); each.increment(error)) {
            std::error_code unknown;
            if (each->is_regular_file(unknown)) files.push_back(each->path().string());
        }
        if (error) fail(path, "cannot read the folder: " + error.message());
        if (files.empty() && !error) fail(path, "there is no file in the folder");
        if (!options_.lines.empty()) return fail(path, "it is no recording, and has no lines to choose from");
        std::sort(files.begin(), files.end());
        for (const std::string& name : files) {
            std::string why;
            inspected_body body;
            body.source = name;
            body.body = read(name, why);
            if (body.body == nullptr) {
                fail(name, why);
                continue;
            }
            classify(body);
            if (body.kind == body_kind::other && body.what.empty()) body.what = "no SPI object and no image";
            into_.bodies.push_back(std::move(body));
        }
    }

    const gather_options& options_;
    gathered& into_;
    std::size_t left_;  // bytes that may still be read
    std::size_t read_ = 0;
};

body_kind kind_of(std::uint8_t content_type) {
    return content_type == spi::kMotSpiObject ? body_kind::spi_object
           : content_type == spi::kMotImage   ? body_kind::image
                                              : body_kind::other;
}

}  // namespace

std::string inspected_body::location() const {
    if (!place.empty()) return source + ", " + place;
    return lines.empty() ? source : source + ":" + std::to_string(lines.front());
}

bool looks_like_recording(const bytes& content) {
    const std::string_view rest = without_blanks(text_of(content));
    return !rest.empty() && (rest.front() == '{' || rest.front() == '#');
}

void classify(inspected_body& body) {
    const std::string_view text = text_of(*body.body);
    body.what.clear();
    if (text.empty() || text[0] == spi_object::tag::epg || text[0] == spi_object::tag::service_information) {
        body.kind = body_kind::spi_object;
    } else if (read_image_header(*body.body)) {
        body.kind = body_kind::image;
    } else {
        body.kind = body_kind::other;
        const sniffed_input kind = sniff(text.substr(0, kSniffedBytes));
        if (kind.kind != input_kind::unknown) body.what = kind.what;
    }
}

void gather_recording(const recording& from, const gather_options& options, gathered& into) {
    for (const recording_error& error : from.errors)
        into.errors.push_back(error_text(from, error));
    // Bodies that were seen, by all that makes them what they are, a hash of their bytes included.
    std::multimap<std::tuple<unsigned, unsigned, std::string, unsigned, std::size_t>, std::size_t> seen;
    std::unordered_map<const bytes*, std::size_t> hashes;  // calls that name one file share its body
    std::vector<std::size_t> missing = options.lines;
    std::optional<std::uint16_t> ensemble;
    for (const call& each : from.calls) {
        if (const auto* current = std::get_if<set_current_service>(&each.what)) ensemble = current->ensemble;
        const auto* const feed = std::get_if<feed_mot_body>(&each.what);
        if (feed == nullptr) continue;
        if (!options.lines.empty()) {
            if (std::find(options.lines.begin(), options.lines.end(), each.line) == options.lines.end())
                continue;
            missing.erase(std::remove(missing.begin(), missing.end(), each.line), missing.end());
        }
        const auto [hash, fresh] = hashes.try_emplace(feed->body.get());
        if (fresh) hash->second = std::hash<std::string_view>()(text_of(*feed->body));
        const auto key = std::make_tuple(unsigned{feed->content_type}, unsigned{feed->content_subtype},
                                         feed->content_name, ensemble ? *ensemble + 1U : 0U, hash->second);
        const auto [first, last] = seen.equal_range(key);
        const auto same = std::find_if(first, last, [&](const auto& entry) {
            const std::shared_ptr<const bytes>& known = into.bodies[entry.second].body;
            return known == feed->body || *known == *feed->body;
        });
        if (same != last) {
            into.bodies[same->second].lines.push_back(each.line);
            continue;
        }
        inspected_body body;
        body.source = from.name;
        body.lines = {each.line};
        body.content_name = feed->content_name;
        body.content_type = feed->content_type;
        body.content_subtype = feed->content_subtype;
        body.ensemble = ensemble;
        body.body = feed->body;
        body.kind = kind_of(feed->content_type);
        if (body.kind == body_kind::other) body.what = "of ContentType " + std::to_string(feed->content_type);
        seen.emplace(key, into.bodies.size());
        into.bodies.push_back(std::move(body));
    }
    for (const std::size_t line : missing)
        into.errors.push_back(printable(from.name) + ":" + std::to_string(line) +
                              ": there is no FeedMotBody on this line");
}

gathered gather(const std::vector<std::string>& paths, const gather_options& options,
                const std::function<void(std::size_t)>& progress) {
    gathered result;
    gatherer work(options, result);
    work.progress = progress;
    for (const std::string& path : paths)
        work.argument(path);
    return result;
}

}  // namespace dabspi
