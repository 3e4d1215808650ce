#include "minihost/command/Syntax.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>

namespace minihost {

namespace {

std::string_view WithoutDash(std::string_view name) {
    if (name.starts_with('-')) name.remove_prefix(1);
    return name;
}

}  // namespace

std::string_view ArgumentName(Syntax::Argument argument) {
    static constexpr std::array<std::string_view, 5> kNames = {"bool", "int", "unsigned", "float",
                                                               "string"};
    return kNames[static_cast<size_t>(argument)];
}

bool Syntax::AddFlag(std::string_view shortName, std::string_view longName,
                     std::vector<Argument> arguments) {
    const std::string_view one = WithoutDash(shortName), other = WithoutDash(longName);
    if ((one.empty() && other.empty()) || Find(one) || Find(other)) return false;
    flags_.push_back({std::string(one), std::string(other), std::move(arguments)});
    return true;
}

const Syntax::Flag* Syntax::Find(std::string_view name) const {
    name = WithoutDash(name);
    if (name.empty()) return nullptr;
    const auto found = std::find_if(flags_.begin(), flags_.end(), [&](const Flag& flag) {
        return flag.shortName == name || flag.longName == name;
    });
    return found == flags_.end() ? nullptr : &*found;
}

Syntax::Flag* Syntax::Find(std::string_view name) {
    return const_cast<Flag*>(static_cast<const Syntax*>(this)->Find(name));
}

std::string Syntax::Usage(std::string_view command) const {
    std::string text(command);
    if (!flags_.empty()) text += " [flags]";
    if (most_ != 0) text += least_ > 0 ? " OBJECT..." : " [OBJECT...]";
    if (query_) text += "\n  -q -query";
    if (edit_) text += "\n  -e -edit";
    for (const Flag& flag : flags_) {
        text += "\n ";
        for (const std::string& name : {flag.shortName, flag.longName})
            if (!name.empty()) text += " -" + name;
        for (const Argument argument : flag.arguments)
            text += fmt::format(" {}", ArgumentName(argument));
        if (flag.multiUse) text += "  (several times)";
    }
    return text;
}

}  // namespace minihost
