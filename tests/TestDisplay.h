#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

namespace kelmo_tests {

/// A display of a test's own, without a screen: DISPLAY names it while this lives.
class TestDisplay {
  public:
    explicit TestDisplay(const std::string& size = "1400x1000") {
        int ends[2];
        if (pipe(ends) != 0) return;
        server_ = fork();
        if (server_ == 0) {
            close(ends[0]);
            const std::string screen = size + "x24", number = std::to_string(ends[1]);
            if (!freopen("/dev/null", "w", stderr)) _exit(127);
            execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0", screen.c_str(),
                   "-nolisten", "tcp", nullptr);
            _exit(127);
        }
        close(ends[1]);
        // It writes its number when it is ready.
        for (char c = 0; read(ends[0], &c, 1) == 1 && c != '\n';) name_ += c;
        close(ends[0]);
        if (name_.empty()) return;
        name_ = ":" + name_;
        if (const char* was = getenv("DISPLAY")) before_ = was;
        setenv("DISPLAY", name_.c_str(), 1);
    }
    ~TestDisplay() {
        Kill();
        if (before_.empty())
            unsetenv("DISPLAY");
        else
            setenv("DISPLAY", before_.c_str(), 1);
    }
    TestDisplay(const TestDisplay&) = delete;
    TestDisplay& operator=(const TestDisplay&) = delete;

    /// False where no server is installed.
    bool isOpen() const { return !name_.empty(); }
    const std::string& name() const { return name_; }
    /// Ends the server, as a crash would.
    void Kill() {
        if (server_ <= 0) return;
        kill(server_, SIGKILL);
        waitpid(server_, nullptr, 0);
        server_ = -1;
    }

  private:
    pid_t server_ = -1;
    std::string name_, before_;
};

}  // namespace kelmo_tests
