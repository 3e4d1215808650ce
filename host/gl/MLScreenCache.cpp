#include "host/gl/MLScreenCache.h"

#include <maya/MGlobal.h>

#include <algorithm>

#include "host/gl/GLFunctions.h"

namespace VantrelSDK {

namespace {

/// Copies pixels as they are, whatever was set before.
class PlainPixels {
  public:
    PlainPixels() {
        glPushAttrib(GL_ENABLE_BIT | GL_DEPTH_BUFFER_BIT | GL_COLOR_BUFFER_BIT | GL_CURRENT_BIT |
                     GL_TEXTURE_BIT);
        glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
        glPixelStorei(GL_PACK_ALIGNMENT, 4);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
        for (const GLenum state : {GL_LIGHTING, GL_BLEND, GL_LINE_SMOOTH, GL_SCISSOR_TEST,
                                   GL_ALPHA_TEST, GL_STENCIL_TEST, GL_DITHER, GL_FOG})
            glDisable(state);
        for (const GLenum unit : {GL_TEXTURE2, GL_TEXTURE1, GL_TEXTURE0}) {
            glActiveTexture(unit);
            glDisable(GL_TEXTURE_2D);
        }
        glUseProgram(0);
    }
    ~PlainPixels() {
        glPopClientAttrib();
        glPopAttrib();
    }
    PlainPixels(const PlainPixels&) = delete;
    PlainPixels& operator=(const PlainPixels&) = delete;
};

}  // namespace

bool MLScreenCache::IsThisCam(const M3dView& view) const {
    MDagPath camera;
    return view.getCamera(camera) == MS::kSuccess && camera == camPath;
}

bool MLScreenCache::Fits(const M3dView& view) const {
    return HasCache() && width_ == view.portWidth() && height_ == view.portHeight();
}

void MLScreenCache::Read(Pixels& to, const ScreenRect& rect) {
    const size_t count = static_cast<size_t>(rect.Width()) * static_cast<size_t>(rect.Height());
    to.color.resize(count);
    to.depth.resize(count);
    glReadPixels(rect.x0, rect.y0, rect.Width(), rect.Height(), GL_BGRA, GL_UNSIGNED_BYTE,
                 to.color.data());
    glReadPixels(rect.x0, rect.y0, rect.Width(), rect.Height(), GL_DEPTH_COMPONENT, GL_UNSIGNED_INT,
                 to.depth.data());
}

void MLScreenCache::Write(const Pixels& from, const ScreenRect& rect) {
    glWindowPos2i(rect.x0, rect.y0);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDisable(GL_DEPTH_TEST);
    glDrawPixels(rect.Width(), rect.Height(), GL_BGRA, GL_UNSIGNED_BYTE, from.color.data());
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_ALWAYS);
    glDepthMask(GL_TRUE);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    glDrawPixels(rect.Width(), rect.Height(), GL_DEPTH_COMPONENT, GL_UNSIGNED_INT,
                 from.depth.data());
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
}

void MLScreenCache::ReadCaches(const M3dView& view) {
    const PlainPixels plain;
    width_ = view.portWidth();
    height_ = view.portHeight();
    Read(cache_, {0, 0, width_, height_});
}

bool MLScreenCache::Compose(const M3dView& view, const ScreenRect& drawn) {
    if (!Fits(view)) {
        MGlobal::displayError("MLScreenCache: can not write buffers - size mismatch.");
        return false;
    }
    const PlainPixels plain;
    if (!drawn.IsEmpty()) {
        Read(buffer_, drawn);
        const auto row = static_cast<size_t>(drawn.Width());
        for (int y = 0; y < drawn.Height(); ++y) {
            const size_t from = static_cast<size_t>(y) * row;
            const size_t to = static_cast<size_t>(drawn.y0 + y) * static_cast<size_t>(width_) +
                              static_cast<size_t>(drawn.x0);
            std::copy_n(buffer_.color.data() + from, row, cache_.color.data() + to);
            std::copy_n(buffer_.depth.data() + from, row, cache_.depth.data() + to);
        }
    }
    Write(cache_, {0, 0, width_, height_});
    return true;
}

}  // namespace VantrelSDK
