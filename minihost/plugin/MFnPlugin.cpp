#include "maya/MFnPlugin.h"

#include <algorithm>
#include <filesystem>

#include "maya/MPxContextCommand.h"
#include "minihost/Host.h"
#include "minihost/api/Status.h"
#include "minihost/command/Syntax.h"
#include "minihost/plugin/Module.h"
#include "minihost/plugin/PluginCommand.h"
#include "minihost/plugin/PluginLogic.h"
#include "minihost/plugin/Tools.h"

using minihost::Host;
using minihost::Module;
using minihost::Tell;

MFnPlugin::MFnPlugin(const MObject& module, const char* vendor, const char* version, const char*,
                     MStatus* status) {
    object_ = module.hasFn(MFn::kPlugin) ? module : MObject();
    auto* own = object_.as<Module>();
    if (!Tell(status, own ? MS::kSuccess : MS::kInvalidParameter)) return;
    if (std::string(vendor) != "Unknown") own->vendor = vendor;
    if (std::string(version) != "Unknown") own->version = version;
}

Module* MFnPlugin::module(MStatus* status) const {
    auto* own = object_.as<Module>();
    Tell(status, own ? MS::kSuccess : MS::kFailure);
    return own;
}

MString MFnPlugin::vendor(MStatus* status) const {
    const Module* own = module(status);
    return own ? MString(own->vendor) : MString();
}

MString MFnPlugin::version(MStatus* status) const {
    const Module* own = module(status);
    return own ? MString(own->version) : MString();
}

MString MFnPlugin::name(MStatus* status) const {
    const Module* own = module(status);
    return own ? MString(own->name) : MString();
}

MString MFnPlugin::loadPath(MStatus* status) const {
    const Module* own = module(status);
    return own ? MString(std::filesystem::path(own->path).parent_path().string()) : MString();
}

MObject MFnPlugin::findPlugin(const MString& name) {
    return MObject(Host::Get().modules.Find(name.str()));
}

namespace {

struct Base {
    const char* name;
    MFn::Type apiType;
};

Base BaseOf(MPxNode::Type type) {
    switch (type) {
        case MPxNode::kLocatorNode:
            return {"locator", MFn::kPluginLocatorNode};
        case MPxNode::kDeformerNode:
            return {"geometryFilter", MFn::kPluginDeformerNode};
        case MPxNode::kSurfaceShape:
            return {"shape", MFn::kPluginShape};
        case MPxNode::kDependNode:
            break;
    }
    return {"dependNode", MFn::kPluginDependNode};
}

template <class T>
bool Forget(std::vector<T>& items, const T& item) {
    return std::erase(items, item) > 0;
}

}  // namespace

MStatus MFnPlugin::registerNode(const MString& typeName, const MTypeId& typeId,
                                MCreatorFunction creator, MInitializeFunction initialize,
                                MPxNode::Type kind, const MString*) {
    return Register(typeName, typeId, creator, initialize, kind, nullptr);
}

MStatus MFnPlugin::Register(const MString& typeName, const MTypeId& typeId,
                            MCreatorFunction creator, MInitializeFunction initialize,
                            MPxNode::Type kind, MCreatorFunction uiCreator) {
    Module* own = module(nullptr);
    Host& host = Host::Get();
    const Base base = BaseOf(kind);
    const auto baseType = host.types.Find(base.name);
    if (!own || !creator || !initialize || !baseType) return MS::kInvalidParameter;
    if (host.types.Find(typeName.str()) || host.types.Find(typeId)) return MS::kFailure;
    const auto type =
        std::make_shared<minihost::NodeType>(typeName.str(), typeId, base.apiType, baseType);
    type->owner = own;
    {
        const minihost::TypeInMaking making(*type);
        if (const MStatus status = initialize(); !status) return status;
    }
    type->maker = [creator, uiCreator](minihost::Node& node) {
        return std::make_unique<minihost::PluginLogic>(node, creator, uiCreator);
    };
    if (!host.types.Register(type)) return MS::kFailure;
    own->nodeTypes.push_back(typeId);
    return MS::kSuccess;
}

MStatus MFnPlugin::deregisterNode(const MTypeId& typeId) {
    Module* own = module(nullptr);
    if (!own) return MS::kFailure;
    for (const auto& node : Host::Get().scene.Nodes())
        if (node->type().id == typeId) return MS::kFailure;
    if (!Forget(own->nodeTypes, typeId)) return MS::kInvalidParameter;
    return Host::Get().types.Unregister(typeId) ? MS::kSuccess : MS::kFailure;
}

MStatus MFnPlugin::registerShape(const MString& typeName, const MTypeId& typeId,
                                 MCreatorFunction creator, MInitializeFunction initialize,
                                 MCreatorFunction uiCreator, const MString*) {
    return Register(typeName, typeId, creator, initialize, MPxNode::kSurfaceShape, uiCreator);
}

MStatus MFnPlugin::registerData(const MString& typeName, const MTypeId& typeId,
                                MCreatorFunction creator, int) {
    Module* own = module(nullptr);
    if (!own || !creator) return MS::kInvalidParameter;
    if (!Host::Get().dataTypes.Register({typeName.str(), typeId, creator, own}))
        return MS::kFailure;
    own->dataTypes.push_back(typeId);
    return MS::kSuccess;
}

MStatus MFnPlugin::deregisterData(const MTypeId& typeId) {
    Module* own = module(nullptr);
    if (!own || !Forget(own->dataTypes, typeId)) return MS::kInvalidParameter;
    return Host::Get().dataTypes.Unregister(typeId) ? MS::kSuccess : MS::kFailure;
}

MStatus MFnPlugin::registerCommand(const MString& name, MCreatorFunction creator,
                                   MCreateSyntaxFunction syntax) {
    Module* own = module(nullptr);
    if (!own || !creator) return MS::kInvalidParameter;
    Host& host = Host::Get();
    if (host.commands.Find(name.str())) return MS::kFailure;
    auto function = minihost::PluginCommand::Function(name.str(), creator, syntax);
    const MSyntax* known = minihost::PluginCommand::SyntaxOf(name.str());
    host.commands.Add(name.str(), known ? known->syntax().Usage(name.str()) : name.str(),
                      std::move(function));
    own->commands.push_back(name.str());
    return MS::kSuccess;
}

MStatus MFnPlugin::deregisterCommand(const MString& name) {
    Module* own = module(nullptr);
    if (!own || !Forget(own->commands, name.str())) return MS::kInvalidParameter;
    minihost::PluginCommand::Forget(name.str());
    return Host::Get().commands.Remove(name.str()) ? MS::kSuccess : MS::kFailure;
}

MStatus MFnPlugin::registerContextCommand(const MString& name, MCreatorFunction creator) {
    Module* own = module(nullptr);
    if (!own || !creator) return MS::kInvalidParameter;
    Host& host = Host::Get();
    if (host.commands.Find(name.str())) return MS::kFailure;
    std::unique_ptr<MPxContextCommand> user(static_cast<MPxContextCommand*>(creator()));
    if (!user) return MS::kFailure;
    const auto command = std::make_shared<minihost::ContextCommand>(name.str(), std::move(user));
    host.commands.Add(name.str(), name.str() + " [-edit|-query] [FLAGS] [TOOL]",
                      [command](minihost::CommandCall& call) { return (*command)(call); });
    own->tools.push_back(name.str());
    return MS::kSuccess;
}

MStatus MFnPlugin::deregisterContextCommand(const MString& name) {
    Module* own = module(nullptr);
    if (!own || !Forget(own->tools, name.str())) return MS::kInvalidParameter;
    Host::Get().tools.RemoveOf(name.str());
    return Host::Get().commands.Remove(name.str()) ? MS::kSuccess : MS::kFailure;
}

MStatus MFnPlugin::registerUI(const MString& createProcedure, const MString& deleteProcedure,
                              const MString&, const MString&) {
    Module* own = module(nullptr);
    if (!own) return MS::kFailure;
    own->createProcedure = createProcedure.str();
    own->deleteProcedure = deleteProcedure.str();
    return MS::kSuccess;
}
