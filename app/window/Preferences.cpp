#include "app/window/Preferences.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "app/cli/ModuleHost.h"
#include "app/window/SculptNode.h"
#include "minihost/base/WholeFile.h"

namespace kelmo {

namespace {

using Json = nlohmann::ordered_json;

constexpr size_t kMostRecent = 8;
constexpr const char* kSingle[] = {"pushPullMode", "accumulate",   "symmetry",    "displayMode",
                                   "useShaders",   "shadowFilter", "shadowAzm",   "shadowAlt",
                                   "useSpecular",  "SSAOradius",   "SSAOsamples", "useFalloff",
                                   "useFalloff2",  "cullBackface"};
constexpr std::pair<const char*, int> kArrays[] = {{"toolSize", 20},
                                                   {"paintPressMult", 20},
                                                   {"vertColorStrength", 20},
                                                   {"useShadow", 3},
                                                   {"useSSAO", 3}};

template <class T>
void Take(const Json& json, const char* name, T& value) {
    const auto found = json.find(name);
    if (found == json.end()) return;
    // Somebody may have edited the file: what is of another kind is left.
    if constexpr (std::is_same_v<T, bool>) {
        if (found->is_boolean()) value = found->template get<bool>();
    } else if constexpr (std::is_arithmetic_v<T>) {
        const double number = found->is_number() ? found->template get<double>() : NAN;
        if (std::abs(number) < 1e9) value = static_cast<T>(number);
    } else if constexpr (std::is_same_v<T, std::string>) {
        if (found->is_string()) value = found->template get<std::string>();
    }
}

void TakeOptionVars(const Json& vars) {
    if (!vars.is_object()) return;
    for (const auto& [name, value] : vars.items()) {
        if (value.is_number_integer())
            RunScript(fmt::format("optionVar -iv {} {}", ScriptText(name), value.get<int>()),
                      false);
        else if (value.is_number())
            RunScript(fmt::format("optionVar -fv {} {}", ScriptText(name), value.get<double>()),
                      false);
        else if (value.is_string())
            RunScript(fmt::format("optionVar -sv {} {}", ScriptText(name),
                                  ScriptText(value.get<std::string>())),
                      false);
    }
}

Json OptionVars() {
    Json vars = Json::object();
    const minihost::Value names = RunScript("optionVar -list", false);
    for (size_t i = 0; i < names.Size(); ++i) {
        const std::string name = names.Element(i).AsString();
        const minihost::Value value = RunScript("optionVar -q " + ScriptText(name), false);
        if (value.GetType() == minihost::Value::Type::Int)
            vars[name] = value.AsInt();
        else if (value.IsNumber())
            vars[name] = value.AsFloat();
        else
            vars[name] = value.AsString();
    }
    return vars;
}

}  // namespace

std::string Preferences::File() {
    const char* folder = std::getenv("XDG_CONFIG_HOME");
    const char* home = std::getenv("HOME");
    if (folder && *folder == '/') return std::string(folder) + "/kelmo/preferences.json";
    return std::string(home ? home : "") + "/.config/kelmo/preferences.json";
}

void Preferences::Read() {
    std::string text, missing;
    if (!minihost::ReadWholeFile(File(), text, missing)) return;
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_object()) return;
    Take(json, "width", width);
    Take(json, "height", height);
    Take(json, "scale", scale);
    Take(json, "samples", samples);
    samples = std::clamp(samples, -1, 16);
    Take(json, "leftDock", leftDock);
    Take(json, "rightDock", rightDock);
    Take(json, "hasBegun", hasBegun);
    Take(json, "folder", folder);
    width = std::clamp(width, 200, 16000);
    height = std::clamp(height, 150, 16000);
    scale = std::clamp(scale, 0.5f, 4.f);
    if (const auto list = json.find("recent"); list != json.end() && list->is_array())
        for (const Json& path : *list)
            if (path.is_string() && recent.size() < kMostRecent) recent.push_back(path);
    if (const auto list = json.find("settings"); list != json.end() && list->is_object())
        for (const auto& [name, value] : list->items())
            if (value.is_number()) settings[name] = value.get<double>();
    if (const auto vars = json.find("optionVars"); vars != json.end()) TakeOptionVars(*vars);
}

std::string Preferences::Write() const {
    Json json = {{"width", width},       {"height", height},          {"scale", scale},
                 {"samples", samples},   {"leftDock", leftDock},      {"rightDock", rightDock},
                 {"hasBegun", hasBegun}, {"folder", folder},          {"recent", recent},
                 {"settings", settings}, {"optionVars", OptionVars()}};
    std::error_code failed;
    std::filesystem::create_directories(std::filesystem::path(File()).parent_path(), failed);
    std::string error;
    // A name of a file need not be UTF-8.
    const std::string text = json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
    return minihost::WriteWholeFile(File(), text, error) ? "" : error;
}

void Preferences::TakeFrom(const SculptNode& node) {
    if (!node.exists()) return;
    for (const char* name : kSingle) settings[name] = node.Get(name);
    for (const auto& [name, count] : kArrays)
        for (int i = 0; i < count; ++i)
            settings[fmt::format("{}[{}]", name, i)] = node.Get(name, i);
}

void Preferences::GiveTo(SculptNode& node) const {
    const auto give = [&](const std::string& key, const char* name, int index) {
        const auto found = settings.find(key);
        if (found != settings.end() && node.Get(name, index) != found->second)
            node.Set(name, found->second, index);
    };
    for (const char* name : kSingle) give(name, name, -1);
    for (const auto& [name, count] : kArrays)
        for (int i = 0; i < count; ++i) give(fmt::format("{}[{}]", name, i), name, i);
}

void Preferences::Remember(const std::string& path) {
    std::error_code failed;
    const std::string whole = std::filesystem::absolute(path, failed);
    std::erase(recent, whole);
    recent.insert(recent.begin(), whole);
    if (recent.size() > kMostRecent) recent.resize(kMostRecent);
    folder = std::filesystem::path(whole).parent_path();
}

}  // namespace kelmo
