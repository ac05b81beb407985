#include "tests/tools/recording/sample_broadcast.h"

#include "testkit/spi_builder_objects.h"
#include "tests/tools/files/files.h"

namespace sample_broadcast {

const char* const kClock = R"({"call":"SetDateTime","date":"20260302","time":"1030"})";
const char* const kService =
    R"({"call":"SetCurrentService","sid":"0xC221","ecc":"0xE1","scids":0,"ensemble":"0xC185"})";
const char* const kSchedule =
    R"({"call":"FeedMotBody","content_type":7,"content_subtype":1,"content_name":"w20260302dC221.EHB",)"
    R"("sid":"0xE1C00098","ecc":"0xE1","file":"objects/pi.bin"})";
const char* const kAnnouncement =
    R"({"call":"FeedMotBody","content_type":7,"content_subtype":0,"content_name":"w20260302dC185.EIB",)"
    R"("sid":"0xE1C00098","ecc":"0xE1","file":"objects/si.bin"})";
const char* const kLogo =
    R"({"call":"FeedMotBody","content_type":2,"content_subtype":3,"content_name":"c221-128.png",)"
    R"("sid":"0xE1C00098","ecc":"0xE1","file":"objects/logo.png"})";
const char* const kResend = R"({"call":"ResendNowNext"})";

const char* const kFirstPair =
    R"({"event":"now_next","now":{"date":"2026-03-02","time":"10:00","duration":60,"name":"Breakfast"},)"
    R"("next":{"date":"1859-255-19","time":"00:00","duration":0,"name":""}})";
const char* const kSecondPair =
    R"({"event":"now_next","now":{"date":"2026-03-02","time":"10:00","duration":60,"name":"Breakfast"},)"
    R"("next":{"date":"2026-03-02","time":"11:00","duration":60,"name":"Elevenses"}})";
const char* const kEmptyPair =
    R"({"event":"now_next","now":{"date":"1859-255-19","time":"00:00","duration":0,"name":""},)"
    R"("next":{"date":"1859-255-19","time":"00:00","duration":0,"name":""}})";
const char* const kBreakfast =
    R"({"event":"programme_info","sid":"0xC221","ecc":"0xE1","scids":0,)"
    R"("programme":{"date":"2026-03-02","time":"10:00","duration":60,"name":"Breakfast"}})";
const char* const kElevenses =
    R"({"event":"programme_info","sid":"0xC221","ecc":"0xE1","scids":0,)"
    R"("programme":{"date":"2026-03-02","time":"11:00","duration":60,"name":"Elevenses"}})";
const char* const kLogoWritten =
    R"({"event":"station_logo","sid":"0xC221","ecc":"0xE1","scids":0,"format":2,"size_code":3,)"
    R"("file":"E1C2210_3.PNG"})";

std::string lines(const std::vector<const char*>& each) {
    std::string all;
    for (const char* line : each)
        all += std::string(line) + "\n";
    return all;
}

std::string write_recording(const temporary_directory& in, const std::vector<const char*>& calls) {
    using namespace spi_builder;
    const spi_builder::service_id station{0xE1, 0xC185, 0xC221, 0};

    schedule_data day;
    day.scope = station;
    for (const auto& [name, hour] : {std::pair{"Breakfast", 10u}, std::pair{"Elevenses", 11u}}) {
        programme_data programme;
        programme.name.medium_name = name;
        programme.start.day = mjd(2026, 3, 2);
        programme.start.hour = hour;
        programme.duration = 3600;
        day.programmes.push_back(programme);
    }
    service_data service;
    service.bearers = {station};
    service.logos = {{"image/png", "c221-128.png", {}, 128, 128}};

    const auto bytes_of = [](const bytes& object) { return std::string(object.begin(), object.end()); };
    write_file(in, "objects/pi.bin", bytes_of(pi_object({day})));
    write_file(in, "objects/si.bin", bytes_of(si_object(0xE1, 0xC185, {service})));
    write_file(in, "objects/logo.png", kLogoBytes);
    return write_file(in, "day.jsonl", lines(calls));
}

std::vector<const char*> whole() {
    return {kClock, kService, kSchedule, kAnnouncement, kLogo};
}
std::vector<const char*> whole_received_by_wrapper() {
    return {kFirstPair, kSecondPair, kLogoWritten};
}
std::vector<const char*> whole_received_by_core() {
    return {kBreakfast, kFirstPair, kElevenses, kSecondPair, kLogoWritten};
}

}  // namespace sample_broadcast
