#pragma once

#include "host/nodes/Finders.h"

namespace VantrelSDK {

/// Puts one tweak at the end of what makes a mesh, with `more` and all that the mesh's tweaks did
/// so far, which go; behind a copy of the shape where the mesh has no history. Scripts and then the
/// modifier do it, in this order for undo.
MStatus GatherTweaks(const MObject& shape, MDGModifier& edits, const Tweaks& more = {});

/// Runs a script as a part of what is being done, for undo.
MStatus RunUndoable(const MString& script);
/// A name as a word of a script.
MString Quoted(const MString& name);

}  // namespace VantrelSDK
