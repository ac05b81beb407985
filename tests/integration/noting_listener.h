// A listener that notes every call, and does in it what a test asks for.
#pragma once

#include <functional>
#include <string>
#include <thread>

#include "src/server/spi_listener.h"
#include "testkit/journal.h"

// Text in the order of the records: "programme Morning 10:00 60", "now Morning next Noon", "logo name".
struct noted_call {
    std::string text;
    std::thread::id thread;
};

class noting_listener final : public spi::ISpiListener {
 public:
    using action = std::function<void(const std::string&)>;
    explicit noting_listener(action during_a_call = {}) : during_(std::move(during_a_call)) {}

    void ProgramInfoReceived(const spi::ServElemId& service, spi::SpiProgramInfo& info) override {
        note("programme " + std::to_string(service.sid) + ' ' + info.name + ' ' + info.start.time() + ' ' +
             std::to_string(info.duration));
    }
    void ProgramNowNextUpdated(spi::SpiProgramInfo& now, spi::SpiProgramInfo& next) override {
        note("now " + now.name + " next " + next.name);
    }
    void StationLogoReceived(spi::SpiLogoInfo& logo) override { note("logo " + logo.name); }

    journal<noted_call> calls;

    std::vector<std::string> texts() const {
        std::vector<std::string> all;
        for (const noted_call& call : calls.all())
            all.push_back(call.text);
        return all;
    }

 private:
    void note(const std::string& text) {
        calls.add({text, std::this_thread::get_id()});
        if (during_) during_(text);
    }
    const action during_;
};
