#pragma once

#include "maya/MFnBase.h"
#include "maya/MPxNode.h"
#include "maya/MString.h"
#include "maya/MStringArray.h"
#include "maya/MSyntax.h"
#include "maya/MTypeId.h"

// What a module has: the two functions that the host calls when it loads and unloads it. In a
// module exactly one source file includes this header and defines them.
#define PLUGIN_EXPORT __attribute__((visibility("default")))
PLUGIN_EXPORT class MStatus initializePlugin(class MObject module);
PLUGIN_EXPORT class MStatus uninitializePlugin(class MObject module);

class MPxCommand;
class MPxData;

namespace minihost {
class Module;
}

using MCreatorFunction = void* (*)();
using MInitializeFunction = MStatus (*)();
using MCreateSyntaxFunction = MSyntax (*)();

/// What a module registers with the host. Only for the module's own object, as it is given to
/// initializePlugin. What a module leaves registered when it is unloaded is taken down then.
class MFnPlugin : public MFnBase {
  public:
    explicit MFnPlugin(const MObject& module, const char* vendor = "Unknown",
                       const char* version = "Unknown", const char* requiredApiVersion = "Any",
                       MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kPlugin; }
    MString vendor(MStatus* status = nullptr) const;
    MString version(MStatus* status = nullptr) const;
    MString name(MStatus* status = nullptr) const;
    /// The folder of the module's file.
    MString loadPath(MStatus* status = nullptr) const;

    /// `initialize` adds the attributes; where it fails, the type is not registered. kFailure for a
    /// name or number that is taken.
    MStatus registerNode(const MString& typeName, const MTypeId& typeId, MCreatorFunction creator,
                         MInitializeFunction initialize, MPxNode::Type type = MPxNode::kDependNode,
                         const MString* classification = nullptr);
    /// Refused while there are nodes of the type in the scene.
    MStatus deregisterNode(const MTypeId& typeId);
    MStatus registerShape(const MString& typeName, const MTypeId& typeId, MCreatorFunction creator,
                          MInitializeFunction initialize, MCreatorFunction uiCreator,
                          const MString* classification = nullptr);
    MStatus registerData(const MString& typeName, const MTypeId& typeId, MCreatorFunction creator,
                         int type = 0);
    MStatus deregisterData(const MTypeId& typeId);
    MStatus registerCommand(const MString& name, MCreatorFunction creator,
                            MCreateSyntaxFunction syntax = nullptr);
    MStatus deregisterCommand(const MString& name);
    /// The command of a tool; its creator makes an MPxContextCommand.
    MStatus registerContextCommand(const MString& name, MCreatorFunction creator);
    MStatus deregisterContextCommand(const MString& name);
    /// Procedures that are run when the module is loaded, and before it is unloaded, where there is
    /// a person to see what they make.
    MStatus registerUI(const MString& createProcedure, const MString& deleteProcedure,
                       const MString& batchCreateProcedure = MString(),
                       const MString& batchDeleteProcedure = MString());

    static MObject findPlugin(const MString& name);

  private:
    minihost::Module* module(MStatus* status) const;
    MStatus Register(const MString& typeName, const MTypeId& typeId, MCreatorFunction creator,
                     MInitializeFunction initialize, MPxNode::Type type,
                     MCreatorFunction uiCreator);
};
