// What the small recordings share: two invented stations, one day, and short words for the calls.
//
// The notifications that each recording must give stand beside it, in NAME.core.expected and
// NAME.wrapper.expected. They are written by hand from the rules that the recording's comments state, never
// by this program.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "examples/generator/canvas.h"
#include "examples/generator/file_set.h"
#include "examples/generator/recording.h"

namespace generator {

constexpr std::uint8_t ecc = 0xE0;
constexpr std::uint16_t home_ensemble = 0x10C1;
constexpr std::uint16_t other_ensemble = 0x10C2;
constexpr std::uint32_t home_data_service = 0xE0110001;
constexpr std::uint32_t other_data_service = 0xE0110002;

constexpr const char* today = "20260310";
constexpr const char* tomorrow = "20260311";

const spi_builder::service_id& quillhaven();  // 0x1A01 on the home ensemble
const spi_builder::service_id& fennmark();    // 0x1A02 on the home ensemble
const spi_builder::service_id& gullmere();    // 0x1B01 on the other ensemble

// Day number of a date as the calls write it, "YYYYMMDD".
std::uint32_t day_number(const std::string& date);

// A programme with a medium name that starts at "HHMM". Without an offset the time is coded as plain UTC.
spi_builder::programme_data show(const std::string& date, const std::string& start, unsigned minutes,
                                 const std::string& name);
spi_builder::programme_data local_show(const std::string& date, const std::string& start, unsigned minutes,
                                       const std::string& name, int offset_half_hours);

// A programme information object with one schedule for one service.
spi_builder::bytes schedule_of(const spi_builder::service_id& service,
                               const std::vector<spi_builder::programme_data>& programmes);

// An announced logo of width x height.
spi_builder::logo_data logo(const std::string& mime, const std::string& url, std::uint16_t width,
                            std::uint16_t height);

// A service information object with one service of the home ensemble.
spi_builder::bytes service_with(const spi_builder::service_id& service, const std::string& name,
                                const std::vector<spi_builder::logo_data>& logos);

class scene {
 public:
    // `explanation` becomes the comment at the top.
    scene(std::string name, std::string_view explanation);

    void note(std::string_view text) { recording_.comment(text); }
    void clock(const std::string& date, const std::string& time) { recording_.set_date_time(date, time); }
    void listen(const spi_builder::service_id& service) { recording_.set_current_service(service); }
    void resend() { recording_.resend_now_next(); }
    void pi(const std::string& content_name, const spi_builder::bytes& body,
            std::uint32_t data_service = home_data_service);
    void si(const std::string& content_name, const spi_builder::bytes& body);
    // An image object. The picture is kept under objects/ with the name `file`.
    void png(const std::string& content_name, const std::string& file, const spi_builder::bytes& image,
             file_set& files);
    void jfif(const std::string& content_name, const std::string& file, const spi_builder::bytes& image,
              file_set& files);
    void image_of_subtype(int content_subtype, const std::string& content_name, const std::string& file,
                          const spi_builder::bytes& image, file_set& files);

    // Ends the scene: its recording joins the files.
    void save(file_set& files) const { files.add(name_ + ".jsonl", recording_.text()); }

 private:
    std::string name_;
    recording recording_;
};

void add_now_next_scenes(file_set& files);
void add_midnight_scenes(file_set& files);
void add_filing_scenes(file_set& files);
void add_ensemble_scenes(file_set& files);
void add_text_scenes(file_set& files);
void add_logo_scenes(file_set& files);

}  // namespace generator
