#pragma once

#include <memory>
#include <vector>

#include "core/paint/LTexture.h"

namespace VantrelSDK {

/// What a material's map is for: to be seen alone, or to be painted too.
enum class mtlMode { kDisplay = 0, kPaint = 1 };

/// A shader of the mesh, as far as it can be shown: its map in the channel that is worked on.
class LMaterial {
  public:
    /// `id`: its place among the shaders of the mesh.
    LMaterial(mtlMode mode, int id) : mode(mode), mtlid(id) {}
    virtual ~LMaterial() = default;
    LMaterial(const LMaterial&) = delete;
    LMaterial& operator=(const LMaterial&) = delete;

    mtlMode GetMode() const { return mode; }
    int GetMtlId() const { return mtlid; }
    unsigned GetNumMaps() const { return static_cast<unsigned>(maps.size()); }
    /// Null for one that is not there.
    LTexture* GetMap(unsigned i) const { return i < maps.size() ? maps[i].get() : nullptr; }
    /// All maps could be written; false without any.
    bool CheckWritePermissions() const;

  protected:
    mtlMode mode;
    int mtlid;
    std::vector<std::unique_ptr<LTexture>> maps;
};

}  // namespace VantrelSDK
