#pragma once

#include <maya/MObject.h>
#include <maya/MString.h>

#include <vector>

#include "core/paint/LColorDelta.h"

class MFnMesh;

namespace VantrelSDK {

class MLNode;

/// Paint whose incoming colours come from a mesh of the host, and which goes out into others.
class MLColorDelta : public LColorDelta {
  public:
    /// The set that painted colours go into.
    static inline const MString colorSetName = "Kelmo";

    using LColorDelta::LColorDelta;

    /// Takes the incoming colours of the mesh's current set, level 0; a vertex without one keeps
    /// what it had. False, which is told, for what is no mesh or has other vertices.
    bool readInput(const MObject& mesh);
    /// Puts what the vertices of a level show into `out`, a mesh of that level, over the colours of
    /// `in`. Nothing is done where nothing is painted, unless `force`. False where it isn't done.
    bool ModifyMesh(const MObject& in, const MObject& out, int level, bool force);

  private:
    bool storeColor(const MObject& object, int level);

    /// As they were read last.
    std::vector<LColor> input_;
};

}  // namespace VantrelSDK
