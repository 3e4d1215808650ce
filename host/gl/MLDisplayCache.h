#pragma once

#include <maya/M3dView.h>
#include <maya/MDrawRequest.h>

#include <memory>
#include <vector>

#include "core/display/LDisplayCache.h"
#include "host/gl/DisplaySettings.h"
#include "host/gl/FloatTexture.h"
#include "host/gl/GLTargets.h"
#include "host/gl/LGLVoxel.h"
#include "host/gl/MLDynMask.h"
#include "host/gl/MLScreenCache.h"
#include "host/gl/VoxelGrid.h"
#include "host/gl/glslMasks.h"
#include "host/gl/glslSSAO.h"
#include "host/gl/glslShadowedProgram.h"
#include "host/gl/glslShadowedTexProgram.h"

namespace VantrelSDK {

class LUVSubdivChannel;
class MLTexture;

/// The surface of a level that draws itself: cut into voxels, each compiled level by level and kind
/// by kind, and compiled anew where a vertex in it has changed. Drawing is done between a view's
/// beginGL and endGL, with the surface's own coordinates to the view's loaded.
///
/// Everything else, a stroke too, needs no OpenGL.
class MLDisplayCache : public LDisplayCache {
  public:
    explicit MLDisplayCache(LNode* owner, LThreadGroup* workers = nullptr);
    ~MLDisplayCache() override;

    void Init(LSubdivMeshI* object, LSubdivMeshI* delta) override;
    void Clear(bool all) override;
    void CalcChanged(bool vertNormals) override;
    void CalcAll() override;
    void InvalidateVoxels() override;
    void ColorsTaken(std::span<const int> verts) override;

    /// How it is drawn from here on.
    void SetSettings(const DisplaySettings& settings) { settings_ = settings; }
    const DisplaySettings& settings() const { return settings_; }

    // What requests ask for. Drawing with _dirty renews the pixels of what has changed, and with
    // kCompose puts them into the last picture. Nothing without a session.

    /// In the upper half of a request's token.
    enum TokenFlag { kCompose = 1 << 16, kKeep = 1 << 17, kPart = 1 << 18 };
    void DrawShaded(const MDrawRequest& request, M3dView& view);
    void DrawShaded_dirty(const MDrawRequest& request, M3dView& view);
    void DrawWireframe(const MDrawRequest& request, M3dView& view);
    void DrawWireframe_dirty(const MDrawRequest& request, M3dView& view);
    void DrawIsoLines(const MDrawRequest& request, M3dView& view);
    void DrawIsoLines_dirty(const MDrawRequest& request, M3dView& view);
    /// The depth map of the light, and the occlusion, for the shaded drawing that follows; with
    /// kPart the occlusion of what DrawShaded_dirty draws alone.
    void RenderAndBindLightDepth(const MDrawRequest& request, M3dView& view);
    void UnBindLightDepth();
    void RenderAndBindSSAO(const MDrawRequest& request, M3dView& view);
    void UnBindSSAO();
    /// Line segments from the vertices: normals; where u grows, and across it, in the frames that
    /// what is sculpted is kept in; from the surface without its delta.
    void DrawNormals(const MDrawRequest& request, M3dView& view);
    void DrawTangents(const MDrawRequest& request, M3dView& view);
    void DrawVectors(const MDrawRequest& request, M3dView& view);
    /// The surface without its delta, solid or as lines.
    void DrawSkin(const MDrawRequest& request, M3dView& view);

    /// All faces that are not hidden, positions and normals alone, with what is bound.
    void DrawPlain() const;
    /// The mask that is used has been put off to the next frame.
    bool IsMaskPending() const;

    /// The pixels in which what has changed may be seen, now and where it was; with what its shadow
    /// and its occlusion reach.
    ScreenRect GetDirtyBox2D(const M3dView& view, const MDrawRequest& request) const;
    /// The box of all vertices as it was when the last stroke began.
    void GetBBox(LPoint3& min, LPoint3& max);
    /// The picture of a view; made where there is none.
    MLScreenCache& getCacheForView(const M3dView& view);
    /// The picture of a view is one that what has changed can be drawn into: seen in the same way,
    /// and taken since the step before.
    bool HasCacheFor(const M3dView& view, const MMatrix& toWorld);
    /// All pictures are of something else.
    void DropCaches();

    // The pattern that lies over the surface, as a texture.

    /// Makes it of the active pattern, where that is another or has changed.
    void InitStencilTex();
    /// Binds it to a texture unit.
    void ActivateStencilTex(int unit) const { stencilTex_.Activate(unit, true); }

    // What voxels ask.

    const VoxelGrid& Grid() const { return grid_; }
    /// Empty before the first drawing.
    const std::vector<LGLVoxel>& voxels() const { return voxels_; }
    std::span<const LFace> Faces(int level) const {
        return levels_[static_cast<size_t>(level)]->Faces();
    }
    bool CompilesColor() const { return compiled_.color || (compiled_.stencil && !compiled_.glsl); }
    bool CompilesStencil() const { return compiled_.stencil && compiled_.glsl; }
    LColor ColorOf(int v, DrawKind kind) const;
    /// Colours over a map have an alpha, since what is not painted shows it.
    bool CompilesPaint() const { return compiled_.color && compiled_.glsl; }
    LAColor PaintOf(int v) const;
    /// The material whose map a face shows, by its place in the node's set; -1 for none.
    int MaterialOf(int face, int level) const;
    /// The UV set that a material's map lies in; null for -1.
    const LUVSubdivChannel* UVsOf(int material) const;
    int StencilPlace() const { return shared().smoothShadowedGLSL.GetStencilLoc(); }
    /// The channel whose points are compiled, for the pattern that lies over the surface; null for
    /// none.
    const LUVSubdivChannel* CompiledUVs() const { return compiled_.uvs; }
    /// A point as the settings place it.
    LPoint2 Placed(const LPoint2& uv) const;
    CornerArrays& Scratch() { return scratch_; }
    /// In bytes, without what OpenGL holds.
    size_t VoxelMemory() const;

    // What all caches share.

    struct Shared {
        bool glslLoaded = false;
        glslShadowFBO shadow;
        glslSSAOdepthFBO ssaodepth;
        glslSSAO_FBO ssao;
        glslShadowedProgram smoothShadowedGLSL;
        glslShadowedTexProgram shadowedTexGLSL;
        glslSSAOdepthShader ssaodepthGLSL;
        glslSSAOshader ssaoGLSL;
        MLMaskFBO mask;
        glslNormalDotShader normalDotGLSL;
        glslNormalDotShaderInv normalDotInvGLSL;
        glslSaaoMaskShader saaoMaskGLSL;
    };
    static Shared& shared();
    /// Loads functions, targets and programs, the first time or with `force`; with a current
    /// context. False where OpenGL can't be used beyond its plainest form.
    static bool InitGLSL(bool force);
    /// Lets go of them, with a current context or after it is gone.
    static void FreeGLSL();

  private:
    /// What is compiled into the lists beside positions and normals.
    struct Compiled {
        bool color = false, stencil = false, glsl = false, wrap = false;
        const LUVSubdivChannel* uvs = nullptr;
        unsigned uvChanges = 0;
        bool operator==(const Compiled&) const = default;
    };
    struct Box {
        LPoint3 min, max;
        bool valid = false;
    };
    struct Draw;

    bool createVoxels();
    void releaseVoxels();
    /// What was compiled under other conditions is not valid.
    void Refresh();
    bool Begin(const MDrawRequest& request, const M3dView& view, Draw& draw);
    void Finish(const MDrawRequest& request, const M3dView& view, const Draw& draw);
    void Surface(const MDrawRequest& request, M3dView& view, bool dirty);
    void Lines(const MDrawRequest& request, M3dView& view, bool dirty, DrawKind kind);
    MLDynMask* ActiveMask() const;
    void ShowMask(const MDrawRequest& request, M3dView& view, const Draw& draw);
    void SetUniforms(const M3dView& view, glslShadowedProgram::Mode mode);
    void SetUniforms(const M3dView& view, glslShadowedProgram& program);
    void Pass(const Draw& draw, DrawKind kind, int material);
    void Both(const Draw& draw, DrawKind kind, const float (&colors)[2][4],
              glslShadowedProgram& program, int material = -1);
    void Maps(const Draw& draw);
    /// Finds out which maps can be drawn, with a current context.
    void PrepareMaps();
    MLTexture* MapOf(int material) const;
    /// Voxels and boxes follow vertices that look different.
    void Follow(std::span<const int> verts);
    void GrowDirtyBox(std::span<const int> verts);
    void MakeRoom();
    /// The channel that the pattern over the surface is seen by; null where there is none.
    const LUVSubdivChannel* PatternUVs() const;
    size_t SelectionMark() const;
    MPoint LightPos(MPoint& center);
    float MarkLength();
    int OcclusionReach(int size) const;

    DisplaySettings settings_;
    VoxelGrid grid_;
    std::vector<LGLVoxel> voxels_;
    /// Which voxel a cell is; -1 for a cell without faces.
    std::vector<int> voxelOfCell_;
    std::vector<std::shared_ptr<const LMeshTopology>> levels_;
    Compiled compiled_;
    size_t selectionMark_ = 0;
    /// The material that is drawn for each of the mesh's shaders, -1 for none; and the UV set of
    /// each material's map, -1 for one that is not drawn.
    std::vector<int> materialOfShader_, uvsOfMaterial_;
    unsigned mtlSets_ = 0;
    /// What is measured by; where vertices went since; what it was before a stroke left it.
    Box bbox_, grown_, tight_;
    std::vector<MLScreenCache> viewCaches_;
    /// Counts the moves of the dirty boxes.
    unsigned step_ = 0;
    CornerArrays scratch_;
    FloatTexture stencilTex_;
    /// What the texture shows.
    const LPattern* stencilPattern_ = nullptr;
    unsigned stencilRevision_ = 0;
    bool texok_ = false;
};

}  // namespace VantrelSDK
