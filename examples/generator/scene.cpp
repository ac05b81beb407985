#include "examples/generator/scene.h"

#include <utility>

namespace generator {

using namespace spi_builder;

namespace {

unsigned number(const std::string& text, std::size_t from, std::size_t count) {
    return static_cast<unsigned>(std::stoul(text.substr(from, count)));
}

}  // namespace

const service_id& quillhaven() {
    static const service_id id = {ecc, home_ensemble, 0x1A01};
    return id;
}

const service_id& fennmark() {
    static const service_id id = {ecc, home_ensemble, 0x1A02};
    return id;
}

const service_id& gullmere() {
    static const service_id id = {ecc, other_ensemble, 0x1B01};
    return id;
}

std::uint32_t day_number(const std::string& date) {
    return mjd(static_cast<int>(number(date, 0, 4)), number(date, 4, 2), number(date, 6, 2));
}

programme_data show(const std::string& date, const std::string& start, unsigned minutes,
                    const std::string& name) {
    programme_data out = local_show(date, start, minutes, name, 0);
    out.start.offset_half_hours.reset();
    return out;
}

programme_data local_show(const std::string& date, const std::string& start, unsigned minutes,
                          const std::string& name, int offset_half_hours) {
    programme_data out;
    out.name.medium_name = name;
    out.start = local_time(day_number(date), number(start, 0, 2), number(start, 2, 2), offset_half_hours);
    out.duration = static_cast<std::uint16_t>(minutes * 60);
    return out;
}

bytes schedule_of(const service_id& service, const std::vector<programme_data>& programmes) {
    schedule_data out;
    out.scope = service;
    out.programmes = programmes;
    return pi_object({out});
}

logo_data logo(const std::string& mime, const std::string& url, std::uint16_t width, std::uint16_t height) {
    logo_data out;
    out.mime = mime;
    out.url = url;
    out.type = logo_unrestricted;
    out.width = width;
    out.height = height;
    return out;
}

bytes service_with(const service_id& id, const std::string& name, const std::vector<logo_data>& logos) {
    service_data out;
    out.name.medium_name = name;
    out.bearers = {id};
    out.logos = logos;
    return si_object(id.ecc, id.eid, {out});
}

scene::scene(std::string name, std::string_view explanation) : name_(std::move(name)) {
    note(explanation);
}

void scene::pi(const std::string& content_name, const bytes& body, std::uint32_t data_service) {
    recording_.feed_body(programme_information(content_name, data_service), body);
}

void scene::si(const std::string& content_name, const bytes& body) {
    recording_.feed_body(service_information(content_name, home_data_service), body);
}

void scene::png(const std::string& content_name, const std::string& file, const bytes& image,
                file_set& files) {
    image_of_subtype(subtype_png, content_name, file, image, files);
}

void scene::jfif(const std::string& content_name, const std::string& file, const bytes& image,
                 file_set& files) {
    image_of_subtype(subtype_jfif, content_name, file, image, files);
}

void scene::image_of_subtype(int content_subtype, const std::string& content_name, const std::string& file,
                             const bytes& image, file_set& files) {
    const std::string path = "objects/" + file;
    files.add(path, image);
    recording_.feed_file(image_object(content_subtype, content_name, home_data_service), path);
}

}  // namespace generator
