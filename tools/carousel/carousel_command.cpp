#include "tools/carousel/carousel_command.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <thread>

#include "tools/carousel/carousel_report.h"
#include "tools/carousel/checked_carousel.h"
#include "tools/carousel/followed_carousel.h"
#include "tools/carousel/live_output.h"
#include "tools/command_line/needed_name.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/interrupt.h"
#include "tools/terminal/output.h"
#include "tools/text/dab_identifier.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using namespace carousel;

constexpr auto kFrame = std::chrono::milliseconds(24);
constexpr std::uint64_t kFramesBetweenLooks = 40;  // about a second
// Behind by more than this the clock of the frames is given up, not caught up with.
constexpr auto kMostBehind = std::chrono::seconds(10);

int refuse(const std::vector<std::string>& errors) {
    print_errors(errors, "errors");
    print_error("nothing was written");
    return kExitUnusable;
}

bool needs_ensemble(output_form form) {
    return form != output_form::packets && form != output_form::groups;
}

// What of the command line does not fit together; empty if all does.
std::string fault_of(const carousel_options& options) {
    if (!options.budget.empty() || !options.within.empty()) {
        if (options.within.empty())
            return "--budget needs --within: the time that is to be kept, e.g. --within 90s";
        return {};
    }
    if (options.packet_size > options.bit_rate * 3)
        return "packets of " + std::to_string(options.packet_size) + " bytes do not fit: a frame holds " +
               std::to_string(options.bit_rate * 3) + " at " + std::to_string(options.bit_rate) +
               " kbit/s; use smaller ones, or a higher bit rate";
    if (options.output.empty()) return "say with --output where it goes";
    const auto form = form_of(options);
    if (!form)
        return "say with --form what is written: packets, groups, raw, streamed, framed or edi (" +
               in_quotes(options.output) + " does not tell)";
    if (options.follow && (form == output_form::groups || form == output_form::framed))
        return "--follow has no end, and this form needs one: use packets, raw, streamed or edi";
    if (options.follow && !options.duration.empty())
        return "--follow goes on until it is stopped: leave --duration out";
    return {};
}

int say_budget(const carousel_options& options) {
    carousel_options at_budget = options;
    if (!options.budget.empty()) at_budget.bit_rate = *parse_bit_rate(options.budget);
    const prepared_carousel of = look_at_objects(at_budget);
    print_errors(of.messages, "messages");
    if (!of.errors.empty()) return refuse(of.errors);
    const wanted_time wanted = *parse_wanted(options.within);
    const wanted_wait what = wanted.what == "logos"      ? wanted_wait::logos
                             : wanted.what == "now-next" ? wanted_wait::now_next
                                                         : wanted_wait::everything;
    const left_out_objects gone = what_has_to_go(of.objects, of.tuned, of.settings, what, wanted.seconds);
    if (!print(budget_report(of, gone, what, wanted.seconds), STDOUT_FILENO)) return kExitFailed;
    return gone.enough && gone.objects.empty() ? kExitDone : kExitMalformed;
}

std::vector<std::string> without_ensemble(output_form form) {
    return {std::string("no service information names the ensemble, and ") + form_text(form) +
            " needs it; say it with --ensemble, e.g. --ensemble e1.c185"};
}

int write_file(const carousel_options& options) {
    const output_form form = *form_of(options);
    std::unique_ptr<transmit::carousel_maker> maker;
    const prepared_carousel of = prepare(options, maker);
    print_errors(of.messages, "messages");
    if (!of.errors.empty()) return refuse(of.errors);
    if (needs_ensemble(form) && !of.ensemble) return refuse(without_ensemble(form));
    const std::uint64_t frames = frames_of(of, options, form);
    std::string report = carousel_report(of, options);
    if (!options.no_check) report += check_report_of(of);
    const std::string error = write_carousel(of, form, frames, options.output);
    if (!error.empty()) {
        print_error(printable(options.output) + " cannot be written: " + error);
        return kExitFailed;
    }
    const bool on_standard_output = options.output == "-";
    const std::string name = on_standard_output ? "<stdout>" : options.output;
    report =
        printable(name) + ": " + form_text(form) +
        (form == output_form::groups ? ""
                                     : ", " + seconds_text(static_cast<double>(frames) *
                                                           std::chrono::duration<double>(kFrame).count())) +
        "\n" + report;
    return print(report, on_standard_output ? STDERR_FILENO : STDOUT_FILENO) ? kExitDone : kExitFailed;
}

int send_without_end(followed_carousel& from, live_output& to) {
    bytes frame;
    auto due = std::chrono::steady_clock::now();
    for (std::uint64_t i = 1; interrupt_watch::noted() == 0; ++i) {
        frame.clear();
        from.append_frame(frame);
        const std::string error = to.write(frame);
        if (!error.empty()) {
            print_error("cannot be written: " + error);
            return kExitFailed;
        }
        if (i % kFramesBetweenLooks == 0) from.look();
        due += kFrame;
        const auto now = std::chrono::steady_clock::now();
        if (now - due > kMostBehind) due = now;
        std::this_thread::sleep_until(due);
    }
    return kExitDone;
}

int follow(const carousel_options& options) {
    const output_form form = *form_of(options);
    const auto say = [](const std::string& line) { print_error(line); };
    int status = kExitFailed;
    int signal = 0;
    {
        const interrupt_watch watch;
        followed_carousel from(options, form, say);
        if (!from.start()) {
            print_error("nothing was written");
            return kExitUnusable;
        }
        if (needs_ensemble(form) && !from.current().ensemble) return refuse(without_ensemble(form));
        std::string error;
        const auto given_up = [] { return interrupt_watch::noted() != 0; };
        const std::unique_ptr<live_output> to = open_live_output(options.output, say, given_up, error);
        if (to == nullptr) {
            print_error(error);
            return kExitUnusable;
        }
        if (!print(carousel_report(from.current(), options), STDERR_FILENO)) return kExitFailed;
        status = send_without_end(from, *to);
        signal = interrupt_watch::noted();
    }
    if (signal != 0) die_by(signal);
    return status;
}

int run_carousel(const carousel_options& options) {
    const std::string fault = fault_of(options);
    if (!fault.empty()) {
        print_error("carousel: " + fault);
        return kExitUnusable;
    }
    if (!options.within.empty()) return say_budget(options);
    return options.follow ? follow(options) : write_file(options);
}

std::string whole_ensemble_fault(const std::string& text) {
    const auto id = dab_identifier::of_ensemble(text);
    return id && id->ecc && id->ensemble ? ""
                                         : in_quotes(text) + " is no ensemble such as e1.c185: ECC and EId";
}

std::string data_service_fault(const std::string& text) {
    const auto id = dab_identifier::of_service(text);
    return id && id->sid && *id->sid > 0xFFFF
               ? ""
               : in_quotes(text) + " is no data service such as E1C00098: eight hexadecimal digits";
}

std::string component_fault(const std::string& text) {
    return spi_object::parse_content_id(service_uri(text))
               ? ""
               : in_quotes(text) + " is no service such as e1.c185.c221.0: ECC, EId, SId, SCIdS";
}

std::string minute_fault(const std::string& text) {
    return parse_minute(text) ? "" : in_quotes(text) + " is no minute such as 2026-03-02T06:00";
}

void add_multiplex_options(CLI::App& app, carousel_options& options) {
    app.add_option("--ensemble", options.ensemble,
                   "The ensemble, e.g. e1.c185: ECC and EId (default: that of the service information)")
        ->option_text("ID")
        ->check(whole_ensemble_fault);
    app.add_option("--label", options.label, "The ensemble's label in the FIC")->option_text("TEXT");
    app.add_option("--data-service", options.data_service,
                   "The service that carries the carousel, 32 bits, e.g. E1C00098")
        ->option_text("SID")
        ->check(data_service_fault);
    app.add_option("--service-label", options.service_label, "Its label (default: SPI)")->option_text("TEXT");
    app.add_option("--bitrate", options.bit_rate,
                   "Of the sub-channel in kbit/s, a multiple of 8 (default: 16)")
        ->option_text("KBIT/S")
        ->check([](const std::string& text) {
            return parse_bit_rate(text) ? std::string()
                                        : in_quotes(text) + " is no bit rate: 8, 16, 24 ... 1136";
        });
    app.add_option("--sub-channel", options.sub_channel, "Its number, 0 to 63 (default: 1)")
        ->option_text("N")
        ->check(CLI::Range(0, 63));
    app.add_option("--address", options.address, "Packet address, 1 to 1021 (default: 1)")
        ->option_text("N")
        ->check(CLI::Range(1, 1021));
    app.add_option("--packet-size", options.packet_size,
                   "Bytes of the longest packets (default: as long as a frame holds)")
        ->option_text("24|48|72|96")
        ->check(CLI::IsMember({24, 48, 72, 96}));
    app.add_flag("--fec", options.fec, "With forward error correction (enhanced packet mode)");
}

void add_carousel_options(CLI::App& app, carousel_options& options) {
    app.add_option("--mode", options.mode, "Of the MOT carousel: directory (default) or header")
        ->option_text("directory|header")
        ->check(CLI::IsMember({"directory", "header"}));
    app.add_option("--directory", options.directory,
                   "The directory's form: plain (default), compressed, or both in turns")
        ->option_text("plain|compressed|both")
        ->check(CLI::IsMember({"plain", "compressed", "both"}));
    app.add_option("--segment-size", options.segment_size,
                   "Bytes of a segment, 16 to 8189 (default: what fills a dozen packets)")
        ->option_text("BYTES")
        ->check(CLI::Range(16, 8189));
    app.add_option("--charset", options.charset, "Of content names: utf-8 (default), ebu-latin or iso-8859-1")
        ->option_text("utf-8|ebu-latin|iso-8859-1")
        ->check(CLI::IsMember({"utf-8", "ebu-latin", "iso-8859-1"}));
    app.add_flag("--compress", options.compress,
                 "Compress the bodies that get smaller by it; some receivers pass these over");
    app.add_flag("--plain-order", options.plain_order,
                 "Send object after object, instead of the urgent ones more often");
    app.add_flag("--tokens", options.tokens, "Build a token table that makes each object smaller");
    app.add_flag("--lenient", options.lenient,
                 "Code what can be coded, and warn of the rest, instead of refusing a\ndocument");
    app.add_option("--service", options.service,
                   "Of documents that name no service: what they are of, e.g. e1.c185.c221.0")
        ->option_text("ID")
        ->check(component_fault);
    app.add_option("--carousel", options.carousel, "Of a plan with several: the carousel of this name")
        ->option_text("NAME");
}

void add_time_options(CLI::App& app, carousel_options& options) {
    app.add_option("--clock", options.clock,
                   "The local time at which the multiplex begins; its day is today (default: now)")
        ->option_text("DATE[Thh:mm]")
        ->check(minute_fault);
    add_local_time_options(app, options.local_time);
    CLI::Option* const duration =
        app.add_option("--duration", options.duration,
                       "How long: 90s, 10min, 24h (default: until the carousel repeats)")
            ->option_text("TIME")
            ->check([](const std::string& text) {
                return parse_seconds(text) ? std::string()
                                           : in_quotes(text) + " is no time such as 90s, 10min or 24h";
            });
    app.add_flag("--follow", options.follow,
                 "Go on until stopped, at the pace of the air, with a new version when the inputs\nchange")
        ->excludes(duration);
    app.add_option("--within", options.within,
                   "Write nothing: say what has to go so that this time is kept at worst, e.g. 90s,\n"
                   "logos=30s or now-next=10s")
        ->option_text("[WHAT=]TIME")
        ->check([](const std::string& text) {
            return parse_wanted(text)
                       ? std::string()
                       : in_quotes(text) + " is no time such as 90s, logos=30s or now-next=10s";
        });
    app.add_option("--budget", options.budget,
                   "With --within: at this bit rate, e.g. 16kbit/s (default: --bitrate)")
        ->option_text("RATE")
        ->check([](const std::string& text) {
            return parse_bit_rate(text) ? std::string()
                                        : in_quotes(text) + " is no bit rate such as 16kbit/s";
        });
    app.add_flag("--no-check", options.no_check, "Leave out what \"dabspi check\" says of it");
}

}  // namespace

command add_carousel_command(CLI::App& dabspi) {
    CLI::App* const app =
        dabspi.add_subcommand("carousel", "Make what a multiplexer sends of XML documents, images and plans");
    const auto options = std::make_shared<carousel_options>();
    app->add_option("INPUT", options->inputs,
                    "XML documents, images, binary objects, folders of these, or a plan")
        ->required()
        ->option_text("...");
    app->add_option(
           "--output,-o", options->output,
           "Where it goes; - is standard output. With --follow also a named pipe, or\ntcp://ADDRESS:PORT")
        ->check(a_name_is_needed)
        ->option_text("FILE");
    app->add_option(
           "--form", options->form,
           "packets of the sub-channel; groups: MSC data groups; raw, streamed, framed:\nETI(NI); edi "
           "(default: by FILE's ending .packets, .groups, .eti, .edi)")
        ->option_text("packets|groups|raw|streamed|framed|edi")
        ->check(CLI::IsMember({"packets", "groups", "raw", "streamed", "framed", "edi"}));
    add_multiplex_options(*app, *options);
    add_carousel_options(*app, *options);
    add_time_options(*app, *options);
    app->footer(
        "Packets may be repeated from the beginning when their end is reached: a file is one round of the\n"
        "carousel, in which urgent objects come several times. Nothing is written before all inputs have "
        "been\n"
        "found good.\n"
        "Exit status: 0 it was written, or nothing has to go; 1 --within: something has to go; 2 an input "
        "or\n"
        "the command line cannot be used; 3 anything else, such as output that cannot be written.\n"
        "\n"
        "Examples:\n"
        "  dabspi carousel SI.xml PI*.xml logos/ -o spi.packets            for a multiplexer\n"
        "  dabspi carousel SI.xml PI*.xml logos/ --fec -o spi.eti          a whole multiplex, for receivers\n"
        "  dabspi carousel --budget 16kbit/s --within 90s SI.xml PI*.xml logos/\n"
        "  dabspi carousel --follow -o tcp://127.0.0.1:9201 --form edi SI.xml PI*.xml logos/");
    return {app, [options] { return run_carousel(*options); }};
}

}  // namespace dabspi
