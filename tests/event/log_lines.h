// The lines of the log stream, taken apart.
#pragma once

#include <regex>
#include <string>
#include <vector>

#include "tests/support/captured_stderr.h"

inline std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin);
        if (end == std::string::npos) {
            lines.push_back(text.substr(begin) + "<no end of line>");
            break;
        }
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

// The message parts of log lines; a line without the head of a log line stays whole, marked.
inline std::vector<std::string> messages_of(const std::string& text) {
    static const std::regex line(R"(\[q\(B0\] \d\d\.\d\d:\d\d:\d\d\d \[[0-9a-f]+\](.*))");
    std::vector<std::string> messages;
    for (const std::string& whole : lines_of(text)) {
        std::smatch parts;
        messages.push_back(std::regex_match(whole, parts, line) ? parts[1].str() : "<no head>" + whole);
    }
    return messages;
}
