#include "minihost/plugin/Module.h"

#include <dlfcn.h>

#include <filesystem>

#include "maya/MFnPlugin.h"
#include "maya/MGlobal.h"
#include "minihost/Host.h"
#include "minihost/plugin/PluginCommand.h"

namespace minihost {
namespace {

using Entry = MStatus (*)(MObject);

// The names of initializePlugin(MObject) and uninitializePlugin(MObject) in a library.
constexpr const char* kInitialize = "_Z16initializePlugin7MObject";
constexpr const char* kUninitialize = "_Z18uninitializePlugin7MObject";

Entry FindEntry(void* library, const char* name) {
    return reinterpret_cast<Entry>(dlsym(library, name));
}

void RunProcedure(const std::string& name) {
    if (!name.empty() && MGlobal::mayaState() == MGlobal::kInteractive)
        MGlobal::executeCommand(MString(name));
}

}  // namespace

std::shared_ptr<Module> Modules::Find(const std::string& name) const {
    const auto found = modules_.find(name);
    return found == modules_.end() ? nullptr : found->second;
}

std::vector<std::string> Modules::Names() const {
    std::vector<std::string> names;
    for (const auto& [name, module] : modules_) names.push_back(name);
    return names;
}

const Module* Modules::OwnerOf(const void* code) const {
    Dl_info info{};
    if (!dladdr(code, &info) || !info.dli_fname) return nullptr;
    for (const auto& [name, module] : modules_)
        if (module->path == info.dli_fname) return module.get();
    return nullptr;
}

std::string Modules::Load(const std::string& path) {
    const std::filesystem::path file = std::filesystem::absolute(path);
    const std::string name = file.stem();
    if (Find(name)) return {};
    void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) return std::string("the module cannot be loaded: ") + dlerror();
    const auto module = std::make_shared<Module>(name, file, library);
    const Entry initialize = FindEntry(library, kInitialize);
    if (!initialize || !FindEntry(library, kUninitialize)) {
        dlclose(library);
        return path + " is no module: it has no initializePlugin or no uninitializePlugin";
    }
    modules_[name] = module;
    const MStatus status = initialize(MObject(module));
    if (!status) {
        TakeDown(*module);
        modules_.erase(name);
        dlclose(library);
        return "the module " + name + " failed to start: " + status.errorString().str();
    }
    RunProcedure(module->createProcedure);
    return {};
}

std::string Modules::WhyInUse(const Module& module) const {
    Host& host = Host::Get();
    for (const NodePtr& node : host.scene.Nodes())
        if (node->type().owner == &module)
            return "the scene has the node " + node->UniqueName() + " of the module " + module.name;
    return {};
}

std::string Modules::Unload(const std::string& name) {
    const std::shared_ptr<Module> module = Find(name);
    if (!module) return "no module '" + name + "' is loaded";
    if (std::string why = WhyInUse(*module); !why.empty()) return why;
    RunProcedure(module->deleteProcedure);
    // What undo holds may be the module's own: its code is about to go.
    Host::Get().undo.Clear();
    const MStatus status = FindEntry(module->library, kUninitialize)(MObject(module));
    TakeDown(*module);
    modules_.erase(name);
    dlclose(module->library);
    if (!status) return "the module " + name + " failed to stop: " + status.errorString().str();
    return {};
}

/// What a module left behind.
void Modules::TakeDown(Module& module) {
    Host& host = Host::Get();
    for (const std::string& tool : module.tools) {
        host.tools.RemoveOf(tool);
        host.commands.Remove(tool);
    }
    for (const std::string& command : module.commands) {
        host.commands.Remove(command);
        PluginCommand::Forget(command);
    }
    for (const MTypeId& type : module.nodeTypes) host.types.Unregister(type);
    for (const MTypeId& type : module.dataTypes) host.dataTypes.Unregister(type);
    host.listeners.RemoveOwner(&module);
}

}  // namespace minihost
