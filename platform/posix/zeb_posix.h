// What the stand-alone platform offers beside the framework's own operations: the place where messages go.
#pragma once

#include <string>

struct ZebDebugMessage {
    enum channel_t { kDebug, kStdErr };
    channel_t channel;
    std::string source;
    std::string function;
    int line;
    int tag;  // 0 on the standard-error channel, which has none
    std::string text;
};

using ZebDebugSink = void (*)(const ZebDebugMessage&);

// Where messages go from now on; null restores the default, one write() a message to standard error. Any
// thread may be printing, so the sink must be callable from several at once. Returns the sink before. For
// tests and tools.
ZebDebugSink zeb_set_debug_sink(ZebDebugSink sink);
// The one in use.
ZebDebugSink zeb_debug_sink();
