#include "host/gl/MLDisplayCache.h"

#include <algorithm>
#include <cmath>

#include "core/mesh/LMeshObject.h"
#include "core/paint/LPattern.h"
#include "core/sculpt/LNode.h"
#include "core/subdiv/LUVSubdivChannel.h"
#include "host/gl/GLFunctions.h"
#include "host/gl/UnusedNames.h"
#include "host/ml/StageTimes.h"

namespace VantrelSDK {

namespace {

int MaxTextureCoords() {
    static const int most = [] {
        GLint found = 1;
        glGetIntegerv(GL_MAX_TEXTURE_COORDS, &found);
        return std::max(found, 1);
    }();
    return most;
}

}  // namespace

MLDisplayCache::MLDisplayCache(LNode* owner, LThreadGroup* workers)
    : LDisplayCache(owner, workers) {}

MLDisplayCache::~MLDisplayCache() = default;

void MLDisplayCache::Init(LSubdivMeshI* object, LSubdivMeshI* delta) {
    LDisplayCache::Init(object, delta);
    releaseVoxels();
}

void MLDisplayCache::CalcAll() {
    LDisplayCache::CalcAll();
    bbox_.valid = grown_.valid = false;
}

void MLDisplayCache::Clear(bool all) {
    if (dirtyBoxDrawn_) ++step_;
    LDisplayCache::Clear(all);
}

void MLDisplayCache::CalcChanged(bool vertNormals) {
    const StageTimer timer(StageTimes::All().recalculation);
    LDisplayCache::CalcChanged(vertNormals);
    Follow(changedVerts_.Items());
}

void MLDisplayCache::ColorsTaken(std::span<const int> verts) {
    Follow(verts);
}

void MLDisplayCache::Follow(std::span<const int> verts) {
    // Who has not drawn yet has nothing to draw anew.
    if (voxels_.empty()) return;
    for (const int v : verts) {
        grid_.ForCellsOf(v, [this](int cell) {
            voxels_[static_cast<size_t>(voxelOfCell_[static_cast<size_t>(cell)])].Invalidate();
        });
        const LPoint3& p = verts_[static_cast<size_t>(v)];
        if (!grown_.valid) grown_ = {p, p, true};
        grown_.min = {std::min(grown_.min.x, p.x), std::min(grown_.min.y, p.y),
                      std::min(grown_.min.z, p.z)};
        grown_.max = {std::max(grown_.max.x, p.x), std::max(grown_.max.y, p.y),
                      std::max(grown_.max.z, p.z)};
    }
    if (LNode::prefDoPix) GrowDirtyBox(verts);
    MakeRoom();
}

/// A stroke that leaves the box by which light and occlusion are measured gets a larger one, with
/// room to go on, and a whole picture.
void MLDisplayCache::MakeRoom() {
    if (!owner_ || !owner_->IsStroking() || !bbox_.valid || !grown_.valid) return;
    const float room = (bbox_.max - bbox_.min).Len() / 4;
    bool left = false;
    const auto extend = [&](float LPoint3::*axis) {
        if (grown_.min.*axis < bbox_.min.*axis) {
            bbox_.min.*axis = grown_.min.*axis - room;
            left = true;
        }
        if (grown_.max.*axis > bbox_.max.*axis) {
            bbox_.max.*axis = grown_.max.*axis + room;
            left = true;
        }
    };
    const Box before = bbox_;
    extend(&LPoint3::x);
    extend(&LPoint3::y);
    extend(&LPoint3::z);
    if (!left) return;
    if (!tight_.valid) tight_ = before;
    DropCaches();
}

/// A normal or colour that has changed shades the faces around its vertex up to their other
/// corners.
void MLDisplayCache::GrowDirtyBox(std::span<const int> verts) {
    const LAdjFaceList& around = topology_->AdjFaces();
    const LFace* faces = topology_->Faces().data();
    for (const int v : verts)
        for (const int f : around.GetAdjFacesForVert(v))
            for (const int corner : faces[f].v)
                dirtyBox_[0].Add(verts_[static_cast<size_t>(corner)]);
}

void MLDisplayCache::InvalidateVoxels() {
    for (LGLVoxel& voxel : voxels_) voxel.Invalidate();
}

bool MLDisplayCache::createVoxels() {
    if (!voxels_.empty()) return true;
    if (!object_ || !topology_ || nverts_ == 0) return false;
    std::vector<std::span<const LFace>> faces;
    for (int level = 0; level <= level_; ++level) {
        levels_.push_back(object_->GetLevelTopology(static_cast<unsigned>(level)));
        faces.emplace_back(levels_.back()->Faces());
    }
    grid_.Build(verts(), faces);
    voxelOfCell_.assign(VoxelGrid::kCount, -1);
    for (int cell = 0; cell < VoxelGrid::kCount; ++cell) {
        bool any = false;
        for (int level = 0; level <= level_; ++level) any |= !grid_.Faces(cell, level).empty();
        if (!any) continue;
        voxelOfCell_[static_cast<size_t>(cell)] = static_cast<int>(voxels_.size());
        voxels_.emplace_back(cell, level_ + 1);
    }
    return !voxels_.empty();
}

void MLDisplayCache::releaseVoxels() {
    voxels_.clear();
    voxelOfCell_.clear();
    levels_.clear();
    grid_.Clear();
    viewCaches_.clear();
    bbox_.valid = grown_.valid = false;
}

size_t MLDisplayCache::VoxelMemory() const {
    return grid_.Memory() + voxels_.capacity() * sizeof(LGLVoxel) +
           voxels_.size() * levels_.size() * sizeof(VoxLevel) +
           voxelOfCell_.capacity() * sizeof(int);
}

/// What tells one selection, or choice of hidden faces, from another.
size_t MLDisplayCache::SelectionMark() const {
    const LMeshObject* object = owner_ ? owner_->lobject() : nullptr;
    if (!object || (!object->HasSelection() && !object->HasHidden())) return 0;
    return size_t{object->NumFlagChanges()} + 1;
}

void MLDisplayCache::Refresh() {
    FreeUnusedNames();
    PrepareMaps();
    Compiled wanted{settings_.ShowsColor(), settings_.ShowsStencil(), settings_.shaders && GLUse()};
    wanted.uvs = PatternUVs();
    wanted.wrap = wanted.uvs && settings_.wrapUVs;
    if (wanted.uvs) wanted.uvChanges = owner_->lobject()->NumUVChanges();
    // Nobody selects or hides inside a stroke.
    const size_t mark = owner_ && owner_->IsStroking() ? selectionMark_ : SelectionMark();
    if (wanted.color && !useColors()) SetUseColor(true);
    if (wanted == compiled_ && mark == selectionMark_) return;
    compiled_ = wanted;
    selectionMark_ = mark;
    InvalidateVoxels();
}

/// Patterns are seen by the first channel, whichever they are used by.
const LUVSubdivChannel* MLDisplayCache::PatternUVs() const {
    if (!settings_.pattern || !owner_ || !owner_->GetPatternChannel()) return nullptr;
    const int most = std::min(owner_->lobject()->GetNumUVChannels(), MaxTextureCoords());
    return owner_->getPatternUVchannel() < most ? owner_->lobject()->GetUVChannel(0) : nullptr;
}

LPoint2 MLDisplayCache::Placed(const LPoint2& uv) const {
    if (!compiled_.wrap) return uv;
    return {uv.x - std::floor(uv.x), uv.y - std::floor(uv.y)};
}

void MLDisplayCache::InitStencilTex() {
    const LPattern* pattern = owner_ ? owner_->GetActivePattern() : nullptr;
    if (pattern == stencilPattern_ && (!pattern || pattern->revision() == stencilRevision_)) return;
    stencilPattern_ = pattern;
    texok_ = false;
    if (!pattern) return stencilTex_.Release();
    stencilRevision_ = pattern->revision();
    constexpr int kSide = LPattern::kProjSide;
    constexpr float kStep = 1.0f / kSide;
    std::vector<LColor> texels;
    texels.reserve(kSide * kSide);
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            const float less = 1 - pattern->GetProjWeight(static_cast<float>(x) * kStep,
                                                          static_cast<float>(y) * kStep);
            texels.emplace_back(1 - 0.8f * less, 1 - 0.5f * less, 1 - 0.8f * less);
        }
    texok_ = stencilTex_.Upload(kSide, 3, &texels[0].r);
}

void MLDisplayCache::GetBBox(LPoint3& min, LPoint3& max) {
    const bool stroking = owner_ && owner_->IsStroking();
    if (!bbox_.valid && nverts_ > 0) {
        bbox_ = {verts_[0], verts_[0], true};
        for (const LPoint3& p : verts()) {
            bbox_.min = {std::min(bbox_.min.x, p.x), std::min(bbox_.min.y, p.y),
                         std::min(bbox_.min.z, p.z)};
            bbox_.max = {std::max(bbox_.max.x, p.x), std::max(bbox_.max.y, p.y),
                         std::max(bbox_.max.z, p.z)};
        }
        grown_.valid = tight_.valid = false;
    } else if (grown_.valid && !stroking) {
        if (tight_.valid) bbox_ = tight_;
        tight_.valid = false;
        // Light and occlusion are measured by the box: in a stroke it holds still, so that what the
        // stroke does not touch stays as it is.
        bbox_.min = {std::min(bbox_.min.x, grown_.min.x), std::min(bbox_.min.y, grown_.min.y),
                     std::min(bbox_.min.z, grown_.min.z)};
        bbox_.max = {std::max(bbox_.max.x, grown_.max.x), std::max(bbox_.max.y, grown_.max.y),
                     std::max(bbox_.max.z, grown_.max.z)};
        grown_.valid = false;
    }
    min = bbox_.min;
    max = bbox_.max;
}

MLScreenCache& MLDisplayCache::getCacheForView(const M3dView& view) {
    std::erase_if(viewCaches_, [](const MLScreenCache& cache) { return !cache.IsOfScene(); });
    for (MLScreenCache& cache : viewCaches_)
        if (cache.IsThisCam(view)) return cache;
    MDagPath camera;
    view.getCamera(camera);
    return viewCaches_.emplace_back(camera);
}

bool MLDisplayCache::HasCacheFor(const M3dView& view, const MMatrix& toWorld) {
    const MLScreenCache& cache = getCacheForView(view);
    return cache.Shows(view, ToClip(view, toWorld)) && step_ - cache.step() <= 1;
}

void MLDisplayCache::DropCaches() {
    for (MLScreenCache& cache : viewCaches_) cache.Drop();
}

MLDisplayCache::Shared& MLDisplayCache::shared() {
    static Shared all;
    return all;
}

bool MLDisplayCache::InitGLSL(bool force) {
    Shared& all = shared();
    if (!GLInitialised()) {
        InitGLFunctionPointers();
        CheckGlExtentions();
    }
    if (!GLUse()) return false;
    if (all.glslLoaded && !force) return true;
    // Each that fails is off, and told of itself.
    all.shadow.Init();
    all.ssaodepth.Init();
    all.ssao.Init();
    all.ssaodepthGLSL.LoadShaders();
    return all.glslLoaded = true;
}

void MLDisplayCache::FreeGLSL() {
    Shared& all = shared();
    for (glslFBO* target :
         {static_cast<glslFBO*>(&all.shadow), static_cast<glslFBO*>(&all.ssaodepth),
          static_cast<glslFBO*>(&all.ssao), static_cast<glslFBO*>(&all.mask)})
        target->Destroy();
    for (glslShader* program :
         {static_cast<glslShader*>(&all.smoothShadowedGLSL),
          static_cast<glslShader*>(&all.shadowedTexGLSL),
          static_cast<glslShader*>(&all.ssaodepthGLSL), static_cast<glslShader*>(&all.ssaoGLSL),
          static_cast<glslShader*>(&all.normalDotGLSL),
          static_cast<glslShader*>(&all.normalDotInvGLSL),
          static_cast<glslShader*>(&all.saaoMaskGLSL)})
        program->UnLoadShaders();
    FreeUnusedNames();
    all.glslLoaded = false;
    FreeGLFunctionPointers();
}

}  // namespace VantrelSDK
