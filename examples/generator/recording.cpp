#include "examples/generator/recording.h"

#include <cstdio>
#include <nlohmann/json.hpp>

namespace generator {

using nlohmann::ordered_json;
using spi_builder::bytes;

namespace {

std::string hex(std::uint32_t value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", value);
    return text;
}

std::string base64(const bytes& body) {
    static const char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (std::size_t i = 0; i < body.size(); i += 3) {
        const std::size_t here = std::min<std::size_t>(3, body.size() - i);
        std::uint32_t group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = group << 8 | (k < here ? body[i + k] : 0U);
        for (std::size_t k = 0; k < 4; ++k) {
            out += k <= here ? digits[group >> (18 - 6 * k) & 0x3F] : '=';
        }
    }
    return out;
}

ordered_json feed(const mot_object& object) {
    return {{"call", "FeedMotBody"},
            {"content_type", object.content_type},
            {"content_subtype", object.content_subtype},
            {"content_name", object.content_name},
            {"sid", hex(object.data_service)},
            {"ecc", hex(object.data_service >> 24)}};
}

}  // namespace

mot_object service_information(const std::string& content_name, std::uint32_t data_service) {
    return {7, 0, content_name, data_service};
}

mot_object programme_information(const std::string& content_name, std::uint32_t data_service) {
    return {7, 1, content_name, data_service};
}

mot_object image_object(int content_subtype, const std::string& content_name, std::uint32_t data_service) {
    return {2, content_subtype, content_name, data_service};
}

void recording::comment(std::string_view text) {
    if (!text_.empty()) text_ += '\n';
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        text_ += "# ";
        text_ += text.substr(0, end);
        text_ += '\n';
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

void recording::add(const ordered_json& call) {
    text_ += call.dump() + '\n';
}

void recording::set_date_time(const std::string& date, const std::string& time) {
    add({{"call", "SetDateTime"}, {"date", date}, {"time", time}});
}

void recording::set_current_service(const spi_builder::service_id& service) {
    add({{"call", "SetCurrentService"},
         {"sid", hex(service.sid)},
         {"ecc", hex(service.ecc)},
         {"scids", service.scids},
         {"ensemble", hex(service.eid)}});
}

void recording::feed_body(const mot_object& object, const bytes& body) {
    ordered_json call = feed(object);
    call["body"] = base64(body);
    add(call);
}

void recording::feed_file(const mot_object& object, const std::string& path) {
    ordered_json call = feed(object);
    call["file"] = path;
    add(call);
}

void recording::resend_now_next() {
    add({{"call", "ResendNowNext"}});
}

}  // namespace generator
