#include "tools/carousel/written_carousel.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <system_error>

#include "tools/air/frame.h"
#include "tools/files/whole_file.h"
#include "tools/terminal/output.h"
#include "tools/transmit/schedule/carousel_sender.h"

namespace dabspi::carousel {

namespace {

using namespace transmit;

constexpr std::size_t kPortion = std::size_t{1} << 18;

std::string_view chars(const bytes& of) {
    return {reinterpret_cast<const char*>(of.data()), of.size()};
}

std::optional<multiplex_form> multiplex_form_of(output_form form) {
    switch (form) {
        case output_form::raw: return multiplex_form::raw;
        case output_form::streamed: return multiplex_form::streamed;
        case output_form::framed: return multiplex_form::framed;
        case output_form::edi: return multiplex_form::edi;
        default: return std::nullopt;
    }
}

// A file or standard output.
class destination {
 public:
    explicit destination(const std::string& path) : standard_output_(STDOUT_FILENO), is_file_(path != "-") {
        if (is_file_) error_ = file_.emplace(path).error();
    }
    void write(const bytes& content) {
        if (!error_.empty()) return;
        if (is_file_) {
            error_ = file_->write(chars(content));
        } else if (!standard_output_.write(chars(content))) {
            error_ = std::generic_category().message(standard_output_.error());
        }
    }
    std::string finish() {
        if (!error_.empty()) return error_;
        if (is_file_) return file_->commit();
        return standard_output_.flush() ? std::string()
                                        : std::generic_category().message(standard_output_.error());
    }
    bool failed() const { return !error_.empty(); }

 private:
    output standard_output_;
    std::optional<whole_file_writer> file_;
    const bool is_file_;
    std::string error_;
};

void write_groups(const prepared_carousel& of, destination& to) {
    carousel_sender sender(of.made.carousel, of.made.order);
    bytes portion;
    for (std::size_t i = 0; i < of.made.order.size(); ++i) {
        const byte_view group = sender.next_group();
        append_number(portion, group.size(), 2);
        append_bytes(portion, group);
        if (portion.size() < kPortion) continue;
        to.write(portion);
        portion.clear();
    }
    to.write(portion);
}

}  // namespace

form_writer::form_writer(const prepared_carousel& of, output_form form) : of_(of) {
    if (const auto multiplex = multiplex_form_of(form))
        multiplex_.emplace(of.announced, *multiplex, of.begin_utc);
}

bytes form_writer::file_header(std::uint64_t frames) const {
    return multiplex_ ? multiplex_->file_header(frames) : bytes();
}

void form_writer::append_frame(bytes& to) {
    const std::size_t size = of_.settings.packets.frame_size;
    append_frame(to, byte_view(of_.made.sent.packets).part(next_ * size, size));
    next_ = (next_ + 1) % of_.made.sent.frames;
}

void form_writer::append_frame(bytes& to, byte_view spi) {
    if (multiplex_) {
        multiplex_->append_frame(to, spi);
    } else {
        append_bytes(to, spi);
    }
}

std::uint64_t frames_of(const prepared_carousel& of, const carousel_options& options, output_form form) {
    const std::uint64_t stretch = of.made.sent.frames;
    const std::optional<double> wanted = parse_seconds(options.duration);
    if (!wanted) return stretch;
    const auto frames = static_cast<std::uint64_t>(std::ceil(*wanted * 1000 / air::kMillisecondsOfFrame));
    return form == output_form::packets ? (frames + stretch - 1) / stretch * stretch : frames;
}

std::string write_carousel(const prepared_carousel& of, output_form form, std::uint64_t frames,
                           const std::string& path) {
    destination to(path);
    if (form == output_form::groups) {
        write_groups(of, to);
        return to.finish();
    }
    form_writer writer(of, form);
    bytes portion = writer.file_header(frames);
    for (std::uint64_t i = 0; i < frames && !to.failed(); ++i) {
        writer.append_frame(portion);
        if (portion.size() < kPortion) continue;
        to.write(portion);
        portion.clear();
    }
    to.write(portion);
    return to.finish();
}

}  // namespace dabspi::carousel
