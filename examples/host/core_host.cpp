// A complete small host of dabspi's core interface: core_host OBJECTS LOGOS
//
// Plays a receiver on the morning of 10 March 2026: feeds the objects of a folder, lets the clock run, and
// prints what the library tells. OBJECTS holds bodies as a data decoder delivers them: si-*, pi-*, *.png.
// Logos are written to LOGOS.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "src/server/spi_server.h"

void print(const char* which, const spi::SpiProgramInfo& info) {
    std::printf("  %s  %s %4d min  %s\n", which, info.start.time().c_str(), info.duration,
                info.name.empty() ? "-" : info.name.c_str());
}

// The listener. Called by a thread of the library, which tells nothing else meanwhile: so it leaves copies
// (the records are the library's) for the host's own thread, and returns. Nor does it ever destroy the
// server, which would wait for this thread.
class mailbox final : public spi::ISpiListener {
 public:
    void ProgramInfoReceived(const spi::ServElemId& service, spi::SpiProgramInfo&) override {
        put([this, service] { stored_ += service.sid == 0x1A01; });
    }
    void ProgramNowNextUpdated(spi::SpiProgramInfo& now, spi::SpiProgramInfo& next) override {
        put([now, next] { print("now ", now), print("next", next); });
    }
    void StationLogoReceived(spi::SpiLogoInfo& logo) override {
        put([logo] {
            std::printf("  logo  %02X.%04X  %s\n", +logo.service.ecc, logo.service.sid, logo.name.c_str());
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
    int stored() const { return stored_; }

 private:
    void put(std::function<void()> mail) {
        const std::lock_guard<std::mutex> lock(mutex_);
        mails_.push_back(std::move(mail));
    }
    std::mutex mutex_;
    std::vector<std::function<void()>> mails_;  // guarded by mutex_
    int stored_ = 0;                            // the host's thread only
};

// Feeds the images of a folder, or the rest, as a decoder of the SPI data service 0xE0110001 would.
void feed(spi::SpiServer& server, const std::set<std::filesystem::path>& files, bool images) {
    for (const auto& file : files) {
        if ((file.extension() == ".png") != images) continue;
        spi::MotBodyMetadata metadata;  // from the MOT header
        metadata.user_application_type = 7;
        metadata.content_name = file.filename();
        metadata.content_type = images ? 2 : 7;
        metadata.content_subtype = images ? 3 : metadata.content_name[0] == 'p';
        const auto size = static_cast<std::uint32_t>(std::filesystem::file_size(file));
        auto data = std::make_unique<unsigned char[]>(size);  // goes over to the library
        std::ifstream(file, std::ios::binary).read(reinterpret_cast<char*>(data.get()), size);
        spi::MotBody body(size, std::move(data));
        server.FeedMotBody(metadata, std::move(body), spi::ServElemId{0xE0110001, 0xE0, 0});
    }
}

int main(int argc, char** argv) {
    if (argc != 3) return std::fputs("usage: core_host OBJECTS LOGOS\n", stderr), 2;
    const std::set<std::filesystem::path> files(std::filesystem::directory_iterator(argv[1]), {});
    std::filesystem::create_directories(argv[2]);  // the core makes no directory
    const auto mail = std::make_shared<mailbox>();
    spi::SpiServer server(mail, argv[2], argv[2]);  // all its calls come from this one thread
    spi::MotDateTime clock;
    clock.put_date("20260310");
    clock.put_time("0800");
    spi::ServElemId tuned{0x1A01, 0xE0, 0};
    server.SetDateTime(clock);  // first the time and the ensemble: objects that come before them are lost
    server.SetCurrentService(tuned, 0x10C1);
    feed(server, files, false), mail->read();
    feed(server, files, true), mail->read();  // images that come before their announcement are lost, too
    std::printf("  %d programmes of 1A01 are stored\n", mail->stored());
    for (const char* time : {"0900", "0901", "1000", "1001"}) {  // a receiver: at least once a minute
        clock.put_time(time);
        server.SetDateTime(clock), mail->read();
    }
    server.ResendNowNext(), mail->read();
}
