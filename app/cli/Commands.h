#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/cli/ModuleHost.h"
#include "core/io/LProgressCallback.h"

/// The subcommands of the program. Each returns the exit code: 0 done, 1 failed (the message is on
/// standard error).
namespace kelmo {

struct InfoOptions {
    std::string file;
    bool json = false;
};
int RunInfo(const InfoOptions& options);
/// The file holds the state of a node, by its first bytes; and what is in such a file.
bool IsNodeFile(const std::string& path);
int RunInfoNode(const InfoOptions& options);

struct ReplayOptions {
    std::string log, mesh, out, stats;
    /// Files of a node's state, to begin with and to leave; empty for none.
    std::string load, save;
    /// -1: the level that is active at the end.
    int level = -1;
    /// 0: one worker per processor.
    int threads = 0;
    int repeat = 1;
    PictureFile picture;
};
int RunReplay(const ReplayOptions& options);

struct ShapesOptions {
    std::string neutral, out;
    /// What the shapes are put on; empty: the neutral.
    std::string on;
    /// The shapes are held in the frames of the surface, and turn with it.
    bool tangent = false;
    std::vector<std::string> shapes;
    /// One for each shape, or none: all 1.
    std::vector<float> weights;
    int level = 0;
    int threads = 0;

    float Weight(size_t i) const { return weights.empty() ? 1.0f : weights[i]; }
};
int RunShapes(const ShapesOptions& options);

struct RunOptions {
    /// A file, "-" for standard input, empty for none.
    std::string script;
    std::optional<std::string> commands;
    bool results = false;
    bool interactive = false;
    /// Without the module: the host alone.
    bool noModule = false;
};
int RunScript(const RunOptions& options);

struct RecoverOptions {
    /// Of a session; empty: the only one.
    std::string session;
    /// The scene, or OBJ file, to write; empty: they are listed.
    std::string out;
    bool forget = false;
};
int RunRecover(const RecoverOptions& options);

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
/// Forgets a Ctrl-C that was answered.
void ClearInterrupt();

}  // namespace kelmo
