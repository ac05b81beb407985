#include "tests/tools/command_line/run_command.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <sstream>
#include <stdexcept>

// Words before the command's own: an emulator, for a command of another machine.
#ifndef DABSPI_LAUNCHER
#define DABSPI_LAUNCHER ""
#endif

namespace {

struct pipe_ends {
    pipe_ends() {
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    }
    pipe_ends(const pipe_ends&) = delete;
    pipe_ends& operator=(const pipe_ends&) = delete;
    ~pipe_ends() {
        close(0);
        close(1);
    }
    void close(std::size_t end) {
        if (ends[end] != -1) ::close(ends[end]);
        ends[end] = -1;
    }
    std::array<int, 2> ends{-1, -1};
};

// In a cross build: the emulator and its options.
std::vector<std::string> launcher() {
    std::istringstream words(DABSPI_LAUNCHER);
    return {std::istream_iterator<std::string>(words), {}};
}

[[noreturn]] void become_dabspi(const command_input& input, const pipe_ends& in, const pipe_ends& out,
                                const pipe_ends& err) {
    if (!input.directory.empty() && ::chdir(input.directory.c_str()) != 0) ::_exit(126);
    for (const auto& [name, value] : input.environment)
        ::setenv(name.c_str(), value.c_str(), 1);
    ::dup2(in.ends[0], STDIN_FILENO);
    if (input.standard_output_closed) {
        ::close(STDOUT_FILENO);
    } else if (!input.standard_output.empty()) {
        ::dup2(::open(input.standard_output.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600), STDOUT_FILENO);
    } else {
        ::dup2(out.ends[1], STDOUT_FILENO);
    }
    ::dup2(err.ends[1], STDERR_FILENO);
    std::vector<std::string> texts = launcher();
    texts.push_back(DABSPI_COMMAND);
    texts.insert(texts.end(), input.arguments.begin(), input.arguments.end());
    std::vector<char*> arguments;
    for (std::string& text : texts)
        arguments.push_back(text.data());
    arguments.push_back(nullptr);
    ::execvp(arguments[0], arguments.data());
    ::_exit(127);
}

// Reads once. False at the end.
bool read_some(int descriptor, std::string& to) {
    std::array<char, 65536> buffer;
    const ssize_t got = ::read(descriptor, buffer.data(), buffer.size());
    if (got < 0) return errno == EINTR;
    to.append(buffer.data(), static_cast<std::size_t>(got));
    return got > 0;
}

struct running_command {
    explicit running_command(const command_input& from) : input(from) {
        std::signal(SIGPIPE, SIG_IGN);  // the command need not read its input
        child = ::fork();
        if (child == -1) throw std::runtime_error("no process");
        if (child == 0) {
            std::signal(SIGPIPE, SIG_DFL);
            become_dabspi(input, in, out, err);
        }
        in.close(0);
        out.close(1);
        err.close(1);
    }

    finished_command finish();

    const command_input& input;
    pipe_ends in;
    pipe_ends out;
    pipe_ends err;
    pid_t child = -1;
};

finished_command running_command::finish() {
    finished_command result;
    std::size_t fed = 0;
    bool first = true;
    while (out.ends[0] != -1 || err.ends[0] != -1 || in.ends[1] != -1) {
        if (fed == input.standard_input.size()) in.close(1);
        std::array<pollfd, 3> wait = {pollfd{out.ends[0], POLLIN, 0}, pollfd{err.ends[0], POLLIN, 0},
                                      pollfd{in.ends[1], POLLOUT, 0}};
        if (::poll(wait.data(), wait.size(), -1) < 0) continue;
        if (wait[0].revents != 0) {
            if (first && (input.signal_at_first_output != 0 || input.close_after_first_output)) {
                char byte = 0;
                if (::read(out.ends[0], &byte, 1) == 1) result.out += byte;
                if (input.signal_at_first_output != 0) ::kill(child, input.signal_at_first_output);
                if (input.close_after_first_output) out.close(0);
            } else if (!read_some(out.ends[0], result.out)) {
                out.close(0);
            }
            first = false;
        }
        if (wait[1].revents != 0 && !read_some(err.ends[0], result.err)) err.close(0);
        if (wait[2].revents != 0) {
            const ssize_t written =
                ::write(in.ends[1], input.standard_input.data() + fed, input.standard_input.size() - fed);
            fed = written < 0 ? input.standard_input.size() : fed + static_cast<std::size_t>(written);
        }
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
    return result;
}

}  // namespace

finished_command run_dabspi(const command_input& input) {
    return running_command(input).finish();
}

std::vector<finished_command> run_dabspi_together(const std::vector<command_input>& inputs) {
    std::vector<std::unique_ptr<running_command>> running;
    for (const command_input& input : inputs)
        running.push_back(std::make_unique<running_command>(input));
    std::vector<finished_command> results;
    for (const auto& each : running)
        results.push_back(each->finish());
    return results;
}
