// What a listener receives, kept without taking memory: memory may be what is missing. Written on the
// library's one listener thread, read when its reception is over, or while that thread is known to wait.
#pragma once

#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "spi_wrap/to_spi_server.h"
#include "src/server/spi_listener.h"

class listener_notes {
 public:
    // Called with each note, on the library's thread, after it was kept. Set before the reception begins.
    std::function<void(const char* text)> during_a_call;

    __attribute__((format(printf, 2, 3))) void add(const char* format, ...) {
        const std::size_t at = count_;
        char* const text = texts_[at % kMost];
        std::va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(text, kLongest, format, arguments);
        va_end(arguments);
        count_ = at + 1;
        if (during_a_call) during_a_call(text);
    }
    std::size_t count() const { return count_; }
    std::vector<std::string> all() const {
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < count_; ++i)
            texts.emplace_back(i < kMost ? texts_[i] : "<too many notes>");
        return texts;
    }

 private:
    static constexpr std::size_t kMost = 512;
    static constexpr std::size_t kLongest = 96;
    char texts_[kMost][kLongest] = {};
    std::atomic<std::size_t> count_{0};
};

// The listeners of both interfaces, with the same words: "programme Morning 10:00", "now Morning next Noon",
// "logo E1C2210_4.PNG size 4".
class core_listener final : public spi::ISpiListener {
 public:
    explicit core_listener(listener_notes& notes) : notes_(notes) {}
    void ProgramInfoReceived(const spi::ServElemId&, spi::SpiProgramInfo& info) override {
        notes_.add("programme %s %02d:%02d", info.name.c_str(), info.start.hour, info.start.minute);
    }
    void ProgramNowNextUpdated(spi::SpiProgramInfo& now, spi::SpiProgramInfo& next) override {
        notes_.add("now %s next %s", now.name.c_str(), next.name.c_str());
    }
    void StationLogoReceived(spi::SpiLogoInfo& logo) override {
        notes_.add("logo %s size %d", logo.name.c_str(), logo.size_code);
    }

 private:
    listener_notes& notes_;
};

class host_listener final : public spi_wrap::ISpiListener {
 public:
    explicit host_listener(listener_notes& notes) : notes_(notes) {}
    void ProgramInfoReceived(const spi_wrap::ServElemId&, spi_wrap::SpiProgramInfo&) override {
        notes_.add("a whole schedule reached the host");
    }
    void ProgramNowNextUpdated(spi_wrap::SpiProgramInfo& now, spi_wrap::SpiProgramInfo& next) override {
        notes_.add("now %s next %s", now.name.c_str(), next.name.c_str());
    }
    void StationLogoReceived(spi_wrap::SpiLogoInfo& logo) override {
        notes_.add("logo %s size %d", logo.file_name.c_str(), logo.size_code);
    }

 private:
    listener_notes& notes_;
};
