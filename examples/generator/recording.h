// Writes one recording: the calls that a host made, one JSON object a line, and comment lines for people.
//
// Numbers are written as a reader of DAB documents knows them: identifiers in hexadecimal, counts in decimal.
// Keys keep their order, so that the same calls always give the same bytes.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "tests/support/spi_builder_objects.h"

namespace generator {

// A MOT object's header parameters and the data service that carries it. The host-facing layer takes a body's
// ECC from the top byte of a 32-bit service identifier, the core from the call: data services here have the
// same value in both, so that one recording means the same through either interface.
struct mot_object {
    int content_type = 0;
    int content_subtype = 0;
    std::string content_name;
    std::uint32_t data_service = 0;
};

mot_object service_information(const std::string& content_name, std::uint32_t data_service);
mot_object programme_information(const std::string& content_name, std::uint32_t data_service);
constexpr int subtype_jfif = 1;
constexpr int subtype_png = 3;
mot_object image_object(int content_subtype, const std::string& content_name, std::uint32_t data_service);

class recording {
 public:
    // Each line of the text becomes a comment line; an empty line stands before.
    void comment(std::string_view text);

    void set_date_time(const std::string& date, const std::string& time);
    void set_current_service(const spi_builder::service_id& service);
    void feed_body(const mot_object& object, const spi_builder::bytes& body);
    void feed_file(const mot_object& object, const std::string& path);
    void resend_now_next();

    const std::string& text() const { return text_; }

 private:
    void add(const nlohmann::ordered_json& call);

    std::string text_;
};

}  // namespace generator
