#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "core/io/MeshFile.h"
#include "tests/TestDisplay.h"
#include "tests/system/Program.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

/// The program's window on a display of its own, with somebody at mouse and keys.
namespace kelmo_tests {

inline constexpr int kWindowWidth = 900, kWindowHeight = 700;
/// The third pattern of the list, in the left dock.
inline constexpr int kPatternX = 118, kPatternY = 614;
/// The view, between the docks and the bars.
inline constexpr int kViewLeft = 256, kViewRight = 644, kViewTop = 27, kViewBottom = 675;

class WindowFixture : public testing::Test {
  protected:
    void SetUp() override {
        if (!display_.isOpen()) GTEST_SKIP() << "left out: Xvfb is not installed";
        x_ = XOpenDisplay(nullptr);
        ASSERT_TRUE(x_);
        // The test sees broken connections and windows that are gone by what calls return.
        XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
        std::filesystem::create_directories(folder_ / "config/kelmo");
        WritePreferences();
        // Beside it is where dialogs begin.
        std::filesystem::copy_file(kExamples + "/head.obj", head_);
    }
    void TearDown() override {
        if (pid_ > 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        if (x_ && !lost_) XCloseDisplay(x_);
    }
    void WritePreferences() {
        folder_.Write("config/kelmo/preferences.json",
                      "{\"width\": " + std::to_string(kWindowWidth) +
                          ", \"height\": " + std::to_string(kWindowHeight) +
                          ", \"hasBegun\": true, \"folder\": \"" + (folder_ / "") +
                          "\", \"settings\": {\"toolSize[8]\": 0.08, \"paintPressMult[8]\": 0.3}}");
    }

    /// Starts the program and waits for its window.
    void Start(const std::vector<std::string>& arguments) {
        pid_ = fork();
        if (pid_ == 0) {
            setenv("XDG_CONFIG_HOME", (folder_ / "config").c_str(), 1);
            setenv("XDG_STATE_HOME", (folder_ / "state").c_str(), 1);
            setenv("XDG_DATA_HOME", (folder_ / "data").c_str(), 1);
            if (!freopen((folder_ / "out").c_str(), "w", stdout) ||
                !freopen((folder_ / "err").c_str(), "w", stderr))
                _exit(126);
            std::vector<char*> words{const_cast<char*>(paths::kProgram)};
            for (const std::string& argument : arguments)
                words.push_back(const_cast<char*>(argument.c_str()));
            words.push_back(nullptr);
            execv(paths::kProgram, words.data());
            _exit(127);
        }
        ASSERT_TRUE(Until([this] { return FindWindow() != 0 || !IsRunning(); })) << "no window";
        ASSERT_TRUE(IsRunning()) << Read(folder_ / "err");
        window_ = FindWindow();
        XSetInputFocus(x_, window_, RevertToParent, CurrentTime);
        Rest();
    }

    /// Waits until the program has done what it was told: it sleeps, and goes on sleeping.
    void Rest() {
        XSync(x_, False);
        long before = -1;
        int quiet = 0;
        Until([&] {
            const auto [sleeps, ticks] = Usage();
            quiet = sleeps && ticks == before ? quiet + 1 : 0;
            before = ticks;
            return quiet >= 8 || !IsRunning();
        });
    }
    void To(int x, int y) { XTestFakeMotionEvent(x_, 0, x, y, 0); }
    void Button(unsigned button, bool down) { XTestFakeButtonEvent(x_, button, down, 0); }
    void Hold(KeySym key) { XTestFakeKeyEvent(x_, XKeysymToKeycode(x_, key), True, 0); }
    void LetGo(KeySym key) { XTestFakeKeyEvent(x_, XKeysymToKeycode(x_, key), False, 0); }
    void Press(KeySym key) {
        Hold(key);
        LetGo(key);
    }
    void PressWith(std::initializer_list<KeySym> held, KeySym key) {
        for (const KeySym other : held) Hold(other);
        Press(key);
        for (const KeySym other : held) LetGo(other);
        Rest();
    }
    void Type(const std::string& text) {
        for (const char c : text) Press(static_cast<KeySym>(c));
        Rest();
    }
    void Drag(int x0, int y0, int x1, int y1, unsigned button = 1, int points = 30) {
        To(x0, y0);
        Button(button, true);
        for (int i = 1; i <= points; ++i)
            To(x0 + (x1 - x0) * i / points, y0 + (y1 - y0) * i / points);
        Button(button, false);
        Rest();
    }
    /// Takes it up, or gives it up.
    void ClickPattern() {
        To(kPatternX, kPatternY);
        Button(1, true);
        Rest();
        Button(1, false);
        Rest();
    }
    /// A stroke over the middle of the view.
    void Stroke(int left = 400, int right = 480) { Drag(left, 300, right, 360); }

    /// Writes the surface by the export dialog, and reads it.
    VantrelSDK::PolyMesh Export(const std::string& ending = ".obj") {
        const std::string name = "export" + std::to_string(++exports_) + ending;
        PressWith({XK_Control_L}, XK_e);
        Type(name);
        Press(XK_Return);
        Rest();
        VantrelSDK::PolyMesh mesh;
        VantrelSDK::FileError error;
        EXPECT_TRUE(VantrelSDK::ReadMesh(folder_ / name, mesh, error)) << error.Text() << "\n"
                                                                       << Read(folder_ / "err");
        return mesh;
    }
    /// What the view shows while the pointer is out of it.
    std::string Picture() {
        To(128, kWindowHeight - 8);
        Rest();
        return Pixels(kViewLeft, kViewTop, kViewRight - kViewLeft, kViewBottom - kViewTop);
    }
    std::string Pixels(int x, int y, int width, int height) {
        XImage* image = XGetImage(x_, window_, x, y, static_cast<unsigned>(width),
                                  static_cast<unsigned>(height), AllPlanes, ZPixmap);
        if (!image) return {};
        const std::string pixels(image->data, static_cast<size_t>(image->bytes_per_line * height));
        XDestroyImage(image);
        return pixels;
    }

    bool IsRunning() {
        if (pid_ <= 0) return false;
        int status = 0;
        if (waitpid(pid_, &status, WNOHANG) != pid_) return true;
        code_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        pid_ = -1;
        return false;
    }
    /// The exit code, when the program has ended by itself.
    int Ended() {
        if (!lost_) XSync(x_, False);
        Until([this] { return !IsRunning(); });
        return code_;
    }
    /// The processor's time that it has used, in hundredths of a second.
    long Ticks() { return Usage().second; }
    std::string Told() { return Read(folder_ / "err"); }

    static bool Until(const std::function<bool()>& done) {
        for (int i = 0; i < 2000; ++i) {
            if (done()) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }

    TestDisplay display_;
    Folder folder_;
    const std::string head_ = folder_ / "head.obj";
    Display* x_ = nullptr;
    Window window_ = 0;
    pid_t pid_ = -1;
    bool lost_ = false;

  private:
    Window FindWindow() {
        Window root = 0, parent = 0, *children = nullptr, found = 0;
        unsigned count = 0;
        if (!XQueryTree(x_, DefaultRootWindow(x_), &root, &parent, &children, &count)) return 0;
        for (unsigned i = 0; i < count; ++i) {
            char* name = nullptr;
            if (!XFetchName(x_, children[i], &name) || !name) continue;
            if (std::string(name).find(" - Kelmo") != std::string::npos) found = children[i];
            XFree(name);
        }
        if (children) XFree(children);
        return found;
    }
    /// Whether none of its threads wants the processor, and the time that they had of it.
    std::pair<bool, long> Usage() {
        bool sleeps = true;
        long ticks = 0;
        std::error_code gone;
        for (const auto& task :
             std::filesystem::directory_iterator("/proc/" + std::to_string(pid_) + "/task", gone)) {
            // A thread may end while it is read about; an iterator over the file would throw then.
            std::string text;
            std::ifstream file(task.path() / "stat");
            std::getline(file, text);
            const size_t behind = text.rfind(')');
            if (behind == text.npos) continue;
            std::istringstream fields(text.substr(behind + 2));
            std::string state, field;
            long user = 0, system = 0;
            fields >> state;
            for (int i = 4; i <= 13; ++i) fields >> field;
            fields >> user >> system;
            sleeps = sleeps && state == "S";
            ticks += user + system;
        }
        return {sleeps, ticks};
    }

    int code_ = -1, exports_ = 0;
};

}  // namespace kelmo_tests
