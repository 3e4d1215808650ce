#pragma once

#include <span>
#include <vector>

#include "core/math/LColor.h"
#include "core/math/LPoint2.h"
#include "core/math/LPoint3.h"
#include "core/mesh/LFace.h"
#include "host/gl/DrawLists.h"
#include "host/gl/ScreenRect.h"

namespace VantrelSDK {

class MLDisplayCache;

/// What is drawn of a surface, each kind from lists of its own.
enum class DrawKind {
    kShaded,
    kShadedNS,  ///< NS: the faces that are not selected, where some are
    kSparse,    ///< one face in so many
    kWireframe,
    kWireframeNS,
    kIsoLines,
    kIsoLinesNS,
    kDepth,  ///< positions alone
    kCount,
};

/// How a pass over the voxels is drawn.
struct DrawPass {
    DrawKind kind = DrawKind::kShaded;
    /// Null where all is drawn, as in the light's view.
    const ScreenProjection* projection = nullptr;
    /// Only what meets it, and no pixel beyond; null for all.
    const ScreenRect* dirty = nullptr;
    bool stroking = false, transforming = false;
    /// Of a thinned level one face in so many; 1 for all.
    int thinning = 1;
    /// Of a shaded kind: the faces that this material's map is shown on; -1 for those that none is.
    int material = -1;
};

/// One level of a voxel.
class VoxLevel {
  public:
    /// Makes the lists of a kind anew where they are not valid, and calls them.
    void Draw(MLDisplayCache& cache, std::span<const int> faces, int level, const DrawPass& pass);
    void Invalidate();
    /// Faces show other materials.
    void ForgetMaterials();
    /// Some face shows a material.
    bool HasMaterial(const MLDisplayCache& cache, std::span<const int> faces, int level,
                     int material);

  private:
    /// The lists of a material that is seen here: of the faces that are selected, or of all, and of
    /// those that are not.
    struct MaterialLists {
        int material;
        DrawList shaded, shadedNS;
    };

    DrawList& List(DrawKind kind) { return lists_[static_cast<size_t>(kind)]; }
    MaterialLists* FindMaterial(int material);

    DrawList lists_[static_cast<size_t>(DrawKind::kCount)];
    /// In no order; those that are not here show nothing, once they are known.
    std::vector<MaterialLists> materials_;
    bool materialsKnown_ = false;
    /// It has changed since its thinned list was made.
    bool full_ = false;
};

/// A cell of the grid that faces lie in: their box, and what is compiled of them, level by level.
class LGLVoxel {
  public:
    LGLVoxel(int cell, int levels) : cell_(cell), lods_(static_cast<size_t>(levels)) {}

    /// Of VoxelGrid.
    int cell() const { return cell_; }
    /// What is drawn here has changed.
    void Invalidate();
    void ForgetMaterials();
    /// The box around all that is drawn here, up to date.
    void RecalBBox(const MLDisplayCache& cache);
    const LPoint3& pmin() const { return pmin_; }
    const LPoint3& pmax() const { return pmax_; }
    /// Draws the level that is due, where it is seen.
    void Draw(MLDisplayCache& cache, const DrawPass& pass);

  private:
    int ChooseLevel(const MLDisplayCache& cache, const DrawPass& pass) const;

    int cell_;
    LPoint3 pmin_, pmax_;
    bool bboxvalid_ = false;
    std::vector<VoxLevel> lods_;
    /// What was drawn last, -1 before.
    int lastlod_ = -1;
};

/// Corners on their way into a list; kept between compilations.
struct CornerArrays {
    std::vector<LPoint3> points, normals;
    std::vector<LColor> colors;
    /// In the place of colors: those that lie over a map.
    std::vector<LAColor> paints;
    std::vector<float> stencils;
    std::vector<LPoint2> uvs;

    void Clear() {
        points.clear();
        normals.clear();
        colors.clear();
        paints.clear();
        stencils.clear();
        uvs.clear();
    }
};

}  // namespace VantrelSDK
