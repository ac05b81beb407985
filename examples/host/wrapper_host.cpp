// A complete small host of dabspi's host-facing interface: wrapper_host OBJECTS [TRACE]
//
// Plays a receiver on 10 March 2026: feeds the objects of a folder, lets the clock run, changes the service,
// and prints what the library tells. OBJECTS holds bodies as a data decoder delivers them: si-*, pi-*, *.png.
// Logos go where the system's shared block says (see with-storage). With TRACE, every call is written down
// below that folder, and "dabspi check TRACE/recording.jsonl" explains what the listener is notified of, and
// why not of more.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "spi_wrap/spi_recorder.h"
#include "spi_wrap/to_spi_server.h"
#include "src/event/quiet.h"

void print(const char* which, const spi_wrap::SpiProgramInfo& info) {
    std::printf("  %s  %02d:%02d %4d min  %s\n", which, info.start.hour, info.start.minute, info.duration,
                info.name.empty() ? "-" : info.name.c_str());
}

// The listener. Called by a thread of the library, which tells nothing else meanwhile: so it leaves copies
// (the records are the library's) for the host's own thread, and returns. Nor does it ever destroy the
// server, which would wait for this thread.
class mailbox final : public spi_wrap::ISpiListener {
 public:
    // Never called.
    void ProgramInfoReceived(const spi_wrap::ServElemId&, spi_wrap::SpiProgramInfo&) override {}
    void ProgramNowNextUpdated(spi_wrap::SpiProgramInfo& now, spi_wrap::SpiProgramInfo& next) override {
        put([now, next] { print("now ", now), print("next", next); });
    }
    void StationLogoReceived(spi_wrap::SpiLogoInfo& logo) override {
        put([logo] {
            std::printf("  logo  %02X.%04X  %s\n", +logo.ecc, logo.service_id, logo.file_name.c_str());
        });
    }
    // On the host's thread. A receiver reads whenever it likes; this demonstration waits until all has come.
    void read() {
        if (!spi::wait_until_quiet(std::chrono::seconds(30))) std::fputs("no rest within 30 s\n", stderr);
        std::unique_lock<std::mutex> lock(mutex_);
        const auto mails = std::exchange(mails_, {});
        lock.unlock();  // the listener must not wait for a printer
        for (const auto& mail : mails)
            mail();
    }

 private:
    void put(std::function<void()> mail) {
        const std::lock_guard<std::mutex> lock(mutex_);
        mails_.push_back(std::move(mail));
    }
    std::mutex mutex_;
    std::vector<std::function<void()>> mails_;  // guarded by mutex_
};

// Feeds the images of a folder, or the rest, as a decoder of the SPI data service 0xE0110001 would.
void feed(spi_wrap::toSpiServer& server, const std::set<std::filesystem::path>& files, bool images) {
    for (const auto& file : files) {
        if ((file.extension() == ".png") != images) continue;
        std::ifstream in(file, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(in), {});
        spi_wrap::MotBodyMetadata metadata;  // from the MOT header
        metadata.content_name = file.filename();
        metadata.content_type = images ? 2 : 7;
        metadata.content_subtype = images ? 3 : metadata.content_name[0] == 'p';
        spi_wrap::MotBody body;  // stays the host's: when the call returns the library has its copy
        body.size = static_cast<std::uint32_t>(bytes.size());
        body.data = reinterpret_cast<const unsigned char*>(bytes.data());
        spi_wrap::ServElemId data_service{0xE0110001, 0xE0, 0};
        server.FeedMotBody(metadata, body, data_service);
    }
}

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) return std::fputs("usage: wrapper_host OBJECTS [TRACE]\n", stderr), 2;
    const std::set<std::filesystem::path> files(std::filesystem::directory_iterator(argv[1]), {});
    mailbox mail;  // outlives the server
    // All calls of the server come from this one thread.
    std::unique_ptr<spi_wrap::toSpiServer> made;
    if (argc == 3) {
        made = std::make_unique<spi_wrap::spi_recorder>(&mail,
                                                        argv[2]);  // is a server, and writes down its calls
    } else {
        made = std::make_unique<spi_wrap::toSpiServer>(&mail);
    }
    spi_wrap::toSpiServer& server = *made;
    spi_wrap::MotDateTime clock{2026, 3, 10, 8, 0};
    spi_wrap::ServElemId tuned{0x1A01, 0xE0, 0};
    server.SetDateTime(clock);  // first the time and the ensemble: objects that come before them are lost
    server.SetCurrentService(tuned, 0x10C1);
    feed(server, files, false), mail.read();
    feed(server, files, true), mail.read();  // images that come before their announcement are lost, too
    for (int minute = 8 * 60; minute <= 12 * 60; ++minute) {
        clock.hour = static_cast<std::uint8_t>(minute / 60);
        clock.minute = static_cast<std::uint8_t>(minute % 60);
        server.SetDateTime(clock);  // at least once a minute: the library has no clock of its own
        mail.read();
    }
    tuned.sid = 0x1A03;
    server.SetCurrentService(tuned, 0x10C1);
    mail.read();
}  // the server ends its threads; no call of the listener comes afterwards
