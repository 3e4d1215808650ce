#include "minihost/command/ScriptOutput.h"

#include <fmt/core.h>

#include <cstdio>

namespace minihost {

void ScriptOutput::Print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void ScriptOutput::Info(std::string_view text) {
    std::fflush(stdout);
    fmt::print(stderr, "{}\n", text);
}

void ScriptOutput::Warning(std::string_view text) {
    std::fflush(stdout);
    fmt::print(stderr, "Warning: {}\n", text);
}

void ScriptOutput::Error(std::string_view text) {
    std::fflush(stdout);
    fmt::print(stderr, "Error: {}\n", text);
}

}  // namespace minihost
