// Findings in images: those that nothing waits for, and those that are not what was announced.

#include <set>
#include <string>

#include "src/parse/mot_content.h"
#include "tools/check/input.h"
#include "tools/check/logo_text.h"
#include "tools/check/png_check.h"
#include "tools/check/rules.h"
#include "tools/text/utf8.h"

namespace dabspi::check {

namespace {

using logo_name = std::pair<spi::ServElemId, std::string>;  // data service and content name

class image_rules {
 public:
    image_rules(const history& in, finding_list& found) : in_(in), found_(found) {
        for (const announcement& each : in.announcements) {
            const logo_name name{each.data_service, each.content_name};
            announced_.emplace(name, each.line);
            if (spi::refusal_of_format(each.format) == spi::logo_refusal::none &&
                spi::refusal_of_size(each.size_code) == spi::logo_refusal::none)
                wanted_.insert(name);
        }
    }

    void look_at(const image_arrival& arrival) {
        const sent_object& object = in_.objects[arrival.object];
        finding what{finding_code::logo_subtype, arrival.line, arrival.object};
        if (!arrival.subtype_used) {
            what.text = "ContentSubType " + std::to_string(object.subtype) +
                        (object.subtype == spi::kMotGif   ? ", GIF"
                         : object.subtype == spi::kMotBmp ? ", BMP"
                                                          : "");
            found_.add(what);
        } else if (arrival.uses.empty()) {
            unmatched(arrival, object, what);
        } else {
            matched(arrival, object, what);
        }
    }

 private:
    // "on line 12", "in frame 7"
    std::string announced_at(std::size_t line) const {
        return (in_.places.empty() ? "on " : "in ") + place_words(in_.places, line);
    }

    void unmatched(const image_arrival& arrival, const sent_object& object, finding what) {
        const logo_name name{object.data_service, object.content_name};
        const auto first = announced_.find(name);  // the earliest: emplace keeps it
        if (first == announced_.end()) {
            what.code = finding_code::logo_not_announced;
            what.text = "no service information on data service " + service_text(object.data_service) +
                        " announces it";
            found_.add(what);
        } else if (wanted_.count(name) == 0) {
            return;  // never written, at whatever time it comes
        } else if (first->second > arrival.line) {
            what.code = finding_code::logo_early;
            what.text = "announced " + announced_at(first->second) + ", " +
                        std::to_string(object.body->size()) + " bytes lost";
            found_.add(what);
        } else {
            const auto used = used_.find(name);
            if (used == used_.end() || used->second == arrival.object) return;
            what.code = finding_code::logo_change_lost;
            what.text = "differs from the image of " +
                        place_words(in_.places, in_.objects[used->second].lines.front()) +
                        ", which has used the logo announcement up";
            found_.add(what);
        }
    }

    void matched(const image_arrival& arrival, const sent_object& object, finding what) {
        used_[{object.data_service, object.content_name}] = arrival.object;
        std::map<std::string, std::size_t> written;
        for (const image_arrival::use& use : arrival.uses) {
            const announcement& of = in_.announcements[use.announcement];
            what.service = of.station;
            switch (use.refusal) {
                case spi::logo_refusal::too_large:
                    add(finding_code::logo_too_large, what, of,
                        std::to_string(object.body->size()) + " bytes, " +
                            std::to_string(object.body->size() - spi::kLargestLogo) + " too many");
                    break;
                case spi::logo_refusal::larger_there:
                    add(finding_code::logo_larger_there, what, of, "not written");
                    break;
                case spi::logo_refusal::none:
                    if (++written[of.file] == 2) add(finding_code::logo_twice, what, of, times(arrival, of));
                    look_inside(of, object, what);
                    break;
                default: break;  // told with the announcement
            }
        }
    }

    std::string times(const image_arrival& arrival, const announcement& of) const {
        std::size_t count = 0;
        for (const image_arrival::use& use : arrival.uses)
            if (in_.announcements[use.announcement].file == of.file) ++count;
        return of.file + " written " + std::to_string(count) + " times";
    }

    void look_inside(const announcement& of, const sent_object& object, finding what) {
        const png_verdict verdict = check_png(*object.body);
        if (!verdict.good) add(finding_code::logo_not_png, what, of, verdict.fault);
        if (verdict.width == 0) return;
        const std::string real = std::to_string(verdict.width) + "x" + std::to_string(verdict.height);
        if (real != size_text(of.size_code))
            add(finding_code::logo_other_size, what, of, "the image has " + real + " pixels");
    }

    void add(finding_code code, finding what, const announcement& of, const std::string& text) {
        what.code = code;
        what.text = logo_text(of) + ": " + text;
        found_.add(what, of.file);
    }

    const history& in_;
    finding_list& found_;
    std::map<logo_name, std::size_t> announced_;  // the first line
    std::set<logo_name> wanted_;                  // those that could be written
    std::map<logo_name, std::size_t> used_;       // the object that used the announcement up
};

}  // namespace

void look_at_images(const history& in, finding_list& found) {
    image_rules rules(in, found);
    for (const image_arrival& each : in.images)
        rules.look_at(each);
}

}  // namespace dabspi::check
