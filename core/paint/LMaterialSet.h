#pragma once

#include <array>
#include <memory>
#include <vector>

#include "core/paint/LMaterial.h"

namespace VantrelSDK {

/// The materials of a mesh that have a map. A face's material id is the number of its shader.
class LMaterialSet {
  public:
    /// Shaders from this number on have no material here.
    static constexpr int kMaxShaders = 500;

    LMaterialSet() { mtlbyid.fill(-1); }
    virtual ~LMaterialSet() = default;
    LMaterialSet(const LMaterialSet&) = delete;
    LMaterialSet& operator=(const LMaterialSet&) = delete;

    unsigned GetNumMaterials() const { return static_cast<unsigned>(mtls.size()); }
    /// Null for one that is not there.
    LMaterial* GetMaterial(unsigned i) const { return i < mtls.size() ? mtls[i].get() : nullptr; }
    /// That of a shader; null for one without a map.
    LMaterial* GetMaterialById(int id) const;
    /// Its place among the materials, -1 for none.
    int GetIndexById(int id) const { return id >= 0 && id < kMaxShaders ? mtlbyid[id] : -1; }
    /// The shaders without a map.
    const std::vector<int>& GetVoid() const { return voidmtls; }
    /// Some material has a map.
    bool HasMaps() const;
    /// All maps could be written; false without any.
    bool CheckWritePermissions() const;

  protected:
    /// Takes what was made of the next shader: a material where it has maps; else, or past the last
    /// shader that there is room for, the shader counts as one without.
    void Add(int shader, std::unique_ptr<LMaterial> material);

    std::vector<std::unique_ptr<LMaterial>> mtls;
    std::vector<int> voidmtls;
    std::array<int, kMaxShaders> mtlbyid;
};

}  // namespace VantrelSDK
