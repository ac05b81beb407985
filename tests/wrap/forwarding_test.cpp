// The host's calls as the core gets them, and the ownership of core and adaptor.
#include "spi_wrap/spi_server.h"
#include "spi_wrap/to_spi_server.h"
#include "tests/wrap/recording_core.h"
#include "tests/wrap/wrap_fixture.h"

namespace {

using recording_core::record;

class Forwarding : public Wrapped {
 protected:
    Forwarding() { recording_core::forget(); }
    ~Forwarding() override { recording_core::forget(); }

    const recording_core::body_t& fed(const std::string& bytes, std::uint32_t sid = 0xE1C00221) {
        spi_wrap::MotBody body;
        body.size = static_cast<std::uint32_t>(bytes.size());
        body.data = reinterpret_cast<const unsigned char*>(bytes.data());
        return fed(body, {sid, 0x55, 7});
    }
    const recording_core::body_t& fed(spi_wrap::MotBody body, spi_wrap::ServElemId service) {
        EXPECT_EQ(server.FeedMotBody(metadata, body, service), 0);
        return record().bodies.back();
    }

    spi_wrap::MotBodyMetadata metadata{0x1234, 7, 1, "w20260302d.EHB"};
    spi_wrap::toSpiServer server{nullptr};
};

TEST_F(Forwarding, MetadataIsCopiedAndTheApplicationIsAlwaysSpi) {
    const recording_core::body_t& got = fed("body");
    EXPECT_EQ(got.metadata.user_application_type, 7);  // whatever the host's own first field holds
    EXPECT_EQ(got.metadata.content_type, 7);
    EXPECT_EQ(got.metadata.content_subtype, 1);
    EXPECT_EQ(got.metadata.content_name, "w20260302d.EHB");
    metadata = {0, 2, 0xABCD, std::string("a\0b", 3)};
    const recording_core::body_t& image = fed("body");
    EXPECT_EQ(image.metadata.user_application_type, 7);
    EXPECT_EQ(image.metadata.content_type, 2);
    EXPECT_EQ(image.metadata.content_subtype, 0xABCD);
    EXPECT_EQ(image.metadata.content_name, std::string("a\0b", 3));
}

TEST_F(Forwarding, TheHostsMetadataStaysAsItIs) {
    fed("body");
    EXPECT_EQ(metadata.reserved, 0x1234);
    EXPECT_EQ(metadata.content_name, "w20260302d.EHB");
}

TEST_F(Forwarding, TheBodyIsCopied) {
    std::string bytes(70000, '\xA5');
    bytes[69999] = 'e';
    const std::string before = bytes;
    const recording_core::body_t& got = fed(bytes);
    EXPECT_EQ(got.size, 70000U);
    EXPECT_EQ(got.bytes, before);
    EXPECT_NE(got.address, static_cast<const void*>(bytes.data()));
    EXPECT_EQ(bytes, before);
}

TEST_F(Forwarding, AnEmptyBodyIsHandedOnEmpty) {
    const recording_core::body_t& without_data = fed(spi_wrap::MotBody{0, nullptr}, {});
    EXPECT_EQ(without_data.size, 0U);
    EXPECT_EQ(without_data.bytes, "");
    EXPECT_EQ(fed("").size, 0U);
    EXPECT_EQ(record().bodies.size(), 2U);
}

TEST_F(Forwarding, ABodyWithoutDataIsEmptyWhateverItsSize) {
    EXPECT_EQ(fed(spi_wrap::MotBody{4096, nullptr}, {}).size, 0U);
    EXPECT_EQ(fed(spi_wrap::MotBody{0xFFFFFFFF, nullptr}, {}).size, 0U);
}

TEST_F(Forwarding, TheEccOfADataServiceIsTheTopOfItsIdentifier) {
    const recording_core::body_t& got = fed("body", 0xE1234567);
    EXPECT_EQ(got.service.sid, 0xE1234567U);
    EXPECT_EQ(got.service.ecc, 0xE1);  // not the host's 0x55
    EXPECT_EQ(got.service.scids, 0);   // not the host's 7
}

TEST_F(Forwarding, ASixteenBitIdentifierHasNoEcc) {
    const recording_core::body_t& got = fed("body", 0xC221);
    EXPECT_EQ(got.service.sid, 0xC221U);
    EXPECT_EQ(got.service.ecc, 0);
    EXPECT_EQ(got.service.scids, 0);
    EXPECT_EQ(fed("body", 0x00FFFFFF).service.ecc, 0);
    EXPECT_EQ(fed("body", 0xFFFFFFFF).service.ecc, 0xFF);
}

TEST_F(Forwarding, TheCurrentServiceIsCopiedWhole) {
    spi_wrap::ServElemId service{0xE1234567, 0x55, 7};
    EXPECT_EQ(server.SetCurrentService(service, 0xC181), 0);
    ASSERT_EQ(record().services.size(), 1U);
    EXPECT_EQ(record().services[0].service.sid, 0xE1234567U);
    EXPECT_EQ(record().services[0].service.ecc, 0x55);
    EXPECT_EQ(record().services[0].service.scids, 7);
    EXPECT_EQ(record().services[0].ensemble, 0xC181);
    EXPECT_EQ(service.sid, 0xE1234567U);
}

TEST_F(Forwarding, DateAndTimeAreCopiedWhole) {
    spi_wrap::MotDateTime now{65535, 255, 254, 253, 252};
    EXPECT_EQ(server.SetDateTime(now), 0);
    ASSERT_EQ(record().times.size(), 1U);
    EXPECT_EQ(record().times[0], (spi::MotDateTime{65535, 255, 254, 253, 252}));
}

// The chain is server, wrapped server, core. A link is taken out of the object itself, behind its table: the
// constructor never leaves one out.
class without_link {
 public:
    without_link(void* object, std::size_t offset) : address_(static_cast<char*>(object) + offset) {
        void* const null = nullptr;
        std::memcpy(&link_, address_, sizeof link_);
        std::memcpy(address_, &null, sizeof null);
    }
    ~without_link() { std::memcpy(address_, &link_, sizeof link_); }
    without_link(const without_link&) = delete;
    without_link& operator=(const without_link&) = delete;
    void* link() const { return link_; }

 private:
    char* address_;
    void* link_ = nullptr;
};

class BrokenChain : public Forwarding {
 protected:
    void expect_zero_and_nothing_done() {
        spi_wrap::ServElemId service{0xC221, 0xE1, 0};
        spi_wrap::MotDateTime now{2026, 3, 2, 10, 30};
        spi_wrap::MotBody unreadable{4096, reinterpret_cast<const unsigned char*>(16)};  // must not be copied
        EXPECT_EQ(server.SetCurrentService(service, 1), 0);
        EXPECT_EQ(server.SetDateTime(now), 0);
        EXPECT_EQ(server.FeedMotBody(metadata, unreadable, service), 0);
        EXPECT_TRUE(record().services.empty());
        EXPECT_TRUE(record().times.empty());
        EXPECT_TRUE(record().bodies.empty());
    }
    // After the table: toSpiServer's one member; spi_server's second, behind the shared adaptor.
    static constexpr std::size_t kServer = sizeof(void*);
    static constexpr std::size_t kCore = sizeof(void*) + sizeof(std::shared_ptr<spi_wrap::spi_cb>);
};

TEST_F(BrokenChain, WithoutAServerOperationsDoNothing) {
    const without_link broken(&server, kServer);
    expect_zero_and_nothing_done();
}

TEST_F(BrokenChain, WithoutACoreOperationsDoNothing) {
    void* wrapped = nullptr;
    { wrapped = without_link(&server, kServer).link(); }
    const without_link broken(wrapped, kCore);
    EXPECT_EQ(static_cast<const spi_wrap::spi_server*>(wrapped)->core(), nullptr);
    expect_zero_and_nothing_done();
}

class Ownership : public Wrapped {
 protected:
    Ownership() { recording_core::forget(); }
    ~Ownership() override { recording_core::forget(); }
};

TEST_F(Ownership, TheCoreSharesTheAdaptor) {
    const spi_wrap::toSpiServer server(nullptr);
    ASSERT_EQ(record().made.size(), 1U);
    EXPECT_EQ(record().made[0].listener_owners, 2);
    const auto adaptor = recording_core::last_listener().lock();
    EXPECT_NE(dynamic_cast<spi_wrap::spi_cb*>(adaptor.get()), nullptr);
}

TEST_F(Ownership, TheAdaptorOutlivesTheCoreAndGoesThen) {
    { const spi_wrap::toSpiServer server(nullptr); }
    EXPECT_EQ(record().destroyed, 1);
    EXPECT_TRUE(record().listener_alive_at_destruction);
    EXPECT_TRUE(recording_core::last_listener().expired());
}

TEST_F(Ownership, TheAdaptorGoesWhenTheCoreCannotBeMade) {
    record().fail_construction = true;
    EXPECT_THROW(const spi_wrap::toSpiServer server(nullptr), std::bad_alloc);
    EXPECT_EQ(record().destroyed, 0);
    EXPECT_TRUE(recording_core::last_listener().expired());
}

TEST_F(Ownership, AServerIsDestroyedThroughItsFirstSlot) {
    auto* const server = new spi_wrap::toSpiServer(nullptr);
    delete server;
    EXPECT_EQ(record().destroyed, 1);
}

}  // namespace
