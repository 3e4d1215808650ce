#include "app/window/FrameStats.h"

#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "minihost/base/WholeFile.h"

namespace kelmo {

namespace {

constexpr size_t kKept = 2000;

}  // namespace

double SecondsSinceStart() {
    // The 22nd field is when the process began, in ticks since the machine did.
    std::ifstream file("/proc/self/stat");
    std::string text;
    std::getline(file, text);
    std::istringstream fields(text.substr(text.rfind(')') + 2));
    std::string field;
    for (int i = 3; i <= 22; ++i) fields >> field;
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    const double ticks = static_cast<double>(sysconf(_SC_CLK_TCK));
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9 -
           std::strtod(field.c_str(), nullptr) / ticks;
}

FrameStats::Stage FrameStats::Measure(const char* name, const std::vector<Frame>& frames,
                                      auto seconds) {
    Stage stage{name};
    std::vector<double> all;
    for (const Frame& frame : frames)
        if (const double s = seconds(frame); s >= 0) all.push_back(s * 1000);
    if (all.empty()) return stage;
    stage.last = all.back();
    stage.count = all.size();
    std::ranges::sort(all);
    stage.median = all[all.size() / 2];
    stage.p95 = all[std::min(all.size() - 1, all.size() * 95 / 100)];
    return stage;
}

void FrameStats::Add(const minihost::Window::FrameTimes& times, const EventTimes& events) {
    if (start == 0) start = SecondsSinceStart();
    if (!times.drawn) return;
    const Frame frame{times, events};
    if (frames_.size() < kKept)
        frames_.push_back(frame);
    else
        frames_[next_++ % kKept] = frame;
}

std::vector<FrameStats::Stage> FrameStats::Stages() const {
    return {
        Measure("event", frames_,
                [](const Frame& t) { return t.events > 0 ? t.dispatch / t.events : -1; }),
        Measure("hit", frames_, [](const Frame& t) { return t.hit; }),
        Measure("step", frames_, [](const Frame& t) { return t.step; }),
        Measure("recalc", frames_, [](const Frame& t) { return t.recalculation; }),
        Measure("draw", frames_, [](const Frame& t) { return t.view; }),
        Measure("panels", frames_, [](const Frame& t) { return t.surroundings; }),
        Measure("swap", frames_, [](const Frame& t) { return t.swap; }),
        Measure("frame", frames_,
                [](const Frame& t) { return t.dispatch + t.view + t.surroundings + t.swap; }),
    };
}

std::string FrameStats::Write(const std::string& path) const {
    nlohmann::ordered_json json;
    json["start_s"] = start;
    for (const Stage& stage : Stages())
        json["stages"][stage.name] = {
            {"count", stage.count}, {"median_ms", stage.median}, {"p95_ms", stage.p95}};
    std::string error;
    return minihost::WriteWholeFile(path, json.dump(2) + "\n", error) ? "" : error;
}

}  // namespace kelmo
