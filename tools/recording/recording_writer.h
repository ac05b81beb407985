// Writes a recording: the calls that a host made, one JSON object a line, and comment lines for people.
//
// Numbers are written as a reader of DAB documents knows them: identifiers in hexadecimal, counts in decimal.
// Keys keep their order, so that the same calls always give the same bytes.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <utility>

#include "tools/recording/recording.h"

namespace dabspi {

// A MOT object's header parameters, and the data service that carries it.
struct fed_object {
    std::uint8_t content_type = 0;
    std::uint16_t content_subtype = 0;
    std::string content_name;
    service_id data_service;
};

class recording_writer {
 public:
    // Each line of the text becomes a comment line; an empty line stands before, but at the beginning.
    void comment(std::string_view text);

    void set_date_time(const std::string& date, const std::string& time);
    void set_current_service(const service_id& service, std::uint16_t ensemble);
    void feed_body(const fed_object& object, const bytes& body);
    // `path`: relative to the recording.
    void feed_file(const fed_object& object, const std::string& path);
    void resend_now_next();

    const std::string& text() const { return text_; }
    // What was written since it was taken last: for recordings that grow.
    std::string take_text() { return std::exchange(text_, {}); }
    std::size_t calls() const { return calls_; }

 private:
    void add(const nlohmann::ordered_json& call);

    std::string text_;
    std::size_t calls_ = 0;
};

}  // namespace dabspi
