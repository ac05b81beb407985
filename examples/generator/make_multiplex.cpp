// make_multiplex: puts the objects of a call recording on air, as a small multiplex in EDI: its first service
// and clock, and each object twice, in a carousel in directory mode. The same recording always gives the same
// bytes.
#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <set>
#include <string>

#include "testkit/multiplex/edi_writer.h"
#include "testkit/multiplex/fic_builder.h"
#include "testkit/on_air/spi_multiplex.h"
#include "tools/recording/recording.h"

namespace {

namespace mb = multiplex_builder;

constexpr unsigned kSubChannel = 30;
constexpr unsigned kAddress = 5;
constexpr std::size_t kFrameBytes = 96;  // 32 kbit/s
constexpr unsigned kFramesBehind = 25;
constexpr std::size_t kSegment = 1024;
constexpr unsigned kDirectoryId = 1;
constexpr unsigned kFirstObjectId = 100;

void set_clock(const dabspi::set_date_time& now, on_air::multiplex& sent) {
    const auto number = [](const std::string& text, std::size_t at, std::size_t count) {
        return static_cast<unsigned>(std::stoul(text.substr(at, count)));
    };
    sent.day = mb::day_number(static_cast<int>(number(now.date, 0, 4)), number(now.date, 4, 2),
                              number(now.date, 6, 2));
    sent.minute_of_day = number(now.time, 0, 2) * 60 + number(now.time, 2, 2);
}

mb::bytes multiplex_of(const dabspi::recording& from) {
    on_air::multiplex sent;
    sent.label = "Example";
    sent.spi.emplace_back();
    std::optional<dabspi::set_current_service> service;
    std::optional<dabspi::set_date_time> clock;
    std::vector<carousel_kit::object> objects;
    std::set<std::string> names;
    for (const dabspi::call& each : from.calls) {
        if (const auto* const tuned = std::get_if<dabspi::set_current_service>(&each.what))
            service = service.value_or(*tuned);
        if (const auto* const now = std::get_if<dabspi::set_date_time>(&each.what))
            clock = clock.value_or(*now);
        const auto* const fed = std::get_if<dabspi::feed_mot_body>(&each.what);
        if (fed == nullptr || !names.insert(fed->content_name).second) continue;
        sent.spi[0].sid = fed->service.sid;
        carousel_kit::object object;
        object.transport_id = kFirstObjectId + static_cast<unsigned>(objects.size());
        object.content_type = fed->content_type;
        object.content_subtype = fed->content_subtype;
        object.name = fed->content_name;
        object.body = *fed->body;
        objects.push_back(object);
    }
    if (!service || !clock || objects.empty())
        throw std::runtime_error("the recording needs a service, a clock and an object");
    set_clock(*clock, sent);
    sent.eid = service->ensemble;
    sent.ecc = service->service.ecc;
    sent.audio[0].sid = service->service.sid;
    auto groups = carousel_kit::directory_round(kDirectoryId, objects, kSegment);
    carousel_kit::append(groups, carousel_kit::directory_round(kDirectoryId, objects, kSegment));
    sent.sub_channels.push_back({kSubChannel, kFrameBytes, on_air::stream_of(kAddress, groups), false});
    sent.spi[0].sub_channel = kSubChannel;
    sent.spi[0].address = kAddress;
    return mb::af_stream(on_air::frames_of(sent, on_air::frames_needed(sent) + kFramesBehind));
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("Puts the objects of a call recording on air, as a small multiplex in EDI.");
    std::string recording;
    std::string file;
    bool check = false;
    app.add_option("RECORDING", recording, "what is sent")->required();
    app.add_option("FILE", file, "the multiplex")->required();
    app.add_flag("--check", check, "write nothing: exit 1 if FILE holds something else");
    CLI11_PARSE(app, argc, argv);
    try {
        const dabspi::recording from = dabspi::read_recording(recording);
        if (!from.errors.empty()) throw std::runtime_error(error_text(from, from.errors.front()));
        const mb::bytes made = multiplex_of(from);
        if (check) {
            std::ifstream in(file, std::ios::binary);
            const mb::bytes there((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
            if (there == made) return 0;
            std::cout << "differs: " << file << '\n';
            return 1;
        }
        std::ofstream out(file, std::ios::binary);
        out.write(reinterpret_cast<const char*>(made.data()), static_cast<std::streamsize>(made.size()));
        out.close();
        if (!out) throw std::runtime_error(file + " cannot be written");
        std::cout << file << ": " << made.size() << " bytes\n";
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "make_multiplex: " << error.what() << '\n';
        return 2;
    }
}
