#include "tools/recording/recording_writer.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "tools/text/base64.h"
#include "tools/text/hexadecimal.h"

namespace dabspi {

using nlohmann::ordered_json;

namespace {

ordered_json feed(const fed_object& object) {
    ordered_json call = {{"call", "FeedMotBody"},
                         {"content_type", object.content_type},
                         {"content_subtype", object.content_subtype},
                         {"content_name", object.content_name},
                         {"sid", hexadecimal(object.data_service.sid)},
                         {"ecc", hexadecimal(object.data_service.ecc)}};
    if (object.data_service.scids != 0) call["scids"] = object.data_service.scids;
    return call;
}

}  // namespace

void recording_writer::comment(std::string_view text) {
    if (!text_.empty()) text_ += '\n';
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        text_ += "# ";
        text_ += text.substr(0, end);
        text_ += '\n';
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

void recording_writer::add(const ordered_json& call) {
    text_ += call.dump() + '\n';
    ++calls_;
}

void recording_writer::set_date_time(const std::string& date, const std::string& time) {
    add({{"call", "SetDateTime"}, {"date", date}, {"time", time}});
}

void recording_writer::set_current_service(const service_id& service, std::uint16_t ensemble) {
    add({{"call", "SetCurrentService"},
         {"sid", hexadecimal(service.sid)},
         {"ecc", hexadecimal(service.ecc)},
         {"scids", service.scids},
         {"ensemble", hexadecimal(ensemble)}});
}

void recording_writer::feed_body(const fed_object& object, const bytes& body) {
    ordered_json call = feed(object);
    call["body"] = encode_base64(body);
    add(call);
}

void recording_writer::feed_file(const fed_object& object, const std::string& path) {
    ordered_json call = feed(object);
    call["file"] = path;
    add(call);
}

void recording_writer::resend_now_next() {
    add({{"call", "ResendNowNext"}});
}

}  // namespace dabspi
