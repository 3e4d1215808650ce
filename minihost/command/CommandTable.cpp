#include "minihost/command/CommandTable.h"

namespace minihost {

bool CommandTable::Add(CommandEntry entry) {
    std::string name = entry.name;
    ++version_;
    return entries_.emplace(std::move(name), std::make_shared<const CommandEntry>(std::move(entry)))
        .second;
}

bool CommandTable::SetProcedure(std::string name, CommandFunction function) {
    auto& entry = entries_[name];
    if (entry && entry->kind == CommandEntry::Kind::Command) return false;
    entry = std::make_shared<const CommandEntry>(
        CommandEntry{std::move(name), std::move(function), CommandEntry::Kind::Procedure, ""});
    ++version_;
    return true;
}

bool CommandTable::Remove(std::string_view name) {
    const auto found = entries_.find(name);
    if (found == entries_.end()) return false;
    entries_.erase(found);
    ++version_;
    return true;
}

std::shared_ptr<const CommandEntry> CommandTable::Find(std::string_view name) const {
    const auto found = entries_.find(name);
    return found == entries_.end() ? nullptr : found->second;
}

std::vector<std::string> CommandTable::Names() const {
    std::vector<std::string> names;
    for (const auto& [name, entry] : entries_) names.push_back(name);
    return names;
}

}  // namespace minihost
