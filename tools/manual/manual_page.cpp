#include "tools/manual/manual_page.h"

#include <algorithm>
#include <cctype>

namespace dabspi {

namespace {

std::string bold(const std::string& text) {
    return "\\fB" + roff(text) + "\\fR";
}
std::string italic(const std::string& text) {
    return "\\fI" + roff(text) + "\\fR";
}

// "wrapper|core" in bold, what stands for something in italics.
std::string value_of(const argument_model& argument) {
    if (argument.choices.empty()) return italic(argument.value);
    std::string result;
    for (const std::string& choice : argument.choices)
        result += (result.empty() ? "" : "|") + bold(choice);
    return result;
}

// "\fB--api\fR \fBwrapper\fR|\fBcore\fR"; \~ is a blank at which no line is broken.
std::string usage_of(const argument_model& argument, const std::string& name) {
    return argument.value.empty() ? bold(name) : bold(name) + "\\~" + value_of(argument);
}

bool is_everywhere(const argument_model& option) {
    return option.names.back() == "--help" || option.names.back() == "--version";
}

std::string synopsis(const command_model& command, bool whole) {
    std::string result = ".B " + roff(command.name) + "\n";
    for (const argument_model& option : command.options) {
        if (is_everywhere(option)) continue;
        const std::string usage = usage_of(option, option.names.back());
        result += (option.required ? usage : "[" + usage + "]") + (option.repeats ? "..." : "") + "\n";
    }
    if (whole) result += "\\fICOMMAND\\fR [\\fIARGUMENT\\fR...]\n";
    for (const argument_model& operand : command.operands) {
        const std::string usage = italic(operand.value) + (operand.repeats ? "..." : "");
        result += (operand.required ? usage : "[" + usage + "]") + "\n";
    }
    result += ".br\n.B " + roff(command.name) + " \\-\\-help\n";
    if (whole) result += ".br\n.B " + roff(command.name) + " \\-\\-version\n";
    return result;
}

// With a stop at its end, as a sentence of the manual.
std::string sentence(const std::string& help) {
    return roff(help) + (help.empty() || help.back() == '.' ? "" : ".") + "\n";
}

std::string addition(const argument_model& argument, const manual_text& words) {
    std::string result;
    for (const std::string& name : argument.names) {
        const auto found = words.options.find(name);
        if (found != words.options.end()) result += found->second;
    }
    return result;
}

std::string arguments(const command_model& command, const manual_text& words) {
    std::string result;
    for (const argument_model& operand : command.operands)
        result += ".TP\n" + italic(operand.value) + "\n" + sentence(operand.help) + addition(operand, words);
    for (const argument_model& option : command.options) {
        std::string names;
        for (const std::string& name : option.names)
            names += (names.empty() ? "" : ", ") +
                     (&name == &option.names.back() ? usage_of(option, name) : bold(name));
        result += ".TP\n" + names + "\n" + sentence(option.help) + addition(option, words);
    }
    return result;
}

// A description as it stands behind a page's name: "play a recording", but "DAB ..." as it is.
std::string as_phrase(std::string text) {
    const auto upper = [&](std::size_t at) {
        return at < text.size() && std::isupper(static_cast<unsigned char>(text[at])) != 0;
    };
    if (upper(0) && !upper(1)) text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    return text;
}

std::string reference(const command_model& command) {
    return ".BR " + roff(page_name(command)) + " (1)";
}

}  // namespace

std::string roff(const std::string& text) {
    std::string result;
    for (const char each : text) {
        switch (each) {
            case '\\': result += "\\e"; break;
            case '-': result += "\\-"; break;
            case '\'': result += "\\(aq"; break;
            case '`': result += "\\(ga"; break;
            case '^': result += "\\(ha"; break;
            case '~': result += "\\(ti"; break;
            case '"': result += "\\(dq"; break;
            default: result += each;
        }
    }
    // At the start of a line these would be a command.
    return !result.empty() && result[0] == '.' ? "\\&" + result : result;
}

std::string page_name(const command_model& command) {
    std::string result = command.name;
    std::replace(result.begin(), result.end(), ' ', '-');
    return result;
}

std::string manual_page(const std::vector<command_model>& commands, std::size_t which,
                        const manual_text& words, const std::string& version) {
    const command_model& command = commands[which];
    std::string title = page_name(command);
    std::transform(title.begin(), title.end(), title.begin(),
                   [](unsigned char each) { return static_cast<char>(std::toupper(each)); });

    std::string result = ".TH " + roff(title) + " 1 \"\" \"dabspi " + version + "\" \"User Commands\"\n";
    result += ".SH NAME\n" + roff(page_name(command)) + " \\- " + roff(as_phrase(command.description)) + "\n";
    // Left-aligned and without hyphens, so that options stay whole.
    result += ".SH SYNOPSIS\n.ad l\n.nh\n" + synopsis(command, which == 0) + ".ad b\n.hy\n";
    result += ".SH DESCRIPTION\n" + words.description;
    if (which == 0) {
        result += ".SH COMMANDS\n";
        for (std::size_t each = 1; each < commands.size(); ++each)
            result += ".TP\n" + reference(commands[each]) + "\n" + sentence(commands[each].description);
    }
    result += ".SH OPTIONS\n" + arguments(command, words);
    for (const auto& [heading, text] : words.sections)
        result += ".SH " + heading + "\n" + text;
    result += ".SH SEE ALSO\n";
    std::string separator;
    for (std::size_t each = 0; each < commands.size(); ++each) {
        if (each == which) continue;
        result += separator + reference(commands[each]);
        separator = ",\n";
    }
    return result + "\n";
}

}  // namespace dabspi
