#pragma once

#include <maya/MStatus.h>
#include <maya/MString.h>

namespace VantrelSDK {

// What the interface's scripts offer the module: procedures that are there in one interface and not
// in another.

/// Something by that name can be called.
bool IsKnown(const MString& procedure);
/// Calls a procedure, with arguments behind its name, where the interface has it; else nothing
/// fails.
MStatus RunIfKnown(const MString& procedure, const MString& arguments = MString());

}  // namespace VantrelSDK
