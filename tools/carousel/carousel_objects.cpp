#include "tools/carousel/carousel_objects.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

#include "src/parse/mot_content.h"
#include "tools/carousel/planned_objects.h"
#include "tools/encode/broadcast_object.h"
#include "tools/encode/document_messages.h"
#include "tools/encode/mot_header.h"
#include "tools/files/input_kind.h"
#include "tools/files/whole_file.h"
#include "tools/receiver/receiver_view.h"
#include "tools/spi/decode.h"
#include "tools/text/utf8.h"

namespace dabspi::carousel {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kDayInName = 9;  // "w20260302"
constexpr std::size_t kMostOfInput = std::size_t{8} << 20;
// More is nothing that a sub-channel brings round in hours.
constexpr std::size_t kMostOfCarousel = std::size_t{32} << 20;

bytes bytes_of(const std::string& text) {
    return {text.begin(), text.end()};
}

class reader {
 public:
    reader(const reading_options& how, carousel_objects& to) : how_(how), to_(to) {}

    void read(const std::string& input) {
        std::error_code failed;
        to_.files.push_back(input);
        if (fs::is_directory(input, failed)) {
            read_folder(input);
        } else {
            read_file(input);
        }
    }

 private:
    void error(const std::string& path, const std::string& text) {
        to_.errors.push_back(printable(path) + ": " + text);
    }

    void read_folder(const std::string& folder) {
        std::error_code failed;
        std::vector<std::string> names;
        for (auto entry = fs::directory_iterator(folder, failed);
             !failed && entry != fs::directory_iterator(); entry.increment(failed)) {
            const std::string name = entry->path().filename().string();
            std::error_code unknown;
            if (name.front() != '.' && entry->is_regular_file(unknown))
                names.push_back(entry->path().string());
        }
        if (failed) error(folder, "cannot be read: " + failed.message());
        if (!failed && names.empty()) error(folder, "there are no files in it");
        std::sort(names.begin(), names.end());
        for (const std::string& each : names) {
            to_.files.push_back(each);
            read_file(each);
        }
    }

    void read_file(const std::string& path) {
        std::string failed;
        std::optional<std::string> content = read_whole_file(path, failed, kMostOfInput);
        if (!content) {
            error(path, failed);
            return;
        }
        const sniffed_input kind = sniff(std::string_view(*content).substr(0, kSniffedBytes));
        switch (kind.kind) {
            case input_kind::xml: read_document(path, std::move(*content)); break;
            case input_kind::image: add_image(path, bytes_of(*content)); break;
            case input_kind::spi_object: add_object(path, bytes_of(*content)); break;
            case input_kind::plan: read_planned_objects(path, *content, how_, to_); break;
            default: error(path, "this is no document, image, object or plan: " + what_it_is(kind));
        }
    }

    void read_document(const std::string& path, std::string text) {
        encode_options how;
        how.lenient = how_.lenient;
        how.local = how_.local;
        how.service = how_.service;
        const xml_source source(std::move(text));
        const std::string root = source.root() ? source.root().name() : "";
        if (how_.ensemble && root.find("serviceInformation") != std::string::npos)
            how.ensembles = {*how_.ensemble};
        const encoded_document made = encode_document(source, how);
        for (const source_note& each : made.errors)
            to_.errors.push_back(note_text(path, each));
        for (std::string& each : messages_of(made, path, false, "; dabspi encode --verbose lists them"))
            to_.messages.push_back(std::move(each));
        token_choice tokens;
        tokens.build = how_.tokens;
        for (const encoded_object& each : made.objects) {
            try {
                broadcast_object object = make_object(each, tokens);
                to_.all.push_back(spi_carousel_object(path, std::move(object.body), {}));
            } catch (const std::length_error& failed) {
                error(path, std::string(failed.what()) + "; split the document");
            }
        }
    }

    void add_object(const std::string& path, bytes body) {
        to_.all.push_back(spi_carousel_object(path, std::move(body), fs::path(path).filename().string()));
    }

    void add_image(const std::string& path, bytes body) {
        std::optional<carousel_object> made =
            image_carousel_object(path, std::move(body), fs::path(path).filename().string());
        if (!made) {
            error(path, "this is no PNG, JPEG, GIF or BMP image; convert it: convert " + path + " logo.png");
            return;
        }
        to_.all.push_back(std::move(*made));
    }

    const reading_options& how_;
    carousel_objects& to_;
};

void refuse_equal_names(carousel_objects& all) {
    std::map<std::string, const carousel_object*> names;
    for (const carousel_object& each : all.all) {
        const auto [known, fresh] = names.emplace(each.sent.name, &each);
        if (fresh) continue;
        all.errors.push_back(printable(each.source) + ": a second object is named " +
                             in_quotes(each.sent.name) + ", as that of " + printable(known->second->source) +
                             "; leave one of them out, or rename it");
    }
}

// What stands behind the last slash.
std::string last_part(const std::string& name) {
    return name.substr(name.rfind('/') + 1);
}

}  // namespace

carousel_object spi_carousel_object(const std::string& source, bytes body, const std::string& name) {
    const spi_object::object tree = spi_object::decode(body);
    const mot_header header = header_of(tree);
    carousel_object made;
    made.source = source;
    made.sent.name = name.empty() ? header.content_name : name;
    made.sent.content_type = header.content_type;
    made.sent.content_subtype = header.content_subtype;
    made.sent.body = std::make_shared<const bytes>(std::move(body));
    made.sent.scope_start = header.scope_start;
    made.sent.scope_end = header.scope_end;
    if (const auto id = spi_object::parse_content_id(header.scope_id))
        made.sent.scope_id = spi_object::encode_content_id(*id);
    if (const auto id = spi_object::parse_ensemble_id(header.scope_id))
        made.sent.scope_id = spi_object::encode_ensemble_id(*id);
    if (header.content_subtype != spi::kMotProgrammeInformation) return made;
    made.service = header.scope_id;
    if (header.content_name.size() > kDayInName && header.content_name.front() == 'w')
        made.day = day_of_date(header.content_name.substr(1, kDayInName - 1));
    if (header.scope_start) made.offset = header.scope_start->offset;
    return made;
}

std::optional<carousel_object> image_carousel_object(const std::string& source, bytes body,
                                                     const std::string& name) {
    carousel_object made;
    made.source = source;
    made.image = read_image_header(body);
    if (!made.image) return std::nullopt;
    made.sent.name = name;
    made.sent.content_type = spi::kMotImage;
    made.sent.content_subtype = mot_subtype(*made.image);
    made.sent.body = std::make_shared<const bytes>(std::move(body));
    return made;
}

carousel_objects read_objects(const std::vector<std::string>& inputs, const reading_options& how) {
    carousel_objects all;
    reader from(how, all);
    for (const std::string& each : inputs)
        from.read(each);
    refuse_equal_names(all);
    std::size_t size = 0;
    for (const carousel_object& each : all.all)
        size += each.sent.body->size();
    if (size > kMostOfCarousel)
        all.errors.push_back("the objects have " + std::to_string(size) + " bytes, and a carousel " +
                             std::to_string(kMostOfCarousel) + " at most; send fewer");
    if (all.errors.empty() && all.all.empty()) all.errors.emplace_back("there is nothing to send");
    return all;
}

described_services described_by(const std::vector<carousel_object>& objects, std::uint16_t ensemble) {
    described_services all;
    std::set<spi::ServElemId> known;
    for (const carousel_object& each : objects) {
        if (each.sent.content_type != spi::kMotSpiObject ||
            each.sent.content_subtype != spi::kMotServiceInformation)
            continue;
        const spi_object::receiver_view view =
            spi_object::take(*each.sent.body, each.sent.content_subtype, ensemble);
        for (const spi_object::taken_service& service : view.services) {
            all.logos.insert(all.logos.end(), service.info.logos.begin(), service.info.logos.end());
            if (known.insert(service.info.id).second)
                all.services.push_back({service.info.id, service.info.name});
        }
    }
    return all;
}

void use_announced_names(std::vector<carousel_object>& objects, const described_services& described) {
    std::map<std::string, std::set<std::string>> announced;  // by their last part
    for (const spi::SpiLogoInfo& each : described.logos)
        announced[last_part(each.name)].insert(each.name);
    for (carousel_object& each : objects) {
        if (!each.image) continue;
        const auto found = announced.find(each.sent.name);
        if (found != announced.end() && found->second.size() == 1) each.sent.name = *found->second.begin();
    }
}

}  // namespace dabspi::carousel
