#include "host/gl/LGLVoxel.h"

#include <algorithm>
#include <cmath>

#include "core/mesh/LMeshObject.h"
#include "core/sculpt/LNode.h"
#include "core/subdiv/LUVSubdivChannel.h"
#include "host/gl/GLFunctions.h"
#include "host/gl/MLDisplayCache.h"

namespace VantrelSDK {

namespace {

constexpr bool IsLines(DrawKind kind) {
    return kind >= DrawKind::kWireframe && kind <= DrawKind::kIsoLinesNS;
}

/// Kinds that are drawn apart by material.
constexpr bool IsShaded(DrawKind kind) {
    return kind <= DrawKind::kSparse;
}

constexpr bool IsNS(DrawKind kind) {
    return kind == DrawKind::kShadedNS || kind == DrawKind::kWireframeNS ||
           kind == DrawKind::kIsoLinesNS;
}

/// Gathers the corners of a level's faces as a kind wants them.
class Corners {
  public:
    Corners(const MLDisplayCache& cache, int level, DrawKind kind, int material, CornerArrays& to)
        : cache_(cache),
          object_(cache.owner() ? cache.owner()->lobject() : nullptr),
          faces_(cache.Faces(level)),
          level_(level),
          kind_(kind),
          material_(material),
          selection_(object_ && object_->HasFacesSelected()),
          hidden_(object_ && object_->HasHidden()),
          lit_(kind != DrawKind::kDepth),
          colors_(lit_ && cache.CompilesColor()),
          paints_(colors_ && material >= 0 && cache.CompilesPaint()),
          stencils_(lit_ && cache.CompilesStencil()),
          uvs_(material >= 0            ? cache.UVsOf(material)
               : lit_ && !IsLines(kind) ? cache.CompiledUVs()
                                        : nullptr),
          to_(to) {
        to_.Clear();
    }

    void AddFace(int f) {
        if (!IsDrawn(f)) return;
        const LFace& face = faces_[static_cast<size_t>(f)];
        if (!IsLines(kind_)) {
            for (const int v : face.v) Add(v);
            if (uvs_) AddUVs(f);
            return;
        }
        const bool all = kind_ == DrawKind::kWireframe || kind_ == DrawKind::kWireframeNS;
        for (int e = 0; e < 3; ++e) {
            if (!all && !face.IsEdgeVisible(e)) continue;
            Add(face.v[e]);
            Add(face.v[(e + 1) % 3]);
        }
    }

  private:
    bool IsDrawn(int f) const {
        if (hidden_ && !object_->IsFaceVisible(f, level_)) return false;
        if (IsShaded(kind_) && cache_.MaterialOf(f, level_) != material_) return false;
        if (!selection_ || !lit_) return !IsNS(kind_);
        return object_->IsFaceSelected(f, level_) != IsNS(kind_);
    }

    void Add(int v) {
        to_.points.push_back(cache_.GetVertex(v));
        if (!lit_) return;
        to_.normals.push_back(cache_.GetVNormal(v));
        if (paints_)
            to_.paints.push_back(cache_.PaintOf(v));
        else if (colors_)
            to_.colors.push_back(cache_.ColorOf(v, kind_));
        if (stencils_) to_.stencils.push_back(cache_.GetStencil(v));
    }

    /// Of the corners of a face, each of which has its own at a seam; (0, 0) without one, and for
    /// what is no number. Maps repeat by themselves; a pattern is brought back where that is
    /// wanted.
    void AddUVs(int f) {
        const auto faces = uvs_->LevelFaces(level_);
        const auto points = uvs_->AllVerts();
        for (int k = 0; k < 3; ++k) {
            const int point = static_cast<size_t>(f) < faces.size() ? faces[f].v[k] : -1;
            const bool known = point >= 0 && static_cast<size_t>(point) < points.size();
            const LPoint2 uv = known ? points[static_cast<size_t>(point)] : LPoint2();
            const bool good = std::isfinite(uv.x) && std::isfinite(uv.y);
            to_.uvs.push_back(!good ? LPoint2() : material_ < 0 ? cache_.Placed(uv) : uv);
        }
    }

    const MLDisplayCache& cache_;
    const LMeshObject* object_;
    std::span<const LFace> faces_;
    int level_;
    DrawKind kind_;
    int material_;
    bool selection_, hidden_, lit_, colors_, paints_, stencils_;
    const LUVSubdivChannel* uvs_;
    CornerArrays& to_;
};

void DrawArrays(const CornerArrays& corners, GLenum primitive, int stencilPlace) {
    if (corners.points.empty()) return;
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, corners.points.data());
    if (!corners.normals.empty()) {
        glEnableClientState(GL_NORMAL_ARRAY);
        glNormalPointer(GL_FLOAT, 0, corners.normals.data());
    }
    if (!corners.colors.empty()) {
        glEnableClientState(GL_COLOR_ARRAY);
        glColorPointer(3, GL_FLOAT, 0, corners.colors.data());
    }
    if (!corners.paints.empty()) {
        glEnableClientState(GL_COLOR_ARRAY);
        glColorPointer(4, GL_FLOAT, 0, corners.paints.data());
    }
    if (!corners.uvs.empty()) {
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(2, GL_FLOAT, 0, corners.uvs.data());
    }
    if (!corners.stencils.empty() && stencilPlace >= 0) {
        const auto place = static_cast<GLuint>(stencilPlace);
        glEnableVertexAttribArray(place);
        glVertexAttribPointer(place, 1, GL_FLOAT, GL_TRUE, 0, corners.stencils.data());
    }
    glDrawArrays(primitive, 0, static_cast<GLsizei>(corners.points.size()));
    glPopClientAttrib();
}

void DrawFaces(MLDisplayCache& cache, std::span<const int> faces, int level, DrawKind kind,
               int material, int thinning) {
    CornerArrays& arrays = cache.Scratch();
    Corners corners(cache, level, kind, material, arrays);
    for (const int f : faces)
        if (thinning == 1 || f % thinning == 0) corners.AddFace(f);
    DrawArrays(arrays, IsLines(kind) ? GL_LINES : GL_TRIANGLES, cache.StencilPlace());
}

}  // namespace

void VoxLevel::Invalidate() {
    for (DrawList& list : lists_) list.Invalidate();
    for (MaterialLists& lists : materials_) {
        lists.shaded.Invalidate();
        lists.shadedNS.Invalidate();
    }
    full_ = true;
}

void VoxLevel::ForgetMaterials() {
    materials_.clear();
    materialsKnown_ = false;
}

VoxLevel::MaterialLists* VoxLevel::FindMaterial(int material) {
    const auto found = std::ranges::find(materials_, material, &MaterialLists::material);
    return found == materials_.end() ? nullptr : &*found;
}

bool VoxLevel::HasMaterial(const MLDisplayCache& cache, std::span<const int> faces, int level,
                           int material) {
    if (!materialsKnown_)
        for (const int f : faces) {
            const int shown = cache.MaterialOf(f, level);
            if (shown >= 0 && !FindMaterial(shown)) materials_.push_back({shown, {}, {}});
        }
    materialsKnown_ = true;
    return FindMaterial(material) != nullptr;
}

void VoxLevel::Draw(MLDisplayCache& cache, std::span<const int> faces, int level,
                    const DrawPass& pass) {
    if (faces.empty()) return;
    if (!pass.stroking) full_ = false;
    // A huge mesh is thinned while a stroke runs, but for what the stroke changes.
    const bool thin = pass.kind == DrawKind::kShaded && pass.material < 0 && pass.thinning > 1 &&
                      pass.stroking && !full_;
    DrawList* list = &List(thin ? DrawKind::kSparse : pass.kind);
    if (pass.material >= 0) {
        if (!HasMaterial(cache, faces, level, pass.material)) return;
        MaterialLists& lists = *FindMaterial(pass.material);
        list = pass.kind == DrawKind::kShadedNS ? &lists.shadedNS : &lists.shaded;
    }
    const auto draw = [&] {
        DrawFaces(cache, faces, level, pass.kind, pass.material, thin ? pass.thinning : 1);
    };
    // What a stroke changes it changes again in a moment: not worth compiling.
    if (!list->IsValid() && pass.stroking && pass.dirty) return draw();
    if (!list->IsValid() && list->Begin()) {
        draw();
        list->End();
    }
    list->Call();
}

void LGLVoxel::Invalidate() {
    bboxvalid_ = false;
    for (VoxLevel& lod : lods_) lod.Invalidate();
}

void LGLVoxel::ForgetMaterials() {
    for (VoxLevel& lod : lods_) lod.ForgetMaterials();
}

void LGLVoxel::RecalBBox(const MLDisplayCache& cache) {
    if (bboxvalid_) return;
    bool any = false;
    const auto add = [&](const LPoint3& p) {
        if (!any) pmin_ = pmax_ = p;
        any = true;
        pmin_ = {std::min(pmin_.x, p.x), std::min(pmin_.y, p.y), std::min(pmin_.z, p.z)};
        pmax_ = {std::max(pmax_.x, p.x), std::max(pmax_.y, p.y), std::max(pmax_.z, p.z)};
    };
    for (size_t level = 0; level < lods_.size(); ++level) {
        const auto faces = cache.Faces(static_cast<int>(level));
        for (const int f : cache.Grid().Faces(cell_, static_cast<int>(level)))
            for (const int v : faces[static_cast<size_t>(f)].v) add(cache.GetVertex(v));
    }
    bboxvalid_ = true;
}

/// The top level, and while a hand waits for the picture the first from there down that it does not
/// wait for long.
int LGLVoxel::ChooseLevel(const MLDisplayCache& cache, const DrawPass& pass) const {
    const int top = static_cast<int>(lods_.size()) - 1;
    if (!pass.stroking && !pass.transforming) return top;
    for (int level = top; level >= 0; --level)
        if (cache.Faces(level).size() <= static_cast<size_t>(LNode::prefNumFacesDisplayFallback))
            return level;
    return top;
}

void LGLVoxel::Draw(MLDisplayCache& cache, const DrawPass& pass) {
    int level = ChooseLevel(cache, pass);
    while (level > 0 && cache.Grid().Faces(cell_, level).empty()) --level;
    const std::span<const int> faces = cache.Grid().Faces(cell_, level);
    VoxLevel& lod = lods_[static_cast<size_t>(level)];
    // Most voxels show few materials.
    if (pass.material >= 0 && !lod.HasMaterial(cache, faces, level, pass.material)) return;
    RecalBBox(cache);
    if (pass.projection) {
        const ScreenRect seen = pass.projection->Of(pmin_, pmax_);
        if (seen.IsEmpty() || (pass.dirty && !seen.Meets(*pass.dirty))) return;
    }
    lod.Draw(cache, faces, level, pass);
    lastlod_ = level;
}

}  // namespace VantrelSDK
