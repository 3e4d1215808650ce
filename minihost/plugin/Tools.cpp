#include "minihost/plugin/Tools.h"

#include "maya/MEvent.h"
#include "maya/MPxContextCommand.h"
#include "minihost/Host.h"
#include "minihost/command/ParsedFlags.h"
#include "minihost/plugin/PluginCommand.h"

namespace minihost {

bool Tools::Exists(const std::string& name) const {
    return name == kSelect || tools_.contains(name);
}

std::string Tools::ClassOf(const std::string& name) const {
    const auto found = tools_.find(name);
    if (found == tools_.end()) return name == kSelect ? kSelect : "";
    return found->second.command;
}

MPxContext* Tools::Find(const std::string& name) const {
    const auto found = tools_.find(name);
    return found == tools_.end() ? nullptr : found->second.context.get();
}

bool Tools::SetTo(const std::string& name) {
    if (!Exists(name)) return false;
    // A tool's clean-up may run the script that turns tools off: it is off already.
    if (name == current_ || switching_) return true;
    switching_ = true;
    if (MPxContext* off = Find(std::exchange(current_, name))) off->toolOffCleanup();
    switching_ = false;
    MEvent event;
    if (MPxContext* on = Find(current_)) on->toolOnSetup(event);
    Host::Get().listeners.Tell({"Event", "ToolChanged"});
    return true;
}

std::string Tools::Add(const std::string& command, const std::string& name,
                       std::unique_ptr<MPxContext> context) {
    std::string unique = name;
    for (int i = 1; unique.empty() || Exists(unique); ++i) unique = command + std::to_string(i);
    context->setName(MString(unique));
    tools_[unique] = {command, std::move(context)};
    return unique;
}

void Tools::RemoveOf(const std::string& command) {
    if (ClassOf(current_) == command) SetTo(kSelect);
    std::erase_if(tools_, [&](const auto& tool) { return tool.second.command == command; });
}

ContextCommand::ContextCommand(std::string name, std::unique_ptr<MPxContextCommand> user)
    : name_(std::move(name)), user_(std::move(user)) {
    MSyntax& syntax = user_->editSyntax();
    syntax.addFlag("ex", "exists");
    syntax.enableEdit(true);
    syntax.enableQuery(true);
    syntax.setObjectType(MSyntax::kStringObjects, 0, 1);
    user_->appendSyntax();
}

ContextCommand::~ContextCommand() = default;

Answer ContextCommand::Make(const std::vector<Value>& words) {
    const std::string wanted = words.empty() ? "" : words.back().AsString();
    Tools& tools = Host::Get().tools;
    if (tools.Exists(wanted)) return CommandError{"there is a tool '" + wanted + "' already"};
    std::unique_ptr<MPxContext> context(user_->makeObj());
    if (!context) return CommandError{name_ + " could not make a tool"};
    return Value(tools.Add(name_, wanted, std::move(context)));
}

Answer ContextCommand::operator()(CommandCall& call) {
    CommandError error;
    const auto flags =
        ParsedFlags::Parse(user_->editSyntax().syntax(), name_, call.arguments, error);
    if (!flags) return error;
    Tools& tools = Host::Get().tools;
    const std::string tool = flags->Objects().empty() ? "" : flags->Objects()[0].AsString();
    if (flags->IsSet("exists")) return Value(!tool.empty() && tools.ClassOf(tool) == name_);
    if (!flags->IsEdit() && !flags->IsQuery()) return Make(flags->Objects());
    if (tools.ClassOf(tool) != name_)
        return CommandError{"there is no tool '" + tool + "' made by " + name_};
    ResultFrame frame(name_);
    user_->words_ = MArgList(call.arguments);
    const MStatus status = flags->IsQuery() ? user_->doQueryFlags() : user_->doEditFlags();
    if (!status) return CommandError{name_ + " failed: " + status.errorString().str()};
    return frame.value;
}

}  // namespace minihost
