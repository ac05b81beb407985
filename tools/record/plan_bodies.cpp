#include "tools/record/plan_bodies.h"

#include <filesystem>

#include "src/parse/mot_content.h"
#include "tools/encode/document_messages.h"
#include "tools/files/whole_file.h"
#include "tools/inspect/image_header.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::size_t kMostOfDocument = std::size_t{8} << 20;  // as dabspi encode takes it

std::string how_it_is_encoded(const planned_object& object) {
    std::string key = object.ensemble ? ensemble_id_text(*object.ensemble) : "";
    key += object.lenient ? "/lenient" : "/";
    key += "/" + object.offset;
    key += object.tokens.build ? "/tokens" : "/";
    for (const auto& [code, text] : object.tokens.given)
        key += "/" + std::to_string(code) + "=" + std::to_string(text.size()) + ":" + text;
    return key;
}

}  // namespace

std::optional<planned_body> plan_bodies::make(const planned_object& object, const std::string& source) {
    sources_.insert(path_of(source));
    if (object.what != planned_object::kind::xml) return read(object, source);
    const std::string key = source + "\n" + how_it_is_encoded(object);
    const auto known = encoded_.find(key);
    if (known != encoded_.end()) {
        if (!known->second) errors_.push_back(in_quotes(source, 200) + " cannot be used, see above");
        return known->second;
    }
    return encoded_[key] = encode(object, source);
}

std::string plan_bodies::path_of(const std::string& source) const {
    return (std::filesystem::path(directory_) / source).lexically_normal().string();
}

std::optional<planned_body> plan_bodies::encode(const planned_object& object, const std::string& source) {
    const std::string path = path_of(source);
    std::string error;
    std::optional<std::string> text = read_whole_file(path, error, kMostOfDocument);
    if (!text) {
        errors_.push_back(printable(path) + ": " + error);
        return std::nullopt;
    }
    encode_options how;
    how.lenient = object.lenient;
    how.local = object.local;
    if (object.ensemble) how.ensembles = {*object.ensemble};
    encoded_document document = encode_document(xml_source(std::move(*text)), how);
    for (const source_note& each : document.errors)
        errors_.push_back(note_text(path, each));
    document.remarks.clear();  // their remedies are options of encode; and a plan may mean it so
    for (std::string& each : messages_of(document, path, false, {}))
        if (said_.insert(each).second)
            messages_.push_back(std::move(each));  // a document may give several objects
    if (document.objects.empty()) return std::nullopt;
    if (document.objects.size() > 1) {
        std::string ensembles;
        for (const encoded_object& each : document.objects)
            ensembles += (ensembles.empty() ? "" : ", ") +
                         (each.ensemble ? ensemble_id_text(*each.ensemble) : std::string("several"));
        errors_.push_back(printable(path) + ": the document gives " +
                          std::to_string(document.objects.size()) +
                          " objects; choose one with \"ensemble\": " + ensembles);
        return std::nullopt;
    }
    try {
        broadcast_object made = make_object(document.objects.front(), object.tokens);
        planned_body result;
        result.saved =
            made.size_without_tokens > made.body.size() ? made.size_without_tokens - made.body.size() : 0;
        result.body = std::make_shared<const bytes>(std::move(made.body));
        result.content_name = made.header.content_name;
        result.content_type = made.header.content_type;
        result.content_subtype = made.header.content_subtype;
        return result;
    } catch (const std::length_error& failed) {
        errors_.push_back(printable(path) + ": " + failed.what() + "; split the document");
        return std::nullopt;
    }
}

std::optional<planned_body> plan_bodies::read(const planned_object& object, const std::string& source) {
    const body_files::result& file = files_.read(source);
    if (file.body == nullptr) {
        errors_.push_back(file.error);
        return std::nullopt;
    }
    planned_body result;
    result.body = file.body;
    result.content_name = std::filesystem::path(source).filename().string();
    if (object.what == planned_object::kind::object) return result;
    const std::optional<image_header> image = read_image_header(*file.body);
    if (!image && !object.content_subtype) {
        errors_.push_back(
            in_quotes(source, 200) +
            " is no PNG, JPEG, GIF or BMP image; send it as an \"object\", or say its \"content_subtype\"");
        return std::nullopt;
    }
    result.content_type = spi::kMotImage;
    result.content_subtype = image ? mot_subtype(*image) : std::uint16_t{0};
    return result;
}

}  // namespace dabspi
