// Writes the seed corpora of the fuzz targets, made by the builder: make_seeds DIRECTORY
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>

#include "testkit/carousel/mot_carousel.h"
#include "testkit/multiplex/capture_writer.h"
#include "testkit/multiplex/edi_writer.h"
#include "testkit/multiplex/eti_writer.h"
#include "testkit/multiplex/fic_builder.h"
#include "testkit/on_air/spi_multiplex.h"
#include "testkit/spi_builder_objects.h"

namespace {

namespace sb = spi_builder;

void write(const std::filesystem::path& file, const sb::bytes& bytes) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) throw std::runtime_error(file.string() + ": cannot be written");
}

sb::bytes schedule_object(const sb::tokens& tokens) {
    sb::schedule_data schedule;
    schedule.scope = sb::service_id{0xE0, 0x10C1, 0x1A01, 0};
    for (unsigned hour = 6; hour < 10; ++hour) {
        sb::programme_data programme;
        programme.name = {"Short", "Medium", "\x01 at " + std::to_string(hour)};
        programme.start = {61100, hour, 0, hour - 7, sb::utc_fraction{30, 0}};
        programme.duration = 3600;
        programme.short_id = 0x010203 + hour;
        programme.bearers = {{0xE0, 0x10C1, 0x1A01, 0}, {0xE0, 0x10C1, 0xE0D00001, 2}};
        schedule.programmes.push_back(programme);
    }
    return sb::pi_object({schedule, schedule}, tokens);
}

sb::bytes service_object(const sb::tokens& tokens) {
    sb::service_data service;
    service.name = {"Orb", "\x02 Orbitale", ""};
    service.bearers = {{0xE0, 0x10C1, 0x1A01, 0}};
    service.logos = {{"image/png", "a.png", 4, {}, {}},
                     {"", "b.PNG", 2, 128, 128},
                     {"image/jpeg", "c", 6, {}, {}},
                     {"", "d.jpeg", {}, 320, 240}};
    return sb::si_object(0xE0, 0x10C1, {service, service}, tokens);
}

sb::bytes with_prefix(const sb::bytes& prefix, const sb::bytes& rest) {
    return sb::join({prefix, rest});
}

// The first byte says whether the document is taken leniently.
void write_documents(const std::filesystem::path& out) {
    const std::string programmes =
        "<epg xmlns=\"http://www.worlddab.org/schemas/spi/31\" xml:lang=\"en\"><schedule version=\"1\" "
        "creationTime=\"2026-03-02T05:00:00\" originator=\"x\"><scope "
        "startTime=\"2026-03-02T00:00:00+01:00\" "
        "stopTime=\"2026-03-03T00:00:00+01:00\"><serviceScope id=\"dab:ce1.c185.c221.0\"/></scope>"
        "<programme shortId=\"1\" id=\"crid://a/1\" broadcast=\"on-air\"><longName>Evening News &amp; "
        "Radio</longName>"
        "<mediumName>Evening News</mediumName><location><time time=\"2026-03-02T10:00:00.5Z\" "
        "duration=\"PT1H\"/>"
        "<bearer id=\"dab:ce1.c185.c221.0\"/></location><genre type=\"main\" "
        "href=\"urn:tva:metadata:cs:ContentCS:2005:3.6.8\"/><memberOf index=\"2\"/><link uri=\"http://a\"/>"
        "<programmeEvent><location><relativeTime "
        "time=\"PT5M\"/></location></programmeEvent></programme></schedule></epg>";
    const std::string services =
        "<serviceInformation xmlns=\"http://www.worlddab.org/schemas/spi\"><services><service><shortName>A\n "
        "b</shortName>"
        "<mediaDescription><multimedia type=\"logo_unrestricted\" width=\"128\" height=\"128\" "
        "url=\"a.png\"/>"
        "</mediaDescription><bearer id=\"dab:ce1.c185.c221.0\"/><bearer id=\"dab:ce1.c186.c221.0\" "
        "cost=\"1\"/>"
        "<bearer id=\"fm:ce1.c221.09580\"/><geolocation><point>51.5 "
        "-2.5</point></geolocation></service></services>"
        "<s:ensemble id=\"e1.ce15\" xmlns:s=\"http://www.worlddab.org/schemas/spi\"/></serviceInformation>";
    for (const std::uint32_t lenient : {0U, 1U}) {
        const sb::bytes first = sb::u8(lenient);
        write(out / ("programmes" + std::to_string(first[0])), with_prefix(first, sb::str(programmes)));
        write(out / ("services" + std::to_string(first[0])), with_prefix(first, sb::str(services)));
    }
}

namespace mb = multiplex_builder;

// FIBs without their checksums, as the target takes them.
sb::bytes fic_seed(std::uint32_t sid) {
    const mb::bytes fibs = mb::fibs(
        {mb::fig_0_0(0xC185, 100, 1, 130), mb::fig_0_1_short(3, 0, 35), mb::fig_0_1_long(30, 84, 0, 2, 48),
         mb::fig_0_2(sid, {{0, 3, true, false, 63}, {3, 7, false}}), mb::fig_0_3(7, 30, 5),
         mb::fig_0_8(sid, 1, true, 7), mb::fig_0_9(-2, 0xE1), mb::fig_0_10(61100, 7, 30, 12345),
         mb::fig_0_13(sid, 1, {{7, {0x01}}}), mb::fig_0_14(30, 1), mb::ensemble_label(0xC185, "Ensemble"),
         mb::service_label(sid, "Guide", 15)});
    sb::bytes blocks;
    for (std::size_t at = 0; at < fibs.size(); ++at)
        if (at % 32 < 30) blocks.push_back(fibs[at]);
    return blocks;
}

void write_multiplexes(const std::filesystem::path& out) {
    auto frames = mb::noise_frames(3);
    for (mb::logical_frame& each : frames)
        each.fic.clear();
    write(out / "fuzz_eti" / "raw", with_prefix(sb::u8(0), mb::raw_eti({frames[0], frames[1]})));
    write(out / "fuzz_eti" / "streamed", with_prefix(sb::u8(1), mb::streamed_eti(frames)));
    write(out / "fuzz_eti" / "framed", with_prefix(sb::u8(2), mb::framed_eti(frames)));
    mb::pf_options fec;
    fec.fec = true;
    mb::pf_options plain;
    plain.fragment_size = 60;
    plain.source = 3;
    write(out / "fuzz_edi" / "af", with_prefix(sb::u8(1), mb::af_stream(frames)));
    write(out / "fuzz_edi" / "pf", with_prefix(sb::u8(1), mb::pf_stream(frames, plain)));
    write(out / "fuzz_edi" / "pf-fec", with_prefix(sb::u8(1), mb::pf_stream(frames, fec)));
    write(out / "fuzz_edi" / "fio", with_prefix(sb::u8(1), mb::framed_stream({frames[0]})));
    auto datagrams = mb::datagrams_of({mb::af_packet(frames[0], 0), mb::af_packet(frames[1], 1)});
    write(out / "fuzz_edi" / "pcap", with_prefix(sb::u8(3), mb::pcap_file(datagrams)));
    datagrams[0].six = true;
    datagrams[0].fragment_size = 64;
    datagrams[1].fragment_size = 64;
    write(out / "fuzz_edi" / "pcapng", with_prefix(sb::u8(3), mb::pcapng_file(datagrams)));
    write(out / "fuzz_fic" / "data", fic_seed(0xE1C00098));
    write(out / "fuzz_fic" / "audio", fic_seed(0xC221));
}

// Two objects on air, in containers of every kind.
void write_whole_multiplexes(const std::filesystem::path& out) {
    namespace kit = carousel_kit;
    kit::object first;
    first.body = kit::text(std::string(300, 'x'));
    kit::object second;
    second.transport_id = 2;
    second.content_type = 2;
    second.content_subtype = 3;
    second.name = "logo.png";
    second.body = kit::gzip(kit::text(std::string(300, 'y')));
    second.more_parameters = kit::parameter(0x11, {1});
    for (const bool fec : {false, true}) {
        on_air::multiplex sent;
        sent.audio_bytes = 8;
        sent.spi.emplace_back();
        sent.sub_channels.push_back(
            {30, 96,
             fec ? on_air::stream_of(5, kit::directory_round(9, {first, second}), true)
                 : on_air::stream_of(5, kit::header_round({first, second})),
             fec});
        const auto frames = on_air::frames_of(sent, fec ? 30 : 14);
        const std::string kind = fec ? "fec" : "plain";
        const auto write_one = [&](const std::string& name, const mb::bytes& file) {
            write(out / "fuzz_multiplex" / (name + "-" + kind), with_prefix(sb::u8(fec ? 4 : 0), file));
        };
        write_one("streamed", mb::streamed_eti(frames));
        write_one("framed", mb::framed_eti(frames));
        write_one("af", mb::af_stream(frames));
        write_one("pf", mb::pf_stream(frames));
        std::vector<mb::bytes> packets;
        for (std::uint16_t i = 0; i < frames.size(); ++i)
            packets.push_back(mb::af_packet(frames[i], i));
        write_one("pcap", mb::pcap_file(mb::datagrams_of(packets)));
    }
}

// A byte of settings, then frames behind their length in cells: with and without FEC, CRCs right or made
// right.
void write_packets(const std::filesystem::path& out) {
    namespace kit = carousel_kit;
    kit::object object;
    object.body = kit::text(std::string(600, 'x'));
    kit::packetizer packets(3);
    std::vector<kit::bytes> all;
    for (const kit::bytes& group : kit::directory_round(7, {object}, 300))
        kit::append(all, packets.packets(1, group));
    const kit::bytes stream = kit::with_fec(all);
    for (const unsigned settings : {0U, 1U, 3U, 5U}) {
        for (const unsigned missing : {0U, 1U}) {
            kit::bytes seed = sb::u8(settings);
            for (std::size_t at = 0; at < stream.size(); at += 96) {
                const kit::bytes frame(
                    stream.begin() + static_cast<std::ptrdiff_t>(at),
                    stream.begin() + static_cast<std::ptrdiff_t>(std::min(at + 96, stream.size())));
                if (missing != 0 && at == 288) {
                    seed.push_back(0xF3);
                } else {
                    seed.push_back(static_cast<std::uint8_t>(frame.size() / 24));
                    kit::append(seed, frame);
                }
            }
            write(out / "fuzz_packets" / (std::to_string(settings) + (missing != 0 ? "gap" : "whole")), seed);
        }
    }
}

void write_carousels(const std::filesystem::path& out) {
    namespace kit = carousel_kit;
    kit::object object;
    object.body = kit::text("the body of an object");
    for (const unsigned type :
         {kit::kHeaderGroup, kit::kBodyGroup, kit::kDirectoryGroup, kit::kCompressedGroup}) {
        kit::bytes group = kit::segment_group(type, 7, 0, true, kit::directory({object}));
        write(out / "fuzz_data_groups" / ("crc" + std::to_string(type)), with_prefix(sb::u8(0), group));
        group.resize(group.size() - 2);
        write(out / "fuzz_data_groups" / std::to_string(type), with_prefix(sb::u8(1), group));
    }
    std::mt19937 random;
    for (unsigned story = 0; story < 16; ++story) {
        kit::bytes seed = sb::u8(story);
        // Directories and headers of objects, entities as they are, then anything.
        for (const unsigned id : {0U, 1U, 2U, 3U, 4U}) {
            kit::append(seed, {0x30, static_cast<std::uint8_t>(id), 1, 7, 'a', 20});
            kit::append(seed, kit::text("twenty bytes of body"));
            kit::append(seed, {0x27, 2, 7, 'b', 4, 1, 2, 3, 4, 0x67, 1, 8});
        }
        kit::bytes entity = kit::directory({object});
        entity.resize((entity.size() + 3) & ~std::size_t{3});
        kit::append(seed, {0x0B, 3, static_cast<std::uint8_t>(entity.size() / 4), 9});
        kit::append(seed, entity);
        for (unsigned i = 0; i < 40 * (story % 4); ++i)
            seed.push_back(static_cast<std::uint8_t>(random()));
        write(out / "fuzz_mot" / ("story" + std::to_string(story)), seed);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "make_seeds DIRECTORY\n";
        return 2;
    }
    const std::filesystem::path out = argv[1];
    const sb::tokens tokens = {{0x01, "News"}, {0x02, "Radio"}, {0x09, "never"}, {0x13, "Evening"}};
    for (const bool with_tokens : {false, true}) {
        const sb::tokens& table = with_tokens ? tokens : sb::tokens();
        const std::string name = with_tokens ? "tokens" : "plain";
        write(out / "fuzz_pi_body" / name, with_prefix(sb::u16(0x10C1), schedule_object(table)));
        write(out / "fuzz_si_body" / name, service_object(table));
        write(out / "fuzz_reader" / (name + "-pi"), schedule_object(table));
        write(out / "fuzz_reader" / (name + "-si"), service_object(table));
        write(out / "fuzz_inspect" / (name + "-pi"), with_prefix(sb::u16(0x0100), schedule_object(table)));
        write(out / "fuzz_inspect" / (name + "-si"), with_prefix(sb::u16(0xFF00), service_object(table)));
    }
    for (const std::size_t longest : {4U, 253U, 254U, 255U, 256U}) {
        sb::tokens defined = tokens;
        defined.emplace_back(0x03, std::string(longest, 't'));
        const sb::bytes table = sb::token_table(defined);
        const long header = table[1] == 0xFE ? 4 : 2;
        const sb::bytes entries(table.begin() + header, table.end());
        write(out / "fuzz_token_table" / ("table" + std::to_string(longest)),
              sb::join({sb::u16(static_cast<std::uint32_t>(entries.size())), entries,
                        sb::str("\x01 at Ten \x02 \x03 \x07")}));
    }
    write(out / "fuzz_value_types" / "content_id",
          with_prefix(sb::u16(0x10C1), sb::attr(0x80, sb::content_id(0xE0, 0x10C1, 0x1A01, 2))));
    write(out / "fuzz_value_types" / "time",
          with_prefix(sb::u16(3600),
                      sb::attr(0x80, sb::time_point(61100, 22, 30, -4, sb::utc_fraction{59, 999}))));
    write(out / "fuzz_shared_block" / "path",
          with_prefix(sb::u8(1), sb::join({sb::u32(5136), sb::str("/mnt/data")})));
    write(out / "fuzz_recording" / "calls",
          sb::str("# a comment\n{\"call\":\"SetDateTime\",\"date\":\"20260302\",\"time\":\"1030\"}\n"
                  "{\"call\":\"SetCurrentService\",\"sid\":\"0xC221\",\"ecc\":225,\"scids\":0,\"ensemble\":"
                  "\"0xC185\"}\n"
                  "{\"call\":\"FeedMotBody\",\"content_type\":7,\"content_subtype\":1,\"content_name\":\"x\","
                  "\"sid\":1,\"body\":\"AgEB\"}\n{\"call\":\"ResendNowNext\"}\n"));
    write_documents(out / "fuzz_encode");
    write_multiplexes(out);
    write_whole_multiplexes(out);
    write_packets(out);
    write_carousels(out);
    write(out / "fuzz_logo_names" / "url", sb::str("abcdefghijklmnop.png"));
    // Targets that make a story of their input, byte by byte: which call comes next, and with what. Any bytes
    // are one, and no builder knows a better one than another. Noise is a seed here for its length: libFuzzer
    // lets its inputs grow only slowly beyond those that it has, and a short story has a few calls.
    std::mt19937 random;  // the same numbers everywhere
    for (const char* target :
         {"fuzz_event_db", "fuzz_logo_db", "fuzz_server", "fuzz_pi_round_trip", "fuzz_si_round_trip"}) {
        for (int story = 0; story < 12; ++story) {
            sb::bytes bytes(64U << story % 4);
            for (auto& byte : bytes)
                byte = static_cast<std::uint8_t>(random());
            write(out / target / ("story" + std::to_string(story)), bytes);
        }
    }
    return 0;
}
