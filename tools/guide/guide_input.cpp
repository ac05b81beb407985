#include "tools/guide/guide_input.h"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "tools/check/input.h"
#include "tools/encode/broadcast_object.h"
#include "tools/encode/document_messages.h"
#include "tools/files/input_kind.h"
#include "tools/files/whole_file.h"
#include "tools/guide/guide_reader.h"
#include "tools/inspect/inspected.h"
#include "tools/text/utf8.h"

namespace dabspi::guide {

namespace {

bool is_document(const std::string& path) {
    std::error_code failed;
    if (path == "-" || !std::filesystem::is_regular_file(path, failed)) return false;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "re"), &std::fclose);
    if (file == nullptr) return false;
    std::string beginning(kSniffedBytes, '\0');
    beginning.resize(std::fread(beginning.data(), 1, beginning.size(), file.get()));
    return sniff(beginning).kind == input_kind::xml;
}

class input_reader {
 public:
    explicit input_reader(const guide_settings& settings) : settings_(settings) {}

    void read(const std::string& path) {
        if (is_document(path)) {
            read_document(path);
        } else {
            read_objects(path);
        }
    }

    guide_input finish() {
        if (made_.errors.empty()) made_.guide = reader_.finish();
        return std::move(made_);
    }

 private:
    void read_document(const std::string& path) {
        std::string error;
        std::optional<std::string> content = read_whole_file(path, error, settings_.limit << 20);
        if (!content) {
            made_.errors.push_back(printable(path) + ": " + error);
            return;
        }
        encode_options how;
        how.local = settings_.local;
        how.service = settings_.service;
        how.most_bytes = settings_.limit << 20;
        encoded_document document = encode_document(xml_source(std::move(*content)), how);
        for (const source_note& each : document.errors)
            made_.errors.push_back(note_text(path, each));
        for (std::string& each : messages_of(document, path, false, "; dabspi encode --verbose lists them"))
            made_.said.push_back(std::move(each));
        for (const encoded_object& each : document.objects) {
            try {
                broadcast_object object = make_object(each, {});
                // Each document stands for itself: two of one day may have one usual name.
                reader_.add_object(std::make_shared<const bytes>(std::move(object.body)), {}, {});
            } catch (const std::length_error& failed) {
                made_.errors.push_back(printable(path) + ": " + failed.what() + "; split the document");
            }
        }
    }

    void read_objects(const std::string& path) {
        check::folder_options how;
        how.limit = settings_.limit;
        for (check::checked_input& each : check::read_inputs(path, how)) {
            for (std::string& error : each.errors)
                made_.errors.push_back(std::move(error));
            gathered found;
            gather_recording(each.calls, {}, found);
            for (inspected_body& body : found.bodies) {
                if (body.kind == body_kind::spi_object)
                    reader_.add_object(std::move(body.body), body.content_name, body.ensemble);
                else if (body.kind == body_kind::image)
                    reader_.add_image(std::move(body.body), body.content_name);
            }
        }
    }

    const guide_settings& settings_;
    guide_reader reader_;
    guide_input made_;
};

}  // namespace

guide_input read_guide(const std::vector<std::string>& paths, const guide_settings& settings) {
    input_reader reader(settings);
    for (const std::string& each : paths)
        reader.read(each);
    return reader.finish();
}

}  // namespace dabspi::guide
