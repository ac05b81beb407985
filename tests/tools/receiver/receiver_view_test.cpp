// What a receiver takes from an object is what the library's own parsers send.
#include "tools/receiver/receiver_view.h"

#include <random>

#include "src/event/payloads.h"
#include "src/parse/body/pi_body_parser.h"
#include "src/parse/body/si_body_parser.h"
#include "src/parse/worker/spi_parser.h"
#include "testkit/bodies.h"
#include "tests/support/recording_router.h"
#include "tests/tools/spi/decoded.h"

namespace {

constexpr std::uint16_t kEnsemble = 0x10C1;

sb::bytes programmes() {
    sb::schedule_data schedule;
    sb::programme_data programme;
    programme.name = {"Short", "Medium", "\x01 Long"};
    programme.start = {sb::mjd(2026, 3, 10), 6, 0, -2, sb::utc_fraction{1, 2}};
    programme.duration = 5400;
    programme.short_id = 0x010203;
    programme.bearers = {{0xE0, kEnsemble, 0xE0D00001, 2}};
    sb::programme_data elsewhere = programme;
    elsewhere.name = {"", "Elsewhere", ""};
    elsewhere.bearers = {{0xE0, 0x10C2, 0x1A02, 0}};
    schedule.programmes = {programme, elsewhere, programme};
    sb::schedule_data scoped = schedule;
    scoped.scope = sb::service_id{0xE0, kEnsemble, 0x1A01, 0};
    return sb::pi_object({schedule, scoped}, {{1, "News"}});
}

sb::bytes services() {
    sb::service_data service;
    service.name = {"Orb", "\x01 Orbitale", ""};
    service.bearers = {{0xE0, kEnsemble, 0x1A01, 0}};
    service.logos = {{"image/png", "a.png", 4, {}, {}}, {"", "b.JPG", 2, 128, 128}};
    sb::service_data unnamed = service;
    unnamed.name = {"Only", "", ""};
    unnamed.bearers.clear();
    return sb::si_object(0xE0, kEnsemble, {service, unnamed}, {{1, "Radio"}});
}

// The library's parsers over the same body.
class ReceiverView : public testing::Test {
 protected:
    ReceiverView() { router_.register_queue(&worker_); }

    void expect_same(const sb::bytes& body) {
        spi::PiBodyParser(worker_, kEnsemble).parse(body_of(body));
        const std::vector<spi::event> programmes = router_.take();
        const so::receiver_view pi = so::take(body, 1, kEnsemble);
        std::size_t sent = 0;
        for (const so::taken_programme& each : pi.programmes) {
            ASSERT_LT(each.offset, body.size());
            if (each.dropped) continue;
            ASSERT_LT(sent, programmes.size());
            const auto& event = payload_of<spi::pi_programme_event>(programmes[sent++]);
            ASSERT_EQ(event.service, each.service);
            ASSERT_EQ(event.programme.name, each.programme.name);
            ASSERT_EQ(event.programme.duration, each.programme.duration);
            ASSERT_EQ(event.programme.crid, each.programme.crid);
            ASSERT_EQ(event.programme.time.local_time(0), each.programme.time.local_time(0));
        }
        ASSERT_EQ(sent, programmes.size());

        spi::SiBodyParser(worker_).parse({}, body_of(body));
        const std::vector<spi::event> services = router_.take();
        const so::receiver_view si = so::take(body, 0, kEnsemble);
        ASSERT_EQ(si.services.size(), services.size());
        for (std::size_t i = 0; i < services.size(); ++i) {
            const spi::SiServiceInfo& event = payload_of<spi::si_service_event>(services[i]).info;
            const so::taken_service& taken = si.services[i];
            ASSERT_EQ(event.id, taken.info.id);
            ASSERT_EQ(event.name, taken.info.name);
            ASSERT_EQ(event.logos.size(), taken.info.logos.size());
            ASSERT_EQ(taken.logo_offsets.size(), taken.info.logos.size());
            auto logo = taken.info.logos.begin();
            for (const spi::SpiLogoInfo& each : event.logos) {
                ASSERT_EQ(each.name, logo->name);
                ASSERT_EQ(each.service, logo->service);
                ASSERT_EQ(each.image_format, logo->image_format);
                ASSERT_EQ(each.size_code, (logo++)->size_code);
            }
        }
    }

 private:
    recording_router router_;
    spi::SpiParser worker_;
};

TEST_F(ReceiverView, IsTheLibrarysOwnForEveryCut) {
    for (const sb::bytes& whole : {programmes(), services()}) {
        for (std::size_t size = 0; size <= whole.size(); ++size)
            expect_same(sb::cut(whole, size));
    }
}

TEST_F(ReceiverView, IsTheLibrarysOwnForEveryChangedByte) {
    std::mt19937 random(7);
    for (const sb::bytes& whole : {programmes(), services()}) {
        for (std::size_t at = 0; at < whole.size(); ++at) {
            for (const unsigned value : {0x00U, 0x01U, 0x7FU, 0xFEU, 0xFFU, unsigned(random() % 256)}) {
                sb::bytes changed = whole;
                changed[at] = static_cast<std::uint8_t>(value);
                expect_same(changed);
            }
        }
    }
}

TEST_F(ReceiverView, IsTheLibrarysOwnForOverlappingElements) {
    sb::bytes body;
    while (body.size() < 240) {
        const auto left = static_cast<std::uint8_t>(240 - body.size() - 6);
        body = sb::join({body, {0x02, 0x06, 0x21, 0xFE, 0x00, left, 0x1C, 0x06}});
    }
    expect_same(body);
}

TEST_F(ReceiverView, TellsWhereProgrammesStandAndWhichAreDropped) {
    const sb::bytes body = programmes();
    const so::receiver_view view = so::take(body, 1, kEnsemble);
    ASSERT_EQ(view.programmes.size(), 6U);
    std::vector<bool> dropped;
    for (const so::taken_programme& each : view.programmes) {
        EXPECT_EQ(body[each.offset], 0x1C);
        dropped.push_back(each.dropped.has_value());
    }
    EXPECT_THAT(dropped, testing::ElementsAre(false, true, false, false, false, false));
    EXPECT_EQ(view.programmes[0].programme.name, "News Long");
    EXPECT_EQ(view.programmes[0].service.sid, 0xE0D00001);
    EXPECT_EQ(view.programmes[4].service.sid, 0x1A01U);
}

TEST_F(ReceiverView, TellsWhereServicesAndLogosStand) {
    const sb::bytes body = services();
    const so::receiver_view view = so::take(body, 0, 0);
    ASSERT_EQ(view.services.size(), 2U);
    EXPECT_EQ(body[view.services[1].offset], 0x28);
    EXPECT_EQ(body[view.services[1].logo_offsets.at(1)], 0x2B);
}

TEST_F(ReceiverView, ReadsTwoSubTypesOnly) {
    EXPECT_TRUE(so::take(programmes(), 1, 0).read);
    EXPECT_FALSE(so::take(programmes(), 2, 0).read);
    EXPECT_TRUE(so::take(programmes(), 0, 0).services.empty());
}

TEST_F(ReceiverView, KeepsABoundedNumberOfRecords) {
    sb::bytes many;
    for (int i = 0; i < 20010; ++i)
        many.insert(many.end(), {0x1C, 0x00});
    const so::receiver_view view = so::take(sb::elem(0x02, {sb::elem(0x21, many)}), 1, 0);
    EXPECT_EQ(view.programmes.size(), 20000U);
    EXPECT_EQ(view.more, 10U);
}

TEST(HomeEnsemble, IsThatOfTheFirstIdentifierThatIsRead) {
    EXPECT_EQ(so::home_ensemble(so::decode(programmes())), kEnsemble);
    EXPECT_EQ(so::home_ensemble(so::decode(around_programme({}))), std::nullopt);
    // The bearer of an event is passed over.
    const sb::bytes event = sb::elem(
        sb::tag::programme_event,
        {sb::elem(sb::tag::location,
                  {sb::elem(sb::tag::bearer, sb::attr(0x80, sb::content_id(0xE0, 0x10C3, 0x1A01)))})});
    EXPECT_EQ(so::home_ensemble(so::decode(around_programme(event))), std::nullopt);
}

// The tree's word on each node holds: without the nodes that are passed over, the receiver takes the same.

sb::bytes without_unread(const so::node& of, const sb::bytes& body) {
    sb::bytes inside;
    bool keeps_children = false;
    for (const so::node& each : of.children) {
        keeps_children = true;
        if (each.kind == so::node_kind::token || each.receiver == so::reading::read)
            inside = sb::join({inside, without_unread(each, body)});
    }
    if (!keeps_children) inside.assign(body.begin() + of.content(), body.begin() + of.end());
    return sb::elem(of.tag, inside);
}

std::string names_of(const so::receiver_view& view) {
    std::string all;
    for (const so::taken_programme& each : view.programmes)
        all += each.programme.sig() + std::to_string(each.programme.crid) +
               (each.dropped ? " dropped" : " " + std::to_string(each.service.val())) + "\n";
    for (const so::taken_service& each : view.services) {
        all += each.info.name + " " + std::to_string(each.info.id.val()) + "\n";
        for (const spi::SpiLogoInfo& logo : each.info.logos)
            all += "  " + logo.name + " " + std::to_string(logo.image_format) +
                   std::to_string(logo.size_code) + "\n";
    }
    return all;
}

// An element with all that may stand in it, three times nested at most in itself; attributes first.
sb::bytes everything(const so::element_entry& element, int& number) {
    const auto letters = [&number] { return "t" + std::to_string(++number); };
    if (element.content == so::content_kind::token_table) return sb::token_table({{1, letters()}});
    if (element.tag == so::tag::default_content_id)
        return sb::elem(0x05, sb::content_id(0xE0, kEnsemble, 0x1000U + static_cast<unsigned>(++number)));
    if (element.content == so::content_kind::value) return sb::elem(element.tag, sb::str(letters()));
    if (element.content == so::content_kind::positions)
        return sb::elem(element.tag, sb::bytes{0, 1, 2, 3, 4, 5});
    std::vector<sb::bytes> inside;
    for (const so::attribute_entry& attribute : element.attributes) {
        ++number;
        const auto low = static_cast<std::uint32_t>(number % 200);
        switch (attribute.type) {
            case so::value_type::number16:
            case so::value_type::seconds:
                inside.push_back(sb::attr(attribute.tag, sb::u16(300 + low)));
                break;
            case so::value_type::number24:
                inside.push_back(sb::attr(attribute.tag, sb::u24(70000 + low)));
                break;
            case so::value_type::time:
                inside.push_back(sb::attr(attribute.tag, sb::time_point(61000 + low, 5, 0)));
                break;
            case so::value_type::content_id:
                inside.push_back(sb::attr(attribute.tag, sb::content_id(0xE0, kEnsemble, 0x2000 + low)));
                break;
            case so::value_type::ensemble_id:
                inside.push_back(sb::attr(attribute.tag, sb::bytes{0xE0, 0x10, 0xC1}));
                break;
            case so::value_type::enumeration:
                inside.push_back(sb::attr(attribute.tag, sb::u8(attribute.names.front().code)));
                break;
            case so::value_type::genre: inside.push_back(sb::attr(attribute.tag, sb::bytes{3, 1})); break;
            default: inside.push_back(sb::attr(attribute.tag, sb::str(letters()))); break;
        }
    }
    for (const so::element_entry& child : so::all_elements())
        if (so::may_stand_in(child, element.tag)) inside.push_back(everything(child, number));
    return sb::elem(element.tag, inside);
}

TEST(TreeReading, WithoutWhatIsPassedOverAReceiverTakesTheSame) {
    for (const std::uint8_t top : {so::tag::epg, so::tag::service_information}) {
        int number = 0;
        const sb::bytes body = everything(*so::find_element(top), number);
        const so::object tree = so::decode(body);
        EXPECT_TRUE(tree.well_formed());
        const std::uint16_t subtype = so::natural_subtype(tree);
        const sb::bytes less = without_unread(tree.tops.front(), body);
        ASSERT_LT(less.size(), body.size() / 2);
        EXPECT_EQ(names_of(so::take(less, subtype, kEnsemble)), names_of(so::take(body, subtype, kEnsemble)));
        EXPECT_NE(names_of(so::take(body, subtype, kEnsemble)), "");
    }
}

}  // namespace
