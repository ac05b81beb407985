#include "tools/carousel/prepared_carousel.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <stdexcept>

#include "src/parse/mot_content.h"
#include "tools/encode/earlier_ids.h"
#include "tools/text/dab_identifier.h"
#include "tools/text/utf8.h"

namespace dabspi::carousel {

namespace {

using namespace transmit;

constexpr std::int64_t kFirstUnixDay = 40587;  // MJD
constexpr std::int64_t kMinutesOfHalfHour = 30;
constexpr std::int64_t kMillisecondsOfMinute = 60'000;
constexpr std::int64_t kSecondsOfHalfHour = 1800;
constexpr unsigned kLongestPacket = 96;
constexpr std::uint16_t kFirstLongSid = 0xFFFF;
constexpr std::uint16_t kSoundRate = 8;  // kbit/s
constexpr std::size_t kMostServices = 500;

// Milliseconds since 1858-11-17.
std::int64_t utc_now() {
    const auto since = std::chrono::system_clock::now().time_since_epoch();
    return kFirstUnixDay * kMinutesOfDay * kMillisecondsOfMinute +
           std::chrono::duration_cast<std::chrono::milliseconds>(since).count();
}

sending_settings settings_of(const carousel_options& options) {
    sending_settings how;
    how.packets.frame_size = std::size_t{options.bit_rate} * 3;
    how.packets.address = static_cast<std::uint16_t>(options.address);
    how.packets.fec = options.fec;
    const unsigned most = std::min<unsigned>(kLongestPacket, options.bit_rate * 3);
    how.packets.packet_size = options.packet_size == 0 ? most : std::min(options.packet_size, most);
    how.carousel.mode = options.mode == "header" ? carousel_mode::header : carousel_mode::directory;
    how.carousel.directory = options.directory == "both"         ? directory_form::both
                             : options.directory == "compressed" ? directory_form::compressed
                                                                 : directory_form::plain;
    how.carousel.charset = options.charset == "ebu-latin"    ? name_charset::ebu_latin
                           : options.charset == "iso-8859-1" ? name_charset::iso_8859_1
                                                             : name_charset::utf_8;
    how.carousel.segment_size =
        options.segment_size == 0 ? usual_segment_size(how.packets.packet_size) : options.segment_size;
    how.plain_order = options.plain_order;
    return how;
}

}  // namespace

std::string service_uri(const std::string& id) {
    const std::optional<std::string> uri = uri_of_earlier_id(id);
    return uri ? *uri : id;
}

namespace {

// That of the service information, where there is one.
std::optional<spi_object::ensemble_id> ensemble_of(const std::vector<carousel_object>& objects,
                                                   std::vector<std::string>& errors) {
    std::map<std::string, spi_object::ensemble_id> found;  // by their texts
    for (const carousel_object& each : objects) {
        if (each.sent.content_type != spi::kMotSpiObject ||
            each.sent.content_subtype != spi::kMotServiceInformation || each.sent.scope_id.size() != 3)
            continue;
        std::vector<spi_object::problem> problems;
        const spi_object::ensemble_id id = spi_object::decode_ensemble_id(each.sent.scope_id, problems);
        found.emplace(ensemble_id_text(id), id);
    }
    if (found.empty()) return std::nullopt;
    if (found.size() > 1) {
        std::string ids;
        for (const auto& [text, id] : found)
            ids += (ids.empty() ? "" : ", ") + text;
        errors.push_back("the service information is of several ensembles; choose with --ensemble: " + ids);
    }
    return found.begin()->second;
}

void announce(prepared_carousel& to, const carousel_options& options,
              const std::optional<std::uint32_t>& planned_service) {
    announced_ensemble& announced = to.announced;
    announced.ecc = to.ensemble->ecc;
    announced.eid = to.ensemble->eid;
    announced.label =
        options.label.empty()
            ? "Ensemble " + dab_identifier{to.ensemble->ecc, to.ensemble->eid, {}, {}}.ensemble_text()
            : options.label;
    announced.spi.id = static_cast<std::uint8_t>(options.sub_channel);
    announced.spi.bit_rate = static_cast<std::uint16_t>(options.bit_rate);
    announced.sound.id = static_cast<std::uint8_t>(options.sub_channel == 2 ? 1 : 2);
    announced.sound.start = announced.spi.units();
    announced.sound.bit_rate = kSoundRate;
    announced.spi_address = static_cast<std::uint16_t>(options.address);
    announced.spi_fec = options.fec;
    announced.spi_label = options.service_label;
    // A number of the ensemble's own country, unless it is given.
    announced.spi_sid =
        std::uint32_t{announced.ecc} << 24 | (announced.eid & 0xF000U) << 8 | (announced.eid & 0xFFFU);
    if (planned_service && *planned_service > kFirstLongSid) announced.spi_sid = *planned_service;
    if (!options.data_service.empty())
        announced.spi_sid = *dab_identifier::of_service(options.data_service)->sid;
    std::vector<std::uint16_t> known;
    std::size_t others = 0;
    for (const described_service& each : to.described.services) {
        const auto sid = static_cast<std::uint16_t>(each.id.sid);
        if (each.id.sid == 0 || each.id.sid > kFirstLongSid || announced.services.size() == kMostServices) {
            ++others;
        } else if (std::find(known.begin(), known.end(), sid) == known.end()) {
            known.push_back(sid);
            announced.services.push_back({sid, each.name});
        }
    }
    if (others != 0)
        to.messages.push_back("the FIC announces programme services only: " + std::to_string(others) +
                              " services of the service information are left out");
}

// Half-hours at the clock's local time, or at `utc`: what was asked for, or what the schedules were written
// with.
int offset_of(const std::vector<carousel_object>& objects, const std::optional<local_offset>& local,
              const std::optional<broadcast_minute>& clock, const broadcast_minute& utc) {
    if (local) {
        const std::int64_t seconds =
            clock ? local->at_local(unix_seconds(*clock)) : local->at(unix_seconds(utc));
        return static_cast<int>(seconds / kSecondsOfHalfHour);
    }
    for (const carousel_object& each : objects)
        if (each.offset) return *each.offset;
    return 0;
}

}  // namespace

prepared_carousel look_at_objects(const carousel_options& options) {
    prepared_carousel all;
    all.settings = settings_of(options);
    reading_options how;
    how.carousel = options.carousel;
    how.tokens = options.tokens;
    how.lenient = options.lenient;
    how.local = options.local_time.value();
    if (!options.service.empty()) how.service = spi_object::parse_content_id(service_uri(options.service));
    if (!options.ensemble.empty()) {
        const dab_identifier id = *dab_identifier::of_ensemble(options.ensemble);
        how.ensemble = spi_object::ensemble_id{*id.ecc, *id.ensemble};
    }
    if (!options.clock.empty()) how.now = parse_minute(options.clock);
    carousel_objects read = read_objects(options.inputs, how);
    all.errors = std::move(read.errors);
    all.messages = std::move(read.messages);
    all.files = std::move(read.files);
    all.objects = std::move(read.all);
    if (!all.errors.empty()) return all;

    all.ensemble = how.ensemble ? how.ensemble : ensemble_of(all.objects, all.errors);
    if (!all.errors.empty()) return all;
    all.described = described_by(all.objects, all.ensemble ? all.ensemble->eid : std::uint16_t{0});
    use_announced_names(all.objects, all.described);
    if (options.compress)
        for (carousel_object& each : all.objects)
            compress_where_it_helps(each.sent);
    const std::optional<broadcast_minute> clock = how.now ? how.now : read.clock;
    const std::int64_t now = utc_now();
    const broadcast_minute utc = {now / kMillisecondsOfMinute};
    const int offset = offset_of(all.objects, how.local, clock, utc);
    all.announced.offset_half_hours = offset;
    const std::int64_t local = offset * kMinutesOfHalfHour;
    all.begin = clock ? *clock : broadcast_minute{utc.number + local};
    all.begin_utc = clock ? (clock->number - local) * kMillisecondsOfMinute : now;
    all.images = image_verdicts(all.objects, all.described);
    std::vector<bool> shown(all.objects.size());
    for (const image_verdict& each : all.images)
        shown[each.object] = each.written;
    all.tuned = tuned_objects(all.objects, all.begin.day(), shown);
    if (all.ensemble) announce(all, options, read.data_service);
    return all;
}

prepared_carousel prepare(const carousel_options& options, std::unique_ptr<carousel_maker>& maker) {
    prepared_carousel all = look_at_objects(options);
    if (!all.errors.empty()) return all;
    if (maker == nullptr) maker = std::make_unique<carousel_maker>(all.settings.carousel);
    try {
        all.made = make_carousel(all.objects, all.tuned, all.settings, *maker);
    } catch (const std::length_error& failed) {
        all.errors.emplace_back(failed.what());
    }
    return all;
}

}  // namespace dabspi::carousel
