#pragma once

#include <maya/MObject.h>
#include <maya/MObjectArray.h>
#include <maya/MString.h>

#include "core/paint/LMaterial.h"

namespace VantrelSDK {

class LMeshObject;
class MLTexture;

/// A shading group of the host's, and the map that shows what feeds a channel of its shader. To be
/// seen, a file texture is sampled over the unit square; to be painted, it is the image itself
/// where that lies over the square as it is, else sampled too. A channel that no file texture feeds
/// has a blank map; a shader without the channel none.
///
/// What can't be had is told once for each file as long as the program runs.
class MLMaterial : public LMaterial {
  public:
    /// Of a new or sampled map, as the interface says when a set is made.
    inline static int defW = 2048, defH = 2048;

    /// `shaders`: the shading groups of the mesh, of which this is number `index`; out of range
    /// gives no map. `object` (null for none) has the UV sets.
    MLMaterial(mtlMode mode, int channel, const LMeshObject* object, int index,
               const MObjectArray& shaders);

    const MObject& GetObject() const { return mtlObj; }
    /// The map as the host's; null for one that is not there.
    MLTexture* GetMLMap(unsigned i) const;
    /// A file texture had no image that could be shown.
    bool hasLoadError() const { return loadError_; }

    /// Asks the interface for the size of new maps.
    static void ReadMapSize();

  private:
    void TakeTexture(int channel, const MObject& texture, const MString& file, int uvChannel);
    std::unique_ptr<MLTexture> Painted(const MObject& texture, const MString& file, int uvChannel);

    MObject mtlObj;
    bool loadError_ = false;
};

}  // namespace VantrelSDK
