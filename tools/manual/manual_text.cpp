#include "tools/manual/manual_text.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace dabspi {

namespace {

constexpr const char* kHeading = ".SH ";
constexpr const char* kOption = ".\\\" option ";
constexpr const char* kEnding = ".manual.1";

bool starts(const std::string& line, const std::string& with) {
    return line.compare(0, with.size(), with) == 0;
}

bool has_argument(const command_model& command, const std::string& name) {
    const auto named = [&](const argument_model& each) {
        return std::find(each.names.begin(), each.names.end(), name) != each.names.end();
    };
    return std::any_of(command.options.begin(), command.options.end(), named) ||
           std::any_of(command.operands.begin(), command.operands.end(), named);
}

class parser {
 public:
    parser(const std::string& name, const command_model& command) : name_(name), command_(command) {}

    void take(const std::string& line) {
        ++line_;
        if (starts(line, kHeading)) return heading(line.substr(std::string(kHeading).size()));
        if (starts(line, kOption)) return option(line.substr(std::string(kOption).size()));
        if (to_ == nullptr) {
            if (line.empty() || starts(line, ".\\\"")) return;  // comments may come before the first heading
            fail(section_ == "OPTIONS"
                     ? "OPTIONS holds additions to options only, each after .\\\" option NAME"
                     : "the first section must be .SH DESCRIPTION");
        }
        *to_ += line + "\n";
    }

    manual_text end() {
        if (result_.description.empty()) fail("there is no .SH DESCRIPTION, or nothing in it");
        return std::move(result_);
    }

 private:
    [[noreturn]] void fail(const std::string& what) const {
        throw std::runtime_error(name_ + ":" + std::to_string(line_) + ": " + what);
    }

    void heading(const std::string& text) {
        if (section_.empty() != (text == "DESCRIPTION"))
            fail("the first section must be .SH DESCRIPTION, and no other");
        for (const char* made : {"NAME", "SYNOPSIS", "COMMANDS", "SEE ALSO"})
            if (text == made) fail(std::string(made) + " is made from the command line");
        section_ = text;
        if (text == "DESCRIPTION") {
            to_ = &result_.description;
        } else if (text == "OPTIONS") {
            to_ = nullptr;
        } else {
            to_ = &result_.sections.emplace_back(text, "").second;
        }
    }

    void option(const std::string& named) {
        if (section_ != "OPTIONS") fail("an addition to an option stands in .SH OPTIONS");
        if (!has_argument(command_, named)) fail("\"" + command_.name + "\" has no " + named);
        if (result_.options.count(named) != 0) fail(named + " has an addition already");
        to_ = &result_.options[named];
    }

    const std::string& name_;
    const command_model& command_;
    manual_text result_;
    std::string section_;
    std::string* to_ = nullptr;  // where lines go; null: nowhere yet
    int line_ = 0;
};

}  // namespace

manual_text parse_manual_text(const std::string& text, const std::string& name,
                              const command_model& command) {
    parser from(name, command);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        from.take(line);
    return from.end();
}

std::map<std::string, manual_text> read_manual_texts(const std::vector<std::string>& files,
                                                     const std::vector<command_model>& commands) {
    std::map<std::string, std::string> file_of;
    for (const std::string& file : files) {
        const std::string name = file.substr(file.rfind('/') + 1);
        const std::size_t ending = name.size() - std::min(name.size(), std::string(kEnding).size());
        const std::string command = name.substr(0, ending);
        const bool belongs = name.substr(ending) == kEnding &&
                             std::any_of(commands.begin(), commands.end(), [&](const command_model& each) {
                                 return short_name(each) == command;
                             });
        if (!belongs) throw std::runtime_error(file + ": no command has this name");
        if (!file_of.emplace(command, file).second)
            throw std::runtime_error(file + ": there is another text of this command, " + file_of[command]);
    }
    std::map<std::string, manual_text> result;
    for (const command_model& command : commands) {
        const std::string name = short_name(command);
        if (file_of.count(name) == 0) {
            throw std::runtime_error("\"" + command.name + "\" has no text for its manual page: write " +
                                     name + kEnding +
                                     " beside its sources below tools/ (tools/replay/replay.manual.1 shows "
                                     "how), and configure again");
        }
        std::ifstream in(file_of[name], std::ios::binary);
        const std::string text(std::istreambuf_iterator<char>(in), {});
        if (!in) throw std::runtime_error(file_of[name] + ": cannot be read");
        result[name] = parse_manual_text(text, file_of[name], command);
    }
    return result;
}

}  // namespace dabspi
