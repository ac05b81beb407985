#include "platform/zeb_debug.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "platform/posix/zeb_posix.h"

namespace {

constexpr std::size_t kMaxMessage = 8192;  // a path of PATH_MAX and its text fit

std::atomic<ZebDebugSink> debug_sink{nullptr};

void write_all(const char* text, std::size_t size) {
    // One write a message, so that messages of several threads and processes stay whole. Nobody could act on
    // a failure.
    const ssize_t written = write(STDERR_FILENO, text, size);
    static_cast<void>(written);
}

// Renders into a fixed buffer: a message must come out even when memory has run out.
__attribute__((format(printf, 6, 0))) void print(ZebDebugMessage::channel_t channel, const char* source,
                                                 const char* function, int line, int tag, const char* format,
                                                 std::va_list arguments) {
    if (const ZebDebugSink sink = zeb_debug_sink()) {
        char text[kMaxMessage];
        std::vsnprintf(text, sizeof text, format, arguments);
        try {
            sink(ZebDebugMessage{channel, source, function, line, tag, text});
        } catch (...) {  // no memory for the message: the caller must not notice
        }
        return;
    }
    char text[kMaxMessage];
    const int head = std::snprintf(text, sizeof text, "[%s %s:%d] ", source, function, line);
    const auto used = head < 0 ? std::size_t{0} : std::min(static_cast<std::size_t>(head), sizeof text - 1);
    std::vsnprintf(text + used, sizeof text - used, format, arguments);
    write_all(text, std::strlen(text));
}

}  // namespace

ZebDebugSink zeb_set_debug_sink(ZebDebugSink sink) {
    return debug_sink.exchange(sink);
}
ZebDebugSink zeb_debug_sink() {
    return debug_sink.load();
}

void ZebDbgOutput::DbgPrint(const char* source, const char* function, int line, int tag, const char* format,
                            ...) {
    std::va_list arguments;
    va_start(arguments, format);
    print(ZebDebugMessage::kDebug, source, function, line, tag, format, arguments);
    va_end(arguments);
}

void ZebDbgOutput::DbgPrintStdErr(const char* source, const char* function, int line, const char* format,
                                  ...) {
    std::va_list arguments;
    va_start(arguments, format);
    print(ZebDebugMessage::kStdErr, source, function, line, 0, format, arguments);
    va_end(arguments);
}
