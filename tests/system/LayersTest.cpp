#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>

#include "tests/Paths.h"

// The layers of the house: includes point down only.

namespace {

namespace fs = std::filesystem;

/// What each layer may include of the project, and the folders and headers of the outside beyond
/// the language and the system.
struct Rule {
    std::set<std::string> layers, outside;
};

const std::map<std::string, Rule> kRules = {
    {"core", {{"core"}, {"fmt", "nlohmann", "immintrin.h"}}},
    {"minihost", {{"minihost", "maya"}, {"maya", "GL", "X11", "EGL", "OpenImageIO", "fmt", "re2"}}},
    {"host", {{"host", "core"}, {"maya"}}},
    {"host/gl", {{"host", "core"}, {"maya", "GL", "X11"}}},
    {"host/tools", {{"host", "core"}, {"maya", "GL", "X11"}}},
    {"app", {{"app", "minihost", "core"}, {"CLI", "fmt", "nlohmann", "maya", "imgui"}}},
};

const Rule& RuleFor(const std::string& path) {
    const Rule* found = nullptr;
    for (const auto& [folder, rule] : kRules)
        if (path.starts_with(folder + "/")) found = &rule;  // the longest comes last
    return *found;
}

/// The name that a line includes, with its opening quote or bracket; empty for other lines.
std::string IncludedBy(const std::string& line) {
    size_t at = line.find_first_not_of(" \t");
    if (at == line.npos || line.compare(at, 1, "#") != 0) return {};
    at = line.find("include", at);
    const size_t start = line.find_first_of("\"<", at), end = line.find_first_of("\">", start + 1);
    if (at == line.npos || start == line.npos || end == line.npos) return {};
    return line.substr(start, end - start);
}

TEST(Layers, IncludesPointDown) {
    const fs::path root = paths::kSource;
    int files = 0;
    for (const char* layer : {"core", "host", "minihost", "app"}) {
        std::error_code missing;
        for (const auto& entry : fs::recursive_directory_iterator(root / layer, missing)) {
            const std::string extension = entry.path().extension();
            if (extension != ".h" && extension != ".cpp" && extension != ".def") continue;
            const std::string path = fs::relative(entry.path(), root);
            const Rule& rule = RuleFor(path);
            ++files;
            std::ifstream file(entry.path());
            for (std::string line; std::getline(file, line);) {
                const std::string included = IncludedBy(line);
                if (included.empty()) continue;
                const std::string name = included.substr(1), top = name.substr(0, name.find('/'));
                if (included[0] == '"') {
                    EXPECT_TRUE(rule.layers.count(top)) << path << " includes " << name;
                    const fs::path from = top == "maya" ? root / "minihost/include" : root;
                    EXPECT_TRUE(fs::exists(from / name)) << path << " includes " << name;
                } else {
                    const bool plain = top == name ? !name.ends_with("intrin.h") : top == "sys";
                    EXPECT_TRUE(plain || rule.outside.count(top)) << path << " includes " << name;
                }
            }
        }
    }
    EXPECT_GT(files, 100);
}

TEST(Layers, TheUmbrellaHeaderHasEveryCoreHeader) {
    const fs::path root = paths::kSource;
    std::ifstream file(root / "core/Vantrel.h");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    for (const auto& entry : fs::recursive_directory_iterator(root / "core")) {
        const std::string path = fs::relative(entry.path(), root);
        if (!path.ends_with(".h") || path == "core/Vantrel.h") continue;
        EXPECT_NE(text.find("\"" + path + "\""), std::string::npos) << path;
    }
}

}  // namespace
