#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>

#include "app/cli/Commands.h"

namespace kelmo {

namespace {

volatile std::sig_atomic_t interrupted = 0;

class TerminalProgress : public VantrelSDK::LProgressCallback {
  public:
    explicit TerminalProgress(std::string what)
        : what_(std::move(what)), terminal_(isatty(STDERR_FILENO) != 0) {}
    ~TerminalProgress() override { Hide(); }

    void Show() override { start_ = std::chrono::steady_clock::now(); }
    void SetProgress(float done) override {
        done_ = done;
        // What is over in a moment needs no bar.
        if (!terminal_ ||
            std::chrono::steady_clock::now() - start_ < std::chrono::milliseconds(200))
            return;
        const int filled = std::clamp(static_cast<int>(done * kWidth), 0, kWidth);
        fmt::print(stderr, "\r{} [{:<{}}] {:3.0f}%", what_, std::string(filled, '#'), kWidth,
                   done * 100);
        std::fflush(stderr);
        shown_ = true;
    }
    float GetProgress() override { return done_; }
    void Hide() override {
        if (shown_) fmt::print(stderr, "\r{:{}}\r", "", what_.size() + kWidth + 10);
        shown_ = false;
    }
    bool IsCancelled() const override { return IsInterrupted(); }

  private:
    static constexpr int kWidth = 40;

    std::string what_;
    bool terminal_, shown_ = false;
    float done_ = 0;
    std::chrono::steady_clock::time_point start_;
};

}  // namespace

std::unique_ptr<VantrelSDK::LProgressCallback> MakeProgress(const std::string& what) {
    return std::make_unique<TerminalProgress>(what);
}

void StopOnInterrupt() {
    std::signal(SIGINT, [](int) { interrupted = 1; });
}

bool IsInterrupted() {
    return interrupted != 0;
}

void ClearInterrupt() {
    interrupted = 0;
}

int Fail(const std::string& message) {
    fmt::print(stderr, "kelmo: {}\n", message);
    return 1;
}

}  // namespace kelmo
