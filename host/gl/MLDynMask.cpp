#include "host/gl/MLDynMask.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>

#include "host/gl/GLFunctions.h"
#include "host/gl/MLDisplayCache.h"
#include "host/gl/MLTextureFBO.h"
#include "host/gl/UnusedNames.h"

namespace VantrelSDK {

namespace {

constexpr float kRadians = 6.2831855f / 360;

MVector DirectionOf(const MaskSettings& settings) {
    const double a = settings.altitude * kRadians, b = settings.azimuth * kRadians;
    return {-std::sin(b) * std::sin(a), -std::cos(b), -std::sin(b) * std::cos(a)};
}

template <class Program>
glslGenericProgram* Facing(Program& program, const MaskSettings& settings) {
    if (!program.IsLoaded() && !program.LoadShaders()) return nullptr;
    program.SetDir(DirectionOf(settings));
    return &program;
}

}  // namespace

bool MLMaskFBO::Resize(int newWidth, int newHeight) {
    if (initOK && newWidth == width && newHeight == height) return true;
    width = newWidth;
    height = newHeight;
    return Init();
}

bool MLMaskFBO::MakeCurrent() {
    return Begin();
}

glslGenericProgram* NormalDotMask::Shader(const MDrawRequest&, M3dView&, MLDisplayCache&,
                                          const MaskSettings& settings) {
    return Facing(MLDisplayCache::shared().normalDotGLSL, settings);
}

glslGenericProgram* NormalDotMaskInverted::Shader(const MDrawRequest&, M3dView&, MLDisplayCache&,
                                                  const MaskSettings& settings) {
    return Facing(MLDisplayCache::shared().normalDotInvGLSL, settings);
}

glslGenericProgram* SSAOMask::Shader(const MDrawRequest& request, M3dView& view,
                                     MLDisplayCache& cache, const MaskSettings&) {
    MLDisplayCache::Shared& all = MLDisplayCache::shared();
    glslSaaoMaskShader& program = all.saaoMaskGLSL;
    if (!all.ssao.IsInitOK() || !all.ssaodepth.IsInitOK()) return nullptr;
    if (!program.IsLoaded() && !program.LoadShaders()) return nullptr;
    cache.RenderAndBindSSAO(request, view);
    all.ssao.ActivateTexture(0);
    program.SetView(0, view.portWidth(), view.portHeight());
    return &program;
}

bool MLDynMask::Follow(const MDrawRequest& request, M3dView& view, MLDisplayCache& cache,
                       const MaskSettings& settings) {
    MMatrix projection, modelView;
    view.projectionMatrix(projection);
    view.modelViewMatrix(modelView);
    const bool first = projection_ == MMatrix() || modelView_ == MMatrix();
    const bool moved = !(projection_ == projection && modelView_ == modelView);
    if (!(settings == settings_)) Dirty();
    settings_ = settings;
    projection_ = projection;
    modelView_ = modelView;
    putOff_ = false;
    if (moved && !first) {
        Dirty();
        // A picture is drawn once; in a window the next frame shows it.
        putOff_ = view.widget();
        if (putOff_) return false;
    }
    if (!rendered_) Render(request, view, cache, settings);
    return rendered_;
}

void MLDynMask::Render(const MDrawRequest& request, M3dView& view, MLDisplayCache& cache,
                       const MaskSettings& settings) {
    const int width = view.portWidth(), height = view.portHeight();
    glslGenericProgram* shader = Shader(request, view, cache, settings);
    MLMaskFBO& target = MLDisplayCache::shared().mask;
    if (!shader || !target.Resize(width, height) || !target.MakeCurrent()) return;
    glDisable(GL_CULL_FACE);
    glClearColor(getBgColor(), getBgColor(), getBgColor(), 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    const bool used = shader->UseProgram();
    if (used) cache.DrawPlain();
    shader->UnUseProgram();
    std::vector<unsigned char> pixels = ReadRed(width - 1, height - 1);
    target.ResetCurrent();
    if (!used) return;
    for (unsigned char& pixel : pixels) {
        const float value = std::min(static_cast<float>(pixel) * 0.003921569f, 1.f);
        pixel = std::min(value + (settings.ceiling - 0.5f), 1.f) > 0.5f;
    }
    ScreenMask picture = this->picture();
    picture.width = width;
    picture.height = height;
    picture.runs = RunsOf(pixels);
    SetPicture(std::move(picture));
    uploaded_ = false;
    rendered_ = true;
}

std::vector<unsigned char> MLDynMask::ReadRed(int width, int height) const {
    std::vector<unsigned char> pixels(static_cast<size_t>(width) * static_cast<size_t>(height));
    if (pixels.empty()) return pixels;
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RED, GL_UNSIGNED_BYTE, pixels.data());
    glPopClientAttrib();
    return pixels;
}

MLDynMask::~MLDynMask() {
    LetGoOfTexture(texid);
}

/// To the bound texture.
void MLDynMask::Upload() {
    const ScreenMask& mask = picture();
    std::vector<unsigned char> cover;
    cover.reserve(static_cast<size_t>(mask.NumPixels()));
    bool closed = false;
    for (const int run : mask.runs) {
        cover.insert(cover.end(), static_cast<size_t>(run), closed ? 255 : 0);
        closed = !closed;
    }
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
    for (const GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T})
        glTexParameteri(GL_TEXTURE_2D, wrap, GL_CLAMP_TO_EDGE);
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_ALPHA, mask.width - 1, mask.height - 1, 0, GL_ALPHA,
                 GL_UNSIGNED_BYTE, cover.data());
    glPopClientAttrib();
    uploaded_ = true;
}

void MLDynMask::Display() {
    if (picture().NumPixels() == 0) return;
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    for (const GLenum off : {GL_LIGHTING, GL_CULL_FACE, GL_DEPTH_TEST}) glDisable(off);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    if (!texid) glGenTextures(1, &texid);
    glBindTexture(GL_TEXTURE_2D, texid);
    if (!uploaded_) Upload();
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glColor3f(1, 0, 0);
    for (const GLenum mode : {GL_PROJECTION, GL_MODELVIEW, GL_TEXTURE}) {
        glMatrixMode(mode);
        glPushMatrix();
        glLoadIdentity();
    }
    DrawWhole();
    for (const GLenum mode : {GL_TEXTURE, GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(mode);
        glPopMatrix();
    }
    glPopAttrib();
}

void MLDynMask::Aim(const M3dView& view, const MMatrix& objToWorld) {
    const MMatrix toClip = ToClip(view, objToWorld);
    ScreenMask aimed = picture();
    for (unsigned row = 0; row < 4; ++row)
        for (unsigned column = 0; column < 4; ++column)
            aimed.toClip[row * 4 + column] = toClip(row, column);
    if (!(aimed.toClip == picture().toClip)) SetPicture(std::move(aimed));
}

std::vector<std::unique_ptr<MLDynMask>> MakeMasks() {
    std::vector<std::unique_ptr<MLDynMask>> masks;
    masks.push_back(std::make_unique<NormalDotMask>());
    masks.push_back(std::make_unique<NormalDotMaskInverted>());
    masks.push_back(std::make_unique<SSAOMask>());
    return masks;
}

}  // namespace VantrelSDK
