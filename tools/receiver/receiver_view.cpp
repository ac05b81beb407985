#include "tools/receiver/receiver_view.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "src/parse/body/spi_body.h"
#include "src/parse/mot_content.h"
#include "src/parse/reader/spi_parseable.h"
#include "src/parse/reader/spi_tags.h"

namespace dabspi::spi_object {

namespace {

constexpr std::size_t kMostRecords = 20000;

spi::MotBody copy_of(byte_view body) {
    std::unique_ptr<unsigned char[]> copied(new unsigned char[body.size()]);
    std::copy(body.begin(), body.end(), copied.get());
    return spi::MotBody(static_cast<std::uint32_t>(body.size()), std::move(copied));
}

class taking final : public spi::SpiBodyListener {
 public:
    explicit taking(receiver_view& view) : view_(view) {}

    void programme_read(const spi::ServElemId& service, spi::PiScheduleProgramme&& programme,
                        std::uint32_t offset) override {
        keep(view_.programmes, {offset, std::move(programme), service, std::nullopt});
    }
    void programme_dropped(spi::no_service why, spi::PiScheduleProgramme&& programme,
                           std::uint32_t offset) override {
        keep(view_.programmes, {offset, std::move(programme), {}, why});
    }
    void service_read(const spi::ServElemId& /*received_with*/, spi::SiServiceInfo&& info,
                      std::uint32_t offset) override {
        keep(view_.services, {offset, std::move(info), {}});
    }

 private:
    template <class Record>
    void keep(std::vector<Record>& records, Record&& record) {
        if (records.size() == kMostRecords) {
            ++view_.more;
        } else {
            records.push_back(std::move(record));
        }
    }

    receiver_view& view_;
};

// The parsers tell of a service with its logos, but not where these stand.
void find_logos(byte_view body, std::vector<taken_service>& services) {
    if (services.empty()) return;
    spi::ReadBuffer buffer(copy_of(body));
    for (taken_service& each : services) {
        buffer.pos = each.offset;
        spi::spi_parseable service(buffer);
        while (service.has_more()) {
            spi::spi_parseable media(service);
            while (media.tag == spi::tag::media_description && media.has_more()) {
                const std::uint32_t offset = buffer.pos;
                const spi::spi_parseable logo(media);
                if (logo.tag == spi::tag::multimedia) each.logo_offsets.push_back(offset);
            }
        }
        // Fewer where the budget of the body has ended the service.
        each.logo_offsets.resize(each.info.logos.size());
    }
}

}  // namespace

receiver_view take(byte_view body, std::uint16_t subtype, std::uint16_t ensemble) {
    receiver_view view;
    view.ensemble = ensemble;
    taking listener(view);
    view.read = spi::read_spi_body(subtype, copy_of(body), {}, ensemble, listener);
    find_logos(body, view.services);
    return view;
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
        case object_kind::service_information: return spi::kMotServiceInformation;
        case object_kind::group_information: return spi::kMotGroupInformation;
        case object_kind::programme_information:
        case object_kind::unknown: break;
    }
    return spi::kMotProgrammeInformation;
}

}  // namespace dabspi::spi_object
