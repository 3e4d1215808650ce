#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>

// The layers of the house: includes point down only.

namespace {

namespace fs = std::filesystem;

/// What each layer may include of the project, and of the outside beyond the language and the system.
struct Rule {
    std::set<std::string> layers;
    std::regex outside;
};

const std::map<std::string, Rule> kRules = {
    {"core", {{"core"}, std::regex("fmt/.*|nlohmann/.*|[a-z]+intrin\\.h")}},
    {"minihost", {{"minihost"}, std::regex("maya/.*|GL/.*|X11/.*|EGL/.*|OpenImageIO/.*|fmt/.*")}},
    {"host", {{"host", "core"}, std::regex("maya/.*")}},
    {"host/gl", {{"host", "core"}, std::regex("maya/.*|GL/.*|X11/.*")}},
    {"host/tools", {{"host", "core"}, std::regex("maya/.*|GL/.*|X11/.*")}},
    {"app", {{"app", "minihost", "core"}, std::regex("CLI/.*|fmt/.*|nlohmann/.*|maya/.*|imgui.*")}},
};

const Rule& RuleFor(const std::string& path) {
    const Rule* found = nullptr;
    for (const auto& [folder, rule] : kRules)
        if (path.starts_with(folder + "/")) found = &rule;  // the longest comes last
    return *found;
}

bool IsLanguageOrSystem(const std::string& name) {
    return name.find('/') == std::string::npos || name.starts_with("sys/");
}

TEST(Layers, IncludesPointDown) {
    const fs::path root = KELMO_SOURCE_DIR;
    const std::regex include("^\\s*#\\s*include\\s*([\"<])([^\">]+)[\">]");
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
                std::smatch match;
                if (!std::regex_search(line, match, include)) continue;
                const std::string name = match[2];
                if (match[1] == "\"") {
                    EXPECT_TRUE(rule.layers.count(name.substr(0, name.find('/'))))
                        << path << " includes " << name;
                    EXPECT_TRUE(fs::exists(root / name)) << path << " includes " << name;
                } else {
                    EXPECT_TRUE(IsLanguageOrSystem(name) || std::regex_match(name, rule.outside))
                        << path << " includes " << name;
                }
            }
        }
    }
    EXPECT_GT(files, 100);
}

TEST(Layers, TheUmbrellaHeaderHasEveryCoreHeader) {
    const fs::path root = KELMO_SOURCE_DIR;
    std::ifstream file(root / "core/Vantrel.h");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    for (const auto& entry : fs::recursive_directory_iterator(root / "core")) {
        const std::string path = fs::relative(entry.path(), root);
        if (!path.ends_with(".h") || path == "core/Vantrel.h") continue;
        EXPECT_NE(text.find("\"" + path + "\""), std::string::npos) << path;
    }
}

}  // namespace
