#include "host/gl/MLTextureFBO.h"

#include <initializer_list>
#include <utility>

#include "host/gl/GLFunctions.h"
#include "host/gl/UnusedNames.h"

namespace VantrelSDK {

MLTextureFBO::~MLTextureFBO() {
    LetGoOfTexture(texid);
    LetGoOfFrame(fboid, rboid);
}

bool MLTextureFBO::MakeCurrent() {
    if (!Begin()) return false;
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_CULL_FACE);
    glDepthMask(GL_FALSE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glActiveTexture(GL_TEXTURE0);
    glEnable(GL_TEXTURE_2D);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    for (const GLenum mode : {GL_TEXTURE, GL_PROJECTION, GL_MODELVIEW}) {
        glMatrixMode(mode);
        glLoadIdentity();
    }
    return true;
}

bool MLTextureFBO::ReadTexture(uint8_t* bytes) const {
    if (!GLUse() || !texid) return false;
    glPushAttrib(GL_TEXTURE_BIT);
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glBindTexture(GL_TEXTURE_2D, texid);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, bytes);
    glPopClientAttrib();
    glPopAttrib();
    return true;
}

void DrawWhole(unsigned texture) {
    glBindTexture(GL_TEXTURE_2D, texture);
    DrawWhole();
}

void DrawWhole() {
    glBegin(GL_QUADS);
    for (const auto& [x, y] : {std::pair{0.f, 0.f}, {1.f, 0.f}, {1.f, 1.f}, {0.f, 1.f}}) {
        glTexCoord2f(x, y);
        glVertex2f(2 * x - 1, 2 * y - 1);
    }
    glEnd();
}

bool FitsOnCard(int width, int height) {
    while (glGetError() != GL_NO_ERROR) {
    }
    glTexImage2D(GL_PROXY_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 nullptr);
    GLint got = 0;
    glGetTexLevelParameteriv(GL_PROXY_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &got);
    return glGetError() == GL_NO_ERROR && got != 0;
}

}  // namespace VantrelSDK
