#include "tests/tools/check/broadcast.h"

#include <png.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "tools/playing/storage.h"

namespace check_test {

using namespace spi_builder;

template <class Call>
broadcast& broadcast::add(Call what) {
    calls_.name = "test.jsonl";
    calls_.calls.push_back({calls_.calls.size() + 1, std::move(what)});
    return *this;
}

broadcast& broadcast::clock(const std::string& date, const std::string& time) {
    return add(dabspi::set_date_time{date, time});
}

broadcast& broadcast::listen(std::uint32_t sid, std::uint16_t ensemble) {
    return add(dabspi::set_current_service{{sid, 0xE1, 0}, ensemble});
}

broadcast& broadcast::feed(std::uint8_t type, std::uint16_t subtype, const std::string& name,
                           const bytes& body, std::uint32_t data_service) {
    dabspi::feed_mot_body call;
    call.content_type = type;
    call.content_subtype = subtype;
    call.content_name = name;
    call.service = {data_service, 0xE1, 0};
    call.body = std::make_shared<const bytes>(body);
    return add(std::move(call));
}

dabspi::check::check_report broadcast::check(dabspi::check::severity from) const {
    const dabspi::storage store = dabspi::storage::temporary();
    return dabspi::check::check_input(dabspi::check::input_of(calls_), from, store.path());
}

programme_data programme(const std::string& name, std::uint32_t day, unsigned hour, unsigned minute,
                         unsigned minutes) {
    programme_data data;
    data.name.medium_name = name;
    data.start = local_time(day, hour, minute, 2);
    data.duration = static_cast<std::uint16_t>(minutes * 60);
    return data;
}

std::vector<programme_data> whole_day(std::uint32_t day) {
    return {programme("Night", day, 0, 0, 360), programme("Morning", day, 6, 0, 360),
            programme("Afternoon", day, 12, 0, 360), programme("Evening", day, 18, 0, 360)};
}

bytes schedule_object(const std::vector<programme_data>& programmes, const tokens& table) {
    schedule_data schedule;
    schedule.scope = kStation;
    schedule.programmes = programmes;
    return pi_object({schedule}, table);
}

logo_data logo(const std::string& name, std::uint16_t width, std::uint16_t height) {
    logo_data data;
    data.mime = "image/png";
    data.url = name;
    data.width = width;
    data.height = height;
    return data;
}

service_data station_with(const std::vector<logo_data>& logos) {
    service_data service;
    service.name.medium_name = "Station";
    service.bearers = {kStation};
    service.logos = logos;
    return service;
}

bytes information_object(const service_data& service) {
    return si_object(0xE1, kEnsemble, {service});
}

bytes png(unsigned width, unsigned height) {
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = width;
    image.height = height;
    image.format = PNG_FORMAT_GRAY;
    const bytes pixels(std::size_t{width} * height, 0x80);
    bytes file(100000);
    png_alloc_size_t size = file.size();
    if (png_image_write_to_memory(&image, file.data(), &size, 0, pixels.data(), 0, nullptr) == 0)
        throw std::runtime_error(image.message);
    file.resize(size);
    return file;
}

broadcast tuned() {
    broadcast calls;
    calls.clock("20260310", "0000").listen();
    return calls;
}

broadcast with_today(const bytes& object) {
    broadcast calls = tuned();
    calls.si("si.eib",
             information_object(station_with({logo("128.png", 128, 128), logo("320.png", 320, 240)})));
    calls.image("128.png", png(128, 128)).image("320.png", png(320, 240));
    calls.pi("today.ehb", object).pi("tomorrow.ehb", schedule_object(whole_day(kToday + 1)));
    calls.clock("20260310", "0001");
    return calls;
}

broadcast clean() {
    return with_today(schedule_object(whole_day(kToday)));
}

std::vector<std::string> codes(const dabspi::check::check_report& of) {
    std::vector<std::string> all;
    for (const dabspi::check::finding& each : of.findings) {
        const std::string name = entry_of(each.code).name;
        if (std::find(all.begin(), all.end(), name) == all.end()) all.push_back(name);
    }
    return all;
}

const dabspi::check::finding* find(const dabspi::check::check_report& of, dabspi::check::finding_code code) {
    for (const dabspi::check::finding& each : of.findings)
        if (each.code == code) return &each;
    return nullptr;
}

}  // namespace check_test
