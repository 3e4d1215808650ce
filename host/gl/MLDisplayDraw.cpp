#include <maya/MBoundingBox.h>
#include <maya/MMatrix.h>

#include <algorithm>
#include <cmath>

#include "core/mesh/LMeshObject.h"
#include "core/morph/LMeshBases.h"
#include "core/sculpt/LNode.h"
#include "host/gl/GLFunctions.h"
#include "host/gl/MLDisplayCache.h"
#include "host/gl/MLTexture.h"

namespace VantrelSDK {

namespace {

constexpr float kRadians = 6.2831855f / 360;

// Colours without shaders: of all faces, or those that are selected, and of the others.
constexpr float kDiffuse[2][4] = {{0.82f, 0.82f, 0.82f, 1}, {0.68f, 0.65f, 0.65f, 1}};
constexpr float kWire[2][4] = {{0.45f, 0.45f, 0.45f, 1}, {0.46f, 0.45f, 0.45f, 1}};
constexpr float kIso[2][4] = {{0.45f, 0.45f, 0.45f, 1}, {0.47f, 0.45f, 0.45f, 1}};
constexpr float kAmbient[4] = {0.1f, 0.1f, 0.1f, 1}, kShininess = 0.1f;

/// OpenGL's state, put back when it goes.
class KeptState {
  public:
    KeptState() { glPushAttrib(GL_ALL_ATTRIB_BITS); }
    ~KeptState() { glPopAttrib(); }
    KeptState(const KeptState&) = delete;
    KeptState& operator=(const KeptState&) = delete;
};

/// From the surface to the light, in the camera's coordinates.
MVector LightDir(const DisplaySettings& settings) {
    const double a = settings.shadowAzm * kRadians, b = settings.shadowAlt * kRadians;
    return MVector(-std::sin(b) * std::sin(a), -std::cos(b), -std::sin(b) * std::cos(a)).normal();
}

MMatrix Current(GLenum which) {
    MMatrix matrix;
    glGetDoublev(which, &matrix.matrix[0][0]);
    return matrix;
}

void BindNothing(int unit) {
    if (GLUse()) glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    glBindTexture(GL_TEXTURE_2D, 0);
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    if (GLUse()) glActiveTexture(GL_TEXTURE0);
}

/// As far as the blur of the occlusion reaches, in pixels of a view so wide or high, and two texels
/// of its map more, since what lies between texels is a mean.
int BlurReach(int size) {
    return static_cast<int>(std::ceil(size * (0.004 + 2.0 / 512)));
}

/// The texels under pixels of a view, and one around them.
ScreenRect OnMap(const ScreenRect& pixels, int width, int height, int size) {
    const auto at = [size](int pixel, int of) {
        return static_cast<int>(static_cast<long long>(pixel) * size / of);
    };
    return ScreenRect{at(pixels.x0, width), at(pixels.y0, height), at(pixels.x1, width) + 1,
                      at(pixels.y1, height) + 1}
        .Grown(1, 1, size, size);
}

bool IsMultisampled() {
    GLint buffers = 0;
    glGetIntegerv(GL_SAMPLE_BUFFERS, &buffers);
    return buffers > 0;
}

/// Mesa's software renderer smooths lines in a state of its own, and loses the state that is set
/// next when it leaves it. So it leaves it for a line that nobody sees.
void LeaveSmoothing() {
    glDisable(GL_LINE_SMOOTH);
    glDepthMask(GL_FALSE);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    glBegin(GL_LINES);
    glVertex3f(0, 0, 0);
    glVertex3f(0, 1, 0);
    glEnd();
}

}  // namespace

/// One request on its way.
struct MLDisplayCache::Draw {
    ScreenProjection projection;
    /// What is drawn anew, where that is not all.
    ScreenRect rect;
    bool dirty = false, selection = false;
};

LColor MLDisplayCache::ColorOf(int v, DrawKind kind) const {
    if (!compiled_.stencil || compiled_.glsl) return GetColor(v);
    const bool lines =
        kind != DrawKind::kShaded && kind != DrawKind::kShadedNS && kind != DrawKind::kSparse;
    const LColor base = settings_.ShowsColor() ? GetColor(v)
                        : lines                ? LColor(kWire[0][0], kWire[0][1], kWire[0][2])
                                : LColor(kDiffuse[0][0], kDiffuse[0][1], kDiffuse[0][2]);
    const float s = settings_.invertStencil ? 1 - GetStencil(v) : GetStencil(v);
    return {base.r * (1 - 0.5f * s), base.g * (1 - 0.8f * s), base.b * (1 - 0.8f * s)};
}

bool MLDisplayCache::Begin(const MDrawRequest& request, const M3dView& view, Draw& draw) {
    if (!owner_ || !owner_->IsSculpting() || !object_ || !createVoxels()) return false;
    Refresh();
    draw.projection = {ToClip(view, request.multiPath().inclusiveMatrix()), view.portWidth(),
                       view.portHeight()};
    draw.selection = selectionMark_ != 0 && owner_->lobject()->HasFacesSelected();
    if (draw.dirty) draw.rect = GetDirtyBox2D(view, request);
    return true;
}

void MLDisplayCache::Finish(const MDrawRequest& request, const M3dView& view, const Draw& draw) {
    // Pictures are kept only where pixels can be put back as they were.
    if (LNode::prefDoPix != 1 || !GLUse() || IsMultisampled()) return;
    if (draw.dirty && (request.token() & kCompose)) {
        if (getCacheForView(view).Compose(view, draw.rect, step_)) SetDirtyBoxDrawn();
    } else if (request.token() & kKeep) {
        getCacheForView(view).ReadCaches(view, draw.projection.toClip, step_);
    }
}

void MLDisplayCache::Pass(const Draw& draw, DrawKind kind, int material) {
    if (draw.dirty) {
        if (draw.rect.IsEmpty()) return;
        glEnable(GL_SCISSOR_TEST);
        glScissor(draw.rect.x0, draw.rect.y0, draw.rect.Width(), draw.rect.Height());
    }
    DrawPass pass{kind, &draw.projection, draw.dirty ? &draw.rect : nullptr};
    pass.stroking = owner_->IsStroking();
    pass.transforming = settings_.transforming;
    pass.material = material;
    if (level_ == 0 && delta_->HasLevelChanged())
        pass.thinning = std::max(nfaces_ / std::max(LNode::prefNumFacesDisplayFallback, 1), 1);
    for (LGLVoxel& voxel : voxels_) voxel.Draw(*this, pass);
    if (draw.dirty) glDisable(GL_SCISSOR_TEST);
}

void MLDisplayCache::SetUniforms(const M3dView& view, glslShadowedProgram& program) {
    Shared& all = shared();
    program.SetLightDir(0, LightDir(settings_));
    program.SetFilterSize(static_cast<float>(settings_.shadowFilter));
    program.SetUseShadow(settings_.shadow && all.shadow.IsInitOK());
    program.SetUseSSAO(settings_.ssao && all.ssao.IsInitOK() && all.ssaodepth.IsInitOK());
    program.SetUseColor(compiled_.color);
    program.SetUseSpeculars(settings_.speculars && !compiled_.color && !settings_.affectTexture &&
                            !settings_.affectTexStencil);
    program.SetUseDiffuse(settings_.diffuse && !compiled_.color);
    program.SetUseStencil(compiled_.stencil);
    program.SetInvertStencil(settings_.invertStencil);
    program.SetOpacity(settings_.opacity);
    program.SetViewSize(static_cast<float>(view.portWidth()),
                        static_cast<float>(view.portHeight()));
}

void MLDisplayCache::SetUniforms(const M3dView& view, glslShadowedProgram::Mode mode) {
    Shared& all = shared();
    SetUniforms(view, all.smoothShadowedGLSL);
    all.smoothShadowedGLSL.SetMode(mode);
    const bool pattern = mode == glslShadowedProgram::kSurface && compiled_.uvs && texok_;
    all.smoothShadowedGLSL.SetUseStencilTex(pattern);
    all.smoothShadowedGLSL.SetStencilTexOpac(settings_.patternOpacity);
    SetUniforms(view, all.shadowedTexGLSL);
    all.shadowedTexGLSL.SetTextureOpacity(settings_.textureOpacity);
    all.shadow.ActivateTexture(0);
    all.ssao.ActivateTexture(1);
    if (pattern) ActivateStencilTex(2);
    glActiveTexture(GL_TEXTURE0);
}

/// A kind, and where some faces are selected the others too, which stand behind it.
void MLDisplayCache::Both(const Draw& draw, DrawKind kind, const float (&colors)[2][4],
                          glslShadowedProgram& program, int material) {
    for (int other = 0; other < (draw.selection ? 2 : 1); ++other) {
        program.SetSelected(other == 0);
        if (!compiled_.glsl || !program.UseProgram()) {
            glMaterialfv(GL_FRONT, GL_DIFFUSE, colors[other]);
            glColor3fv(colors[other]);
        }
        Pass(draw, static_cast<DrawKind>(static_cast<int>(kind) + other), material);
    }
    program.UnUseProgram();
}

/// The faces of each material that is drawn, with its map.
void MLDisplayCache::Maps(const Draw& draw) {
    const int unit = compiled_.glsl ? glslShadowedTexProgram::kUnit : 0;
    for (size_t m = 0; m < uvsOfMaterial_.size(); ++m) {
        if (uvsOfMaterial_[m] < 0) continue;
        MapOf(static_cast<int>(m))->ActivateDisplayMap(unit);
        if (!compiled_.glsl) glEnable(GL_TEXTURE_2D);
        Both(draw, DrawKind::kShaded, kDiffuse, shared().shadowedTexGLSL, static_cast<int>(m));
        BindNothing(unit);
    }
}

void MLDisplayCache::Surface(const MDrawRequest& request, M3dView& view, bool dirty) {
    Draw draw;
    draw.dirty = dirty;
    view.beginGL();
    if (Begin(request, view, draw)) {
        const KeptState kept;
        glPolygonOffset(1, 1);
        glEnable(GL_POLYGON_OFFSET_FILL);
        glEnable(GL_DEPTH_TEST);
        if (settings_.cullBackface) {
            glCullFace(GL_BACK);
            glEnable(GL_CULL_FACE);
        }
        if (settings_.opacity != 1) {
            glEnable(GL_BLEND);
            glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        } else {
            // A face that lies in two voxels is shaded once.
            glDepthFunc(GL_LESS);
        }
        if (compiled_.uvs) InitStencilTex();
        if (compiled_.glsl) {
            SetUniforms(view, glslShadowedProgram::kSurface);
        } else {
            if (compiled_.uvs && texok_) {
                ActivateStencilTex(0);
                glEnable(GL_TEXTURE_2D);
                glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
            }
            if (!compiled_.color) glEnable(GL_LIGHTING);
            glEnable(GL_NORMALIZE);
            glMaterialfv(GL_FRONT, GL_AMBIENT, kAmbient);
            glMaterialfv(GL_FRONT, GL_SPECULAR, kAmbient);
            glMaterialf(GL_FRONT, GL_SHININESS, kShininess);
            if (compiled_.stencil) {
                glColorMaterial(GL_FRONT, GL_DIFFUSE);
                glEnable(GL_COLOR_MATERIAL);
            }
        }
        Both(draw, DrawKind::kShaded, kDiffuse, shared().smoothShadowedGLSL);
        Maps(draw);
        ShowMask(request, view, draw);
    }
    Finish(request, view, draw);
    view.endGL();
}

MLDynMask* MLDisplayCache::ActiveMask() const {
    const std::vector<LDynMask*>* masks = owner_ ? &owner_->ldynmasks() : nullptr;
    const int active = settings_.mask.active;
    if (!masks || active < 0 || active >= static_cast<int>(masks->size())) return nullptr;
    return dynamic_cast<MLDynMask*>((*masks)[static_cast<size_t>(active)]);
}

bool MLDisplayCache::IsMaskPending() const {
    const MLDynMask* mask = ActiveMask();
    return mask && mask->IsPending();
}

/// Only the view that is worked in has a mask.
void MLDisplayCache::ShowMask(const MDrawRequest& request, M3dView& view, const Draw& draw) {
    MLDynMask* mask = GLUse() ? ActiveMask() : nullptr;
    if (!mask) return;
    MDagPath camera, active;
    view.getCamera(camera);
    M3dView::active3dView().getCamera(active);
    if (!(camera == active)) return;
    if (!draw.dirty && !owner_->IsStroking() &&
        !mask->Follow(request, view, *this, settings_.mask)) {
        // What shows the view draws it once more when it stands still.
        if (mask->IsPending() && view.widget()) view.refresh();
        return;
    }
    if (draw.dirty) {
        if (draw.rect.IsEmpty()) return;
        glEnable(GL_SCISSOR_TEST);
        glScissor(draw.rect.x0, draw.rect.y0, draw.rect.Width(), draw.rect.Height());
    }
    mask->Display();
    if (draw.dirty) glDisable(GL_SCISSOR_TEST);
}

void MLDisplayCache::DrawPlain() const {
    constexpr size_t kChunk = 1 << 16;
    const LMeshObject* object = owner_ ? owner_->lobject() : nullptr;
    const bool hides = object && object->HasHidden();
    std::vector<GLuint> corners;
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glVertexPointer(3, GL_FLOAT, sizeof(LPoint3), verts_.data());
    glNormalPointer(GL_FLOAT, sizeof(LPoint3), vnormals_.data());
    const auto flush = [&] {
        glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(corners.size()), GL_UNSIGNED_INT,
                       corners.data());
        corners.clear();
    };
    for (int f = 0; f < nfaces_; ++f) {
        if (hides && !object->IsFaceVisible(f, static_cast<unsigned>(level_))) continue;
        for (const int v : topology_->Faces()[static_cast<size_t>(f)].v)
            corners.push_back(static_cast<GLuint>(v));
        if (corners.size() >= kChunk * 3) flush();
    }
    if (!corners.empty()) flush();
    glPopClientAttrib();
}

void MLDisplayCache::Lines(const MDrawRequest& request, M3dView& view, bool dirty, DrawKind kind) {
    Draw draw;
    draw.dirty = dirty;
    view.beginGL();
    if (Begin(request, view, draw)) {
        const KeptState kept;
        glEnable(GL_DEPTH_TEST);
        glEnable(GL_LINE_SMOOTH);
        glHint(GL_LINE_SMOOTH_HINT, GL_NICEST);
        glEnable(GL_BLEND);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        const bool iso = kind == DrawKind::kIsoLines;
        const auto mode = iso ? glslShadowedProgram::kIsoLines : glslShadowedProgram::kWireframe;
        if (compiled_.glsl) SetUniforms(view, mode);
        Both(draw, kind, iso ? kIso : kWire, shared().smoothShadowedGLSL);
        LeaveSmoothing();
    }
    Finish(request, view, draw);
    view.endGL();
}

void MLDisplayCache::DrawShaded(const MDrawRequest& request, M3dView& view) {
    Surface(request, view, false);
}
void MLDisplayCache::DrawShaded_dirty(const MDrawRequest& request, M3dView& view) {
    Surface(request, view, true);
}
void MLDisplayCache::DrawWireframe(const MDrawRequest& request, M3dView& view) {
    Lines(request, view, false, DrawKind::kWireframe);
}
void MLDisplayCache::DrawWireframe_dirty(const MDrawRequest& request, M3dView& view) {
    Lines(request, view, true, DrawKind::kWireframe);
}
void MLDisplayCache::DrawIsoLines(const MDrawRequest& request, M3dView& view) {
    Lines(request, view, false, DrawKind::kIsoLines);
}
void MLDisplayCache::DrawIsoLines_dirty(const MDrawRequest& request, M3dView& view) {
    Lines(request, view, true, DrawKind::kIsoLines);
}

/// Beyond the object, on the side of the light.
MPoint MLDisplayCache::LightPos(MPoint& center) {
    LPoint3 min, max;
    GetBBox(min, max);
    const MVector size(max.x - min.x, max.y - min.y, max.z - min.z);
    center = MPoint((min.x + max.x) / 2, (min.y + max.y) / 2, (min.z + max.z) / 2);
    const MVector toLight = (LightDir(settings_) * Current(GL_MODELVIEW_MATRIX).inverse()).normal();
    return center + toLight * (2.5 * size.length());
}

void MLDisplayCache::RenderAndBindLightDepth(const MDrawRequest& request, M3dView& view) {
    Draw draw;
    view.beginGL();
    if (GLUse() && Begin(request, view, draw)) {
        glslShadowFBO& shadow = shared().shadow;
        MPoint center;
        shadow.SetLightPos(LightPos(center));
        shadow.SetObjCenter(center);
        if (shadow.MakeCurrent()) {
            DrawPass pass{DrawKind::kDepth};
            pass.stroking = owner_->IsStroking();
            for (LGLVoxel& voxel : voxels_) voxel.Draw(*this, pass);
            shadow.ResetCurrent();
        }
    }
    view.endGL();
}

void MLDisplayCache::UnBindLightDepth() {
    BindNothing(0);
}

void MLDisplayCache::RenderAndBindSSAO(const MDrawRequest& request, M3dView& view) {
    Draw draw;
    draw.dirty = request.token() & kPart;
    view.beginGL();
    Shared& all = shared();
    if (GLUse() && Begin(request, view, draw) && !(draw.dirty && draw.rect.IsEmpty())) {
        // The occlusion that a part of the picture shows, and the depth that it is made from.
        const int width = view.portWidth(), height = view.portHeight();
        const ScreenRect shown =
                             draw.rect.Grown(BlurReach(width), BlurReach(height), width, height),
                         below = draw.rect.Grown(OcclusionReach(width), OcclusionReach(height),
                                                 width, height);
        LPoint3 min, max;
        GetBBox(min, max);
        MBoundingBox box(MPoint(min.x, min.y, min.z), MPoint(max.x, max.y, max.z));
        box.transformUsing(Current(GL_MODELVIEW_MATRIX));
        const auto one = static_cast<float>(-box.min().z), other = static_cast<float>(-box.max().z);
        all.ssaodepthGLSL.SetFarNear(std::max(one, other), std::min(one, other));
        if (all.ssaodepth.MakeCurrent()) {
            if (all.ssaodepthGLSL.UseProgram()) {
                DrawPass pass{DrawKind::kDepth, &draw.projection, draw.dirty ? &below : nullptr};
                pass.stroking = owner_->IsStroking();
                for (LGLVoxel& voxel : voxels_) voxel.Draw(*this, pass);
                all.ssaodepthGLSL.UnUseProgram();
            }
            all.ssaodepth.ResetCurrent();
        }
        if (!all.ssaoGLSL.IsLoaded()) all.ssaoGLSL.LoadShaders();
        all.ssaoGLSL.SetRadius(settings_.ssaoRadius);
        all.ssaoGLSL.SetSamples(settings_.ssaoSamples);
        if (all.ssao.MakeCurrent()) {
            all.ssaodepth.ActivateTexture(1);
            if (draw.dirty) {
                const auto [x0, y0, x1, y1] = OnMap(shown, width, height, all.ssao.size());
                glEnable(GL_SCISSOR_TEST);
                glScissor(x0, y0, x1 - x0, y1 - y0);
            }
            if (all.ssaoGLSL.UseProgram()) {
                glBegin(GL_QUADS);
                for (const auto& [x, y] :
                     {std::pair{-1.f, -1.f}, {1.f, -1.f}, {1.f, 1.f}, {-1.f, 1.f}})
                    glVertex3f(x, y, -1);
                glEnd();
                all.ssaoGLSL.UnUseProgram();
            }
            BindNothing(1);
            all.ssao.ResetCurrent();
        }
    }
    view.endGL();
}

void MLDisplayCache::UnBindSSAO() {
    BindNothing(1);
}

ScreenRect MLDisplayCache::GetDirtyBox2D(const M3dView& view, const MDrawRequest& request) const {
    const int width = view.portWidth(), height = view.portHeight();
    const ScreenProjection projection{ToClip(view, request.multiPath().inclusiveMatrix()), width,
                                      height};
    ScreenRect rect;
    for (int i = 0; i < 2; ++i) {
        LPoint3 min, max;
        if (!GetDirtyBox(i, min, max)) continue;
        rect.Join(projection.Of(min, max));
        if (!settings_.shadow || !bbox_.valid) continue;
        // A shadow falls away from the light, no farther than the object reaches; its edge is soft.
        const LPoint3 size = bbox_.max - bbox_.min;
        MMatrix modelView;
        view.modelViewMatrix(modelView);
        const MVector fall =
            -(LightDir(settings_) * (request.multiPath().inclusiveMatrix() * modelView).inverse())
                 .normal() *
            (1.2 * MVector(size.x, size.y, size.z).length());
        const auto soft = static_cast<float>(0.04 * MVector(size.x, size.y, size.z).length());
        LPoint3 low = min, high = max;
        const float by[3] = {static_cast<float>(fall.x), static_cast<float>(fall.y),
                             static_cast<float>(fall.z)};
        float* lows[3] = {&low.x, &low.y, &low.z};
        float* highs[3] = {&high.x, &high.y, &high.z};
        for (int axis = 0; axis < 3; ++axis) {
            *lows[axis] += std::min(by[axis], 0.f) - soft;
            *highs[axis] += std::max(by[axis], 0.f) + soft;
        }
        const LPoint3 boxMin = bbox_.min - LPoint3(soft, soft, soft),
                      boxMax = bbox_.max + LPoint3(soft, soft, soft);
        low = {std::max(low.x, boxMin.x), std::max(low.y, boxMin.y), std::max(low.z, boxMin.z)};
        high = {std::min(high.x, boxMax.x), std::min(high.y, boxMax.y), std::min(high.z, boxMax.z)};
        rect.Join(projection.Of(low, high));
    }
    if (rect.IsEmpty() || !settings_.ssao) return rect;
    return rect.Grown(OcclusionReach(width), OcclusionReach(height), width, height);
}

/// As far as a tap of the occlusion, and then of its blur, reaches, in pixels of a view so wide or
/// high.
int MLDisplayCache::OcclusionReach(int size) const {
    return std::max(4, static_cast<int>(static_cast<float>(size * settings_.ssaoSamples) *
                                        settings_.ssaoRadius * 0.5f)) +
           BlurReach(size);
}

namespace {

void Segment(const LPoint3& from, const LPoint3& to) {
    glVertex3f(from.x, from.y, from.z);
    glVertex3f(to.x, to.y, to.z);
}

}  // namespace

/// Of what is drawn at vertices, in the surface's units.
float MLDisplayCache::MarkLength() {
    LPoint3 min, max;
    GetBBox(min, max);
    return 0.01f * (max - min).Len();
}

void MLDisplayCache::DrawNormals(const MDrawRequest& request, M3dView& view) {
    Draw draw;
    view.beginGL();
    if (Begin(request, view, draw)) {
        const KeptState kept;
        const float length = MarkLength();
        glDisable(GL_LIGHTING);
        glColor3f(0.2f, 0.35f, 0.9f);
        glBegin(GL_LINES);
        for (int v = 0; v < nverts_; ++v)
            Segment(GetVertex(v), GetVertex(v) + GetVNormal(v) * length);
        glEnd();
    }
    view.endGL();
}

void MLDisplayCache::DrawTangents(const MDrawRequest& request, M3dView& view) {
    Draw draw;
    view.beginGL();
    LMeshBases* bases = owner_ ? owner_->GetDeltaBases() : nullptr;
    if (bases && Begin(request, view, draw)) {
        const KeptState kept;
        const BasesDirection heading(bases, LMeshBases::kTangentToObject);
        const float length = MarkLength();
        glDisable(GL_LIGHTING);
        glBegin(GL_LINES);
        for (int v = 0; v < nverts_; ++v) {
            LPoint3 along(length, 0, 0), across(0, length, 0);
            bases->TransformAt(level_, v, along);
            bases->TransformAt(level_, v, across);
            glColor3f(0.9f, 0.2f, 0.2f);
            Segment(GetVertex(v), GetVertex(v) + along);
            glColor3f(0.2f, 0.7f, 0.2f);
            Segment(GetVertex(v), GetVertex(v) + across);
        }
        glEnd();
    }
    view.endGL();
}

void MLDisplayCache::DrawVectors(const MDrawRequest& request, M3dView& view) {
    Draw draw;
    view.beginGL();
    if (Begin(request, view, draw)) {
        const KeptState kept;
        const LPoint3* base = object_->GetAllVertsPtr();
        glDisable(GL_LIGHTING);
        glColor3f(0.9f, 0.6f, 0.1f);
        glBegin(GL_LINES);
        for (int v = 0; v < nverts_; ++v) Segment(base[v], GetVertex(v));
        glEnd();
    }
    view.endGL();
}

void MLDisplayCache::DrawSkin(const MDrawRequest& request, M3dView& view) {
    Draw draw;
    view.beginGL();
    if (Begin(request, view, draw)) {
        const KeptState kept;
        const LPoint3* base = object_->GetAllVertsPtr();
        const bool solid = settings_.underSkinSolid;
        glDisable(GL_LIGHTING);
        glColor3f(0.55f, 0.40f, 0.36f);
        glBegin(solid ? GL_TRIANGLES : GL_LINES);
        for (const LFace& face : topology_->Faces())
            for (int e = 0; e < 3; ++e) {
                const LPoint3& p = base[face.v[e]];
                if (solid)
                    glVertex3f(p.x, p.y, p.z);
                else if (face.IsEdgeVisible(e))
                    Segment(p, base[face.v[(e + 1) % 3]]);
            }
        glEnd();
    }
    view.endGL();
}

}  // namespace VantrelSDK
