#include "tools/receiver/receiver_view.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "src/parse/pi_body_parser.h"
#include "src/parse/spi_parseable.h"
#include "src/parse/spi_tags.h"

namespace dabspi::spi_object {

namespace {

constexpr std::size_t kMostRecords = 20000;

spi::MotBody copy_of(byte_view body) {
    std::unique_ptr<unsigned char[]> copied(new unsigned char[body.size()]);
    std::copy(body.begin(), body.end(), copied.get());
    return spi::MotBody(static_cast<std::uint32_t>(body.size()), std::move(copied));
}

bool is_set(const spi::ServElemId& service) {
    return service.sid != 0 && service.ecc != 0;
}

// Opens a child of a scope (or a top element of the body) and calls with it and the place of its tag.
template <class Parent, class Call>
void with_child(Parent& parent, spi::ReadBuffer& buffer, const Call& call) {
    const std::uint32_t start = buffer.pos;
    spi::spi_parseable child(parent);
    call(child, start);
}

class walk {
 public:
    walk(byte_view body, std::uint16_t ensemble) : buffer_(copy_of(body)) {
        view_.read = true;
        view_.ensemble = ensemble;
        scope_.eid = ensemble;
    }

    receiver_view programme_information() {
        while (buffer_.in_body()) {
            with_child(buffer_, buffer_, [this](spi::spi_parseable& top, std::uint32_t) {
                if (top.tag == spi::TAG_EPG) epg(top);
            });
        }
        return std::move(view_);
    }

    receiver_view service_information() {
        while (buffer_.in_body()) {
            with_child(buffer_, buffer_, [this](spi::spi_parseable& top, std::uint32_t) {
                if (top.tag == spi::TAG_SERVICE_INFORMATION) services(top);
            });
        }
        return std::move(view_);
    }

 private:
    void epg(spi::spi_parseable& parent) {
        while (parent.has_more()) {
            with_child(parent, buffer_, [this](spi::spi_parseable& child, std::uint32_t) {
                switch (child.tag) {
                    case spi::TAG_TOKEN_TABLE: tokens_.parse(child); break;
                    case spi::TAG_DEFAULT_CONTENT_ID: scope_.parse_content_id(child); break;
                    case spi::TAG_SCHEDULE: schedule(child); break;
                    default: break;
                }
            });
        }
    }

    void schedule(spi::spi_parseable& parent) {
        while (parent.has_more()) {
            with_child(parent, buffer_, [this](spi::spi_parseable& child, std::uint32_t at) {
                switch (child.tag) {
                    case spi::TAG_SCOPE: scope_.parse(child); break;
                    case spi::TAG_PROGRAMME: programme(child, at); break;
                    default: break;
                }
            });
        }
    }

    void programme(spi::spi_parseable& element, std::uint32_t at) {
        taken_programme taken{at, {}, {}, false};
        taken.programme.eid = view_.ensemble;
        taken.programme.parse(element, tokens_);
        taken.service = is_set(scope_.seid) ? scope_.seid : taken.programme.bearer;
        taken.dropped = !is_set(taken.service);
        keep(view_.programmes, std::move(taken));
    }

    void services(spi::spi_parseable& parent) {
        while (parent.has_more()) {
            with_child(parent, buffer_, [this](spi::spi_parseable& child, std::uint32_t) {
                switch (child.tag) {
                    case spi::TAG_TOKEN_TABLE: tokens_.parse(child); break;
                    case spi::TAG_ENSEMBLE: ensemble(child); break;
                    default: break;
                }
            });
        }
    }

    void ensemble(spi::spi_parseable& parent) {
        while (parent.has_more()) {
            with_child(parent, buffer_, [this](spi::spi_parseable& child, std::uint32_t at) {
                if (child.tag == spi::TAG_SERVICE) service(child, at);
            });
        }
    }

    // As SiServiceInfo::parse, with the places of the logos.
    void service(spi::spi_parseable& element, std::uint32_t at) {
        taken_service taken{at, {}, {}};
        spi::SiServiceInfo& info = taken.info;
        while (element.has_more()) {
            with_child(element, buffer_, [&](spi::spi_parseable& child, std::uint32_t) {
                switch (child.tag) {
                    case spi::TAG_MEDIUM_NAME: info.parse_name(child, tokens_); break;
                    case spi::TAG_SHORT_NAME:
                        if (info.name.empty()) info.parse_name(child, tokens_);
                        break;
                    case spi::TAG_MEDIA_DESCRIPTION: media(child, taken); break;
                    case spi::TAG_SERVICE_BEARER: info.parse_bearer(child); break;
                    default: break;
                }
            });
        }
        keep(view_.services, std::move(taken));
    }

    void media(spi::spi_parseable& description, taken_service& taken) {
        while (description.has_more()) {
            with_child(description, buffer_, [&](spi::spi_parseable& child, std::uint32_t at) {
                if (child.tag != spi::TAG_MULTIMEDIA) return;
                spi::SiMediaInfo logo;
                logo.id = taken.info.id;
                taken.info.parse_multimedia(child, tokens_, logo);
                taken.info.logos.push_back(logo.logo_info());
                taken.logo_offsets.push_back(at);
            });
        }
    }

    template <class Record>
    void keep(std::vector<Record>& records, Record&& record) {
        if (records.size() == kMostRecords) {
            ++view_.more;
        } else {
            records.push_back(std::move(record));
        }
    }

    spi::ReadBuffer buffer_;
    spi::SpiTokenTable tokens_;
    spi::PiScheduleScope scope_;
    receiver_view view_;
};

}  // namespace

receiver_view take(byte_view body, std::uint16_t subtype, std::uint16_t ensemble) {
    if (subtype == 0) return walk(body, ensemble).service_information();
    if (subtype == 1) return walk(body, ensemble).programme_information();
    receiver_view none;
    none.ensemble = ensemble;
    return none;
}

std::optional<std::uint16_t> home_ensemble(const object& of) {
    std::optional<std::uint16_t> found;
    visit(of, [&](const node& each, const std::vector<const node*>&) {
        if (found || each.receiver != reading::read) return;
        if (const auto* id = std::get_if<content_id>(&each.decoded))
            if (id->ensemble_coded) found = id->eid;
    });
    return found;
}

std::uint16_t natural_subtype(const object& of) {
    switch (of.kind) {
        case object_kind::service_information: return 0;
        case object_kind::group_information: return 2;
        case object_kind::programme_information:
        case object_kind::unknown: break;
    }
    return 1;
}

}  // namespace dabspi::spi_object
