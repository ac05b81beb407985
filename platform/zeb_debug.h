// Debug output and call stacks of the host's platform framework.
//
// Declared here, defined in the host process (or by platform/posix on the desk). The real signatures of a
// host's framework may differ: these are the operations that the library needs, and this is the file to
// adapt. Every operation may be called on any thread, never throws and never fails visibly.
#pragma once

class ZebDbgOutput {
 public:
    // One message on the framework's debug channel. `source`, `function` and `line` name the place, `tag` is
    // the framework's own classification (the library always passes 1); `format` and what follows are
    // printf's.
    static void DbgPrint(const char* source, const char* function, int line, int tag, const char* format, ...)
        __attribute__((format(printf, 5, 6)));

    // The same, always on standard error and without a tag.
    static void DbgPrintStdErr(const char* source, const char* function, int line, const char* format, ...)
        __attribute__((format(printf, 4, 5)));
};

class ZebCallStack {
 public:
    // Prints the calling thread's stack; -1 stands for "all frames".
    static void dumpDirectly(int depth);
};
