// The lines of the log stream, taken apart.
#pragma once

#include <cstddef>
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

// The length of a log line's head, up to and with the "]" after the thread; 0 when it is none.
inline std::size_t log_head_length(const std::string& line) {
    const std::string shape = "[q(B0] 00.00:00:000 [";  // 0: any digit
    if (line.size() < shape.size()) return 0;
    for (std::size_t i = 0; i < shape.size(); ++i) {
        const bool digit_wanted = shape[i] == '0' && i > 6;
        const bool fits = digit_wanted ? line[i] >= '0' && line[i] <= '9' : line[i] == shape[i];
        if (!fits) return 0;
    }
    const std::size_t end = line.find_first_not_of("0123456789abcdef", shape.size());
    return end != std::string::npos && end > shape.size() && line[end] == ']' ? end + 1 : 0;
}

// The message parts of log lines; a line without the head of a log line stays whole, marked.
inline std::vector<std::string> messages_of(const std::string& text) {
    std::vector<std::string> messages;
    for (const std::string& line : lines_of(text)) {
        const std::size_t head = log_head_length(line);
        messages.push_back(head == 0 ? "<no head>" + line : line.substr(head));
    }
    return messages;
}
