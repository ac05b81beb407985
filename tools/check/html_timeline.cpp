// What the listener received, in order, by the receiver's clock.

#include "tools/check/html_parts.h"
#include "tools/check/html_text.h"
#include "tools/check/local_day.h"
#include "tools/check/logo_text.h"

namespace dabspi::check::html {

namespace {

std::string programme_markup(const programme& of) {
    if (of.name.empty() && of.start == spi::SpiTimePoint().local_time(0)) return "<i>nothing</i>";
    return "<time>" + escaped(of.start.time()) + "</time> " +
           (of.name.empty() ? "<i>no title</i>" : from_broadcast(of.name)) + " <small>" +
           std::to_string(of.duration) + " min</small>";
}

class timeline_writer {
 public:
    explicit timeline_writer(const check_report& of) : of_(of) {}

    std::string write() {
        for (const replayed_notification& each : of_.replayed.all)
            std::visit([&](const auto& what) { add(each, what); }, each.what);
        end_stored();
        if (!text_.empty()) text_ += "</ol>\n";
        return text_;
    }

 private:
    void add(const replayed_notification& replayed, const programme_info& stored) {
        const spi::ServElemId service = id_of(stored.service);
        if (stored_ != 0 && (replayed.line != stored_line_ || service != stored_service_)) end_stored();
        if (stored_ == 0) stored_at_ = replayed.at;
        stored_line_ = replayed.line;
        stored_service_ = service;
        ++stored_;
    }

    void add(const replayed_notification& replayed, const now_next& pair) {
        end_stored();
        const std::string service =
            replayed.at.service ? service_markup(of_, id_of(*replayed.at.service)) : std::string();
        item(replayed.at, replayed.line, "pair", service,
             "<b>now</b> " + programme_markup(pair.now) + "<br><b>next</b> " + programme_markup(pair.next));
    }

    void add(const replayed_notification& replayed, const station_logo& logo) {
        end_stored();
        item(replayed.at, replayed.line, "logo", service_markup(of_, id_of(logo.station)),
             std::string("<b>logo</b> ") + size_text(static_cast<std::uint8_t>(logo.size_code)) + " <code>" +
                 escaped(logo.file) + "</code>");
    }

    // Programmes that one object brought are one entry.
    void end_stored() {
        if (stored_ == 0) return;
        item(stored_at_, stored_line_, "stored", service_markup(of_, stored_service_),
             number_of(stored_, "programme") + " stored");
        stored_ = 0;
    }

    void item(const notification_time& at, std::size_t line, const char* kind, const std::string& service,
              const std::string& markup) {
        const std::string day = at.clock ? at.clock->date() : "before the first date";
        if (day != day_ || text_.empty())
            text_ += (text_.empty() ? "" : "</ol>\n") + ("<h3>" + escaped(day)) +
                     "</h3>\n<ol class=\"reported-list\">\n";
        day_ = day;
        text_ += std::string("<li class=\"") + kind + "\"><time>" +
                 (at.clock ? escaped(at.clock->time()) : "-") + "</time><div>" + service +
                 (of_.input.folder
                      ? ""
                      : " <small class=\"line\">" + place_words(of_.input.places, line) + "</small>") +
                 "<br>" + markup + "</div></li>\n";
    }

    const check_report& of_;
    std::string text_;
    std::string day_;
    std::size_t stored_ = 0;
    std::size_t stored_line_ = 0;
    spi::ServElemId stored_service_;
    notification_time stored_at_;
};

}  // namespace

std::string timeline_section(const check_report& of) {
    const std::string items = timeline_writer(of).write();
    return "<section id=\"timeline\">\n<h2>What was shown</h2>\n" +
           (items.empty() ? std::string("<p>Nothing was reported to the listener.</p>\n") : items) +
           "</section>\n";
}

}  // namespace dabspi::check::html
