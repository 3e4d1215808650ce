#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/Paths.h"

/// Runs the program as a user does.
namespace kelmo_tests {

/// A folder of a test's own, removed with it.
class Folder {
  public:
    Folder() {
        std::string name = (std::filesystem::temp_directory_path() / "kelmo-XXXXXX").string();
        path_ = mkdtemp(name.data());
    }
    ~Folder() {
        std::error_code failed;
        std::filesystem::remove_all(path_, failed);
    }
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }
    std::string Write(const std::string& name, const std::string& text) const {
        std::ofstream(*this / name, std::ios::binary) << text;
        return *this / name;
    }

  private:
    std::string path_;
};

inline std::string Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Outcome {
    int code = -1;
    /// Standard output and standard error together.
    std::string text;
};

/// Runs a command of the shell.
inline Outcome Shell(const std::string& command) {
    Outcome outcome;
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    char piece[4096];
    while (const size_t n = pipe ? fread(piece, 1, sizeof piece, pipe) : 0)
        outcome.text.append(piece, n);
    const int status = pipe ? pclose(pipe) : -1;
    outcome.code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return outcome;
}

inline Outcome Kelmo(const std::string& arguments) {
    return Shell(std::string(paths::kProgram) + " " + arguments);
}

inline const std::string kExamples = std::string(paths::kSource) + "/examples";

}  // namespace kelmo_tests
