#pragma once

#include "core/paint/LMaterialSet.h"
#include "host/ml/MLMaterial.h"

namespace VantrelSDK {

class MLNode;

/// The materials of the mesh that a node feeds, found through the host's graph. Shaders past those
/// that are drawn (kMaxDrawn with a map) count as having none.
class MLMaterialSet : public LMaterialSet {
  public:
    static constexpr unsigned kMaxDrawn = 40;
    /// Of the set that was made last: some texture had no image that could be shown.
    inline static bool texLoadErrors = false;

    MLMaterialSet(mtlMode mode, int channel, const MLNode& node);

    MLMaterial* GetMLMaterial(unsigned i) const { return static_cast<MLMaterial*>(GetMaterial(i)); }
    /// Each shader of the mesh that has the channel has a file texture there.
    static bool HasAllMaps(int channel, const MObject& node);
};

}  // namespace VantrelSDK
