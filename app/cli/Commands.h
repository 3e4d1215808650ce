#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/io/LProgressCallback.h"

/// The subcommands of the program. Each returns the exit code: 0 done, 1 failed (the message is on
/// standard error).
namespace kelmo {

struct InfoOptions {
    std::string file;
    bool json = false;
};
int RunInfo(const InfoOptions& options);

struct ReplayOptions {
    std::string log, mesh, out, stats;
    /// -1: the level that is active at the end.
    int level = -1;
    /// 0: one worker per processor.
    int threads = 0;
    int repeat = 1;
};
int RunReplay(const ReplayOptions& options);

struct ShapesOptions {
    std::string neutral, out;
    std::vector<std::string> shapes;
    /// One for each shape, or none: all 1.
    std::vector<float> weights;
    int level = 0;
    int threads = 0;

    float Weight(size_t i) const { return weights.empty() ? 1.0f : weights[i]; }
};
int RunShapes(const ShapesOptions& options);

/// Plays the sample log on the sample head into a folder, for a first look without a display.
int RunSample();

/// The whole program: reads the command line. 2 for wrong usage.
int Main(int argc, const char* const* argv);

/// Prints "kelmo: message" on standard error; returns 1.
int Fail(const std::string& message);

/// A bar on standard error while it is a terminal, else nothing. Stops when the user presses
/// Ctrl-C.
std::unique_ptr<VantrelSDK::LProgressCallback> MakeProgress(const std::string& what);

/// From now on Ctrl-C asks the running operation to stop instead of ending the program.
void StopOnInterrupt();
bool IsInterrupted();

}  // namespace kelmo
