#include "host/gl/MLScreenCache.h"

#include <maya/MGlobal.h>

#include <utility>

#include "host/gl/GLFunctions.h"
#include "host/gl/UnusedNames.h"

namespace VantrelSDK {

namespace {

void Copy(GLuint from, GLuint to, const ScreenRect& rect) {
    glBindFramebufferEXT(GL_READ_FRAMEBUFFER_EXT, from);
    glBindFramebufferEXT(GL_DRAW_FRAMEBUFFER_EXT, to);
    // With the stencil, which lies with the depth, drivers copy memory as it is.
    glBlitFramebufferEXT(rect.x0, rect.y0, rect.x1, rect.y1, rect.x0, rect.y0, rect.x1, rect.y1,
                         GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT,
                         GL_NEAREST);
}

/// What is drawn into, bound again when it goes; pixels are copied as they are in between.
class BoundFrame {
  public:
    BoundFrame() {
        GLint bound = 0;
        glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &bound);
        frame_ = static_cast<GLuint>(bound);
        glPushAttrib(GL_ENABLE_BIT);
        glDisable(GL_SCISSOR_TEST);
        while (glGetError() != GL_NO_ERROR) {
        }
    }
    ~BoundFrame() {
        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, frame_);
        glPopAttrib();
    }
    BoundFrame(const BoundFrame&) = delete;
    BoundFrame& operator=(const BoundFrame&) = delete;

    GLuint name() const { return frame_; }

  private:
    GLuint frame_;
};

}  // namespace

MLScreenCache::~MLScreenCache() {
    LetGo();
}

void MLScreenCache::LetGo() {
    LetGoOfFrame(frame_, color_);
    LetGoOfRenderBuffer(depth_);
}

MLScreenCache& MLScreenCache::operator=(MLScreenCache&& other) noexcept {
    camPath = other.camPath;
    toClip_ = other.toClip_;
    step_ = other.step_;
    valid_ = std::exchange(other.valid_, false);
    std::swap(width_, other.width_);
    std::swap(height_, other.height_);
    std::swap(frame_, other.frame_);
    std::swap(color_, other.color_);
    std::swap(depth_, other.depth_);
    return *this;
}

bool MLScreenCache::IsThisCam(const M3dView& view) const {
    MDagPath camera;
    return view.getCamera(camera) == MS::kSuccess && camera == camPath;
}

bool MLScreenCache::Fits(const M3dView& view) const {
    return valid_ && width_ == view.portWidth() && height_ == view.portHeight();
}

bool MLScreenCache::Shows(const M3dView& view, const MMatrix& toClip) const {
    return Fits(view) && toClip == toClip_;
}

bool MLScreenCache::Resize(int width, int height) {
    if (frame_ && width == width_ && height == height_) return true;
    LetGo();
    FreeUnusedNames();
    width_ = width;
    height_ = height;
    glGenFramebuffersEXT(1, &frame_);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, frame_);
    const auto attach = [&](unsigned& name, GLenum format, std::initializer_list<GLenum> places) {
        glGenRenderbuffersEXT(1, &name);
        glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, name);
        glRenderbufferStorageEXT(GL_RENDERBUFFER_EXT, format, width, height);
        for (const GLenum place : places)
            glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, place, GL_RENDERBUFFER_EXT, name);
    };
    attach(color_, GL_RGBA8, {GL_COLOR_ATTACHMENT0_EXT});
    attach(depth_, GL_DEPTH24_STENCIL8_EXT, {GL_DEPTH_ATTACHMENT_EXT, GL_STENCIL_ATTACHMENT_EXT});
    return glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT) == GL_FRAMEBUFFER_COMPLETE_EXT;
}

void MLScreenCache::ReadCaches(const M3dView& view, const MMatrix& toClip, unsigned step) {
    const BoundFrame bound;
    toClip_ = toClip;
    step_ = step;
    valid_ = false;
    if (!glBlitFramebufferEXT || !Resize(view.portWidth(), view.portHeight())) return;
    Copy(bound.name(), frame_, {0, 0, width_, height_});
    valid_ = glGetError() == GL_NO_ERROR;
}

bool MLScreenCache::Compose(const M3dView& view, const ScreenRect& drawn, unsigned step) {
    if (!Fits(view)) {
        MGlobal::displayError("MLScreenCache: can not write buffers - size mismatch.");
        return false;
    }
    const BoundFrame bound;
    if (!drawn.IsEmpty()) Copy(bound.name(), frame_, drawn);
    Copy(frame_, bound.name(), {0, 0, width_, height_});
    step_ = step;
    return valid_ = glGetError() == GL_NO_ERROR;
}

}  // namespace VantrelSDK
