#include "tools/record/record_multiplex.h"

#include <unistd.h>

#include <filesystem>

#include "tools/air/calls/multiplex_calls.h"
#include "tools/air/container/open_frames.h"
#include "tools/air/container/opened_messages.h"
#include "tools/command_line/command.h"
#include "tools/files/whole_file.h"
#include "tools/record/body_folder.h"
#include "tools/recording/recording_writer.h"
#include "tools/terminal/error_messages.h"
#include "tools/terminal/interrupt.h"
#include "tools/terminal/output.h"
#include "tools/terminal/progress.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

constexpr std::size_t kMebibytes = 1024 * 1024;

// Writes calls as they come.
class growing_recording {
 public:
    explicit growing_recording(const std::string& path)
        : file_(path), bodies_(std::filesystem::path(path).parent_path().string()) {}

    void add(const call& made) {
        std::visit([this](const auto& what) { write(what); }, made.what);
        ++calls_;
        constexpr std::size_t kKept = 65536;
        if (writer_.text().size() >= kKept) flush();
    }
    const std::string& finish() {
        flush();
        return file_.commit();
    }
    void comment(const std::string& text) { writer_.comment(text); }

    std::size_t calls() const { return calls_; }
    std::size_t size() const { return text_size_ + bodies_.size(); }
    std::size_t files() const { return bodies_.files(); }
    const std::string& error() const { return file_.error(); }

 private:
    void flush() {
        const std::string text = writer_.take_text();
        text_size_ += text.size();
        file_.write(text);
    }
    void write(const set_date_time& of) { writer_.set_date_time(of.date, of.time); }
    void write(const set_current_service& of) { writer_.set_current_service(of.service, of.ensemble); }
    void write(const feed_mot_body& of) {
        writer_.feed_file({of.content_type, of.content_subtype, of.content_name, of.service},
                          bodies_.keep(of.content_name, *of.body));
    }
    void write(const resend_now_next&) { writer_.resend_now_next(); }

    whole_file_writer file_;
    body_folder bodies_;
    recording_writer writer_;
    std::size_t calls_ = 0;
    std::size_t text_size_ = 0;
};

class multiplex_recorder {
 public:
    explicit multiplex_recorder(const multiplex_recording_options& options)
        : options_(options), name_(printable(options.input == "-" ? "<stdin>" : options.input)) {}

    int record() {
        air::open_options how;
        how.flow = options_.flow;
        how.fic = options_.fic;
        how.address = options_.address;
        how.given_up = [] { return interrupt_watch::noted() != 0; };
        air::opened_frames in = air::open_frames(options_.input, how);
        if (in.frames == nullptr) return refuse(in.error);
        std::error_code failed;
        if (std::filesystem::equivalent(options_.input, options_.recording, failed))
            return refuse(printable(options_.recording) + " would be written over, and it is the input");
        return record(in, how);
    }

 private:
    static int refuse(const std::string& why) {
        print_error(why);
        return kExitUnusable;
    }

    int cannot_write(const std::string& why) const {
        print_error(printable(options_.recording) + " cannot be written: " + why);
        return kExitFailed;
    }

    int record(air::opened_frames& in, const air::open_options& how) {
        air::calls_options options;
        options.service = options_.service;
        options.which = options_.deliver_once ? air::delivery::once : air::delivery::every;
        options.given_up = how.given_up;
        air::multiplex_calls calls(*in.frames, options);
        std::error_code failed;
        const std::filesystem::path folder = std::filesystem::path(options_.recording).parent_path();
        if (!folder.empty()) std::filesystem::create_directories(folder, failed);
        growing_recording recording(options_.recording);
        if (!recording.error().empty()) return cannot_write(recording.error());
        bool full = false;
        progress_line progress(STDERR_FILENO, ::isatty(STDERR_FILENO) != 0,
                               static_cast<std::size_t>(in.size / kMebibytes), "MiB");
        while (recording.error().empty() && !full) {
            const std::optional<call> next = calls.next();
            if (!next) break;
            recording.add(*next);
            progress.update(static_cast<std::size_t>(in.frames->position() / kMebibytes));
            full = recording.size() > options_.limit * kMebibytes;
        }
        progress.erase();
        const std::string why = calls.error().empty() ? air::why_no_frame(in, options_.flow) : calls.error();
        if (!why.empty() && interrupt_watch::noted() == 0) return refuse(name_ + ": " + why);
        return finish(in, calls, recording, full);
    }

    int finish(const air::opened_frames& in, const air::multiplex_calls& calls, growing_recording& recording,
               bool full) const {
        const std::string& error = recording.finish();
        if (!error.empty()) return cannot_write(error);
        for (const std::string& each :
             {air::flows_to_choose_from(in, options_.flow), air::early_end(in), remark(calls)})
            if (!each.empty()) print_error(name_ + ": " + each);
        if (full)
            print_error(name_ + ": the recording would become more than " + std::to_string(options_.limit) +
                        " MiB; it ends there. Raise --limit, or take --deliver once");
        const std::string text = printable(options_.recording) + ": " + std::to_string(recording.calls()) +
                                 " calls, " + std::to_string(recording.files()) + " body files, " +
                                 std::to_string(recording.size()) + " bytes\n";
        return print(text, STDOUT_FILENO) && !full && in.read_error() == 0 ? kExitDone : kExitFailed;
    }

    static std::string remark(const air::multiplex_calls& calls) {
        if (calls.reception().carousels().empty())
            return "no SPI that can be read is announced; \"dabspi scan\" says what there is";
        if (calls.objects_dropped() == 0) return {};
        return std::to_string(calls.objects_dropped()) + " objects were dropped: too much came at a time";
    }

    const multiplex_recording_options& options_;
    const std::string name_;
};

}  // namespace

int record_multiplex(const multiplex_recording_options& options) {
    int status = kExitFailed;
    int signal = 0;
    {
        const interrupt_watch watch;  // what has been received so far is worth keeping
        status = multiplex_recorder(options).record();
        signal = interrupt_watch::noted();
    }
    if (signal != 0) die_by(signal);
    return status;
}

}  // namespace dabspi
