#pragma once

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <thread>

#include "tests/Paths.h"

namespace kelmo_tests {

/// The program at a terminal, with a home of its own.
class Terminal {
  public:
    Terminal(const std::string& home, const char* argument1, const char* argument2) {
        pid_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
        if (pid_ != 0) return;
        const std::string known = std::string(paths::kSource) + "/tests/lsan.supp";
        setenv("LSAN_OPTIONS", ("print_suppressions=0:suppressions=" + known).c_str(), 1);
        setenv("HOME", home.c_str(), 1);
        unsetenv("XDG_STATE_HOME");
        setenv("TERM", "xterm", 1);
        execl(paths::kProgram, "kelmo", argument1, argument2, nullptr);
        _exit(127);
    }
    ~Terminal() {
        if (pid_ > 0) kill(pid_, SIGKILL), waitpid(pid_, nullptr, 0);
        if (terminal_ >= 0) close(terminal_);
    }

    bool Type(const std::string& keys) {
        return write(terminal_, keys.data(), keys.size()) == static_cast<ssize_t>(keys.size());
    }
    /// What is shown up to and with a text, or all of it where that does not come in time.
    std::string Until(const std::string& text) {
        const auto end = Clock::now() + kPatience;
        pollfd ready{terminal_, POLLIN, 0};
        size_t found;
        while ((found = shown_.find(text)) == shown_.npos && Clock::now() < end) {
            if (poll(&ready, 1, 100) <= 0) continue;
            char piece[4096];
            const ssize_t got = read(terminal_, piece, sizeof piece);
            if (got <= 0) break;
            shown_.append(piece, static_cast<size_t>(got));
        }
        found = found == shown_.npos ? shown_.size() : found + text.size();
        std::string before = shown_.substr(0, found);
        shown_.erase(0, found);
        return before;
    }
    /// The exit code of a program that has been told to end; -1 where it does not in time.
    int Wait() {
        int status = -1;
        const auto end = Clock::now() + kPatience;
        while (waitpid(pid_, &status, WNOHANG) == 0) {
            if (Clock::now() > end) return -1;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds kPatience{20};

    pid_t pid_ = -1;
    int terminal_ = -1;
    std::string shown_;
};

}  // namespace kelmo_tests
