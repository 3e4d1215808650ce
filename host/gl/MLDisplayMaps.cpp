#include <algorithm>

#include "core/paint/LColorDelta.h"
#include "core/sculpt/LNode.h"
#include "core/subdiv/LUVSubdivChannel.h"
#include "host/gl/GLFunctions.h"
#include "host/gl/MLDisplayCache.h"
#include "host/gl/MLTexture.h"
#include "host/ml/MLPattern.h"

// What of a surface shows the maps of its materials.

namespace VantrelSDK {

MLTexture* MLDisplayCache::MapOf(int material) const {
    const LMaterialSet* set = owner_ ? owner_->GetMtlSet() : nullptr;
    const LMaterial* found =
        set && material >= 0 ? set->GetMaterial(static_cast<unsigned>(material)) : nullptr;
    return found ? static_cast<MLTexture*>(found->GetMap(0)) : nullptr;
}

/// Where some map is not to be had no material is drawn, and where a mesh lacks the UVs of one that
/// one is not: their faces are plain then.
void MLDisplayCache::PrepareMaps() {
    const LMaterialSet* set = owner_ ? owner_->GetMtlSet() : nullptr;
    const LMeshObject* object = owner_ ? owner_->lobject() : nullptr;
    const int count = set && object && GLUse() ? static_cast<int>(set->GetNumMaterials()) : 0;
    PatternOverlay over;
    if (settings_.pattern && count > 0)
        over = {static_cast<MLPattern*>(owner_->GetActivePattern()), settings_.patternRevision,
                settings_.patternOpacity};
    bool all = true;
    for (int m = 0; m < count; ++m) all &= MapOf(m)->CreateGlMaps(owner_, over);
    std::vector<int> uvs(static_cast<size_t>(all ? count : 0), -1), shaders;
    GLint most = 8;
    if (!uvs.empty()) glGetIntegerv(GL_MAX_TEXTURE_COORDS, &most);
    for (size_t m = 0; m < uvs.size(); ++m) {
        const int channel = MapOf(static_cast<int>(m))->GetUVChannel();
        if (channel >= std::min(object->GetNumUVChannels(), static_cast<int>(most)) ||
            object->GetUVChannel(channel)->IsEmpty())
            continue;
        uvs[m] = channel;
        const int id = set->GetMaterial(static_cast<unsigned>(m))->GetMtlId();
        if (static_cast<size_t>(id) >= shaders.size())
            shaders.resize(static_cast<size_t>(id) + 1, -1);
        shaders[static_cast<size_t>(id)] = static_cast<int>(m);
    }
    const unsigned sets = owner_ ? owner_->NumMtlSets() : 0;
    if (uvs == uvsOfMaterial_ && shaders == materialOfShader_ && (uvs.empty() || sets == mtlSets_))
        return;
    uvsOfMaterial_ = std::move(uvs);
    materialOfShader_ = std::move(shaders);
    mtlSets_ = sets;
    for (LGLVoxel& voxel : voxels_) voxel.ForgetMaterials();
    InvalidateVoxels();
}

int MLDisplayCache::MaterialOf(int face, int level) const {
    if (materialOfShader_.empty()) return -1;
    const int id = owner_->lobject()->GetFaceMtlId(face, level);
    return id >= 0 && static_cast<size_t>(id) < materialOfShader_.size()
               ? materialOfShader_[static_cast<size_t>(id)]
               : -1;
}

const LUVSubdivChannel* MLDisplayCache::UVsOf(int material) const {
    return material < 0
               ? nullptr
               : owner_->lobject()->GetUVChannel(uvsOfMaterial_[static_cast<size_t>(material)]);
}

/// What is painted, and nothing where nothing is, in the colour that came in.
LAColor MLDisplayCache::PaintOf(int v) const {
    const LColor plain = GetColor(v);
    if (!colordelta_ || v >= colordelta_->GetNumVerts(level_))
        return {plain.r, plain.g, plain.b, 0};
    const LAColor paint = colordelta_->Paints()[v];
    if (paint.a <= 0) return {plain.r, plain.g, plain.b, 0};
    return {paint.r / paint.a, paint.g / paint.a, paint.b / paint.a, paint.a};
}

}  // namespace VantrelSDK
