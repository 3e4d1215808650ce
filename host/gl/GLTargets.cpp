#include "host/gl/GLTargets.h"

#include <GL/glu.h>

#include <initializer_list>

#include "host/gl/GLFunctions.h"

namespace VantrelSDK {

namespace {

void Load(GLenum mode, const MMatrix& matrix) {
    glMatrixMode(mode);
    glLoadMatrixd(&matrix.matrix[0][0]);
}

MMatrix Get(GLenum which) {
    MMatrix matrix;
    glGetDoublev(which, &matrix.matrix[0][0]);
    return matrix;
}

/// What GLU makes of the identity.
template <class Make>
MMatrix Made(const Make& make) {
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    make();
    const MMatrix matrix = Get(GL_MODELVIEW_MATRIX);
    glPopMatrix();
    return matrix;
}

/// -1 to 1 becomes 0 to 1.
MMatrix Bias() {
    MMatrix bias;
    for (unsigned i = 0; i < 3; ++i) bias[i][i] = bias[3][i] = 0.5;
    return bias;
}

}  // namespace

bool glslFBO::Init() {
    Destroy();
    if (!GLUse()) return false;
    glPushAttrib(GL_TEXTURE_BIT);
    GLint before = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &before);
    while (glGetError() != GL_NO_ERROR) {
    }
    glGenTextures(1, &texid);
    glBindTexture(GL_TEXTURE_2D, texid);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        glTexParameteri(GL_TEXTURE_2D, filter, GL_LINEAR);
    for (const GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T})
        glTexParameteri(GL_TEXTURE_2D, wrap, repeats_ ? GL_REPEAT : GL_CLAMP_TO_EDGE);
    glGenFramebuffersEXT(1, &fboid);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, fboid);
    if (colour_) {
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     nullptr);
        glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT, GL_TEXTURE_2D,
                                  texid, 0);
        glGenRenderbuffersEXT(1, &rboid);
        glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, rboid);
        glRenderbufferStorageEXT(GL_RENDERBUFFER_EXT, GL_DEPTH_COMPONENT, width, height);
        glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, GL_DEPTH_ATTACHMENT_EXT,
                                     GL_RENDERBUFFER_EXT, rboid);
    } else {
        glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT, width, height, 0, GL_DEPTH_COMPONENT,
                     GL_FLOAT, nullptr);
        glFramebufferTexture2DEXT(GL_FRAMEBUFFER_EXT, GL_DEPTH_ATTACHMENT_EXT, GL_TEXTURE_2D, texid,
                                  0);
        glDrawBuffer(GL_NONE);
        glReadBuffer(GL_NONE);
    }
    initOK = glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT) == GL_FRAMEBUFFER_COMPLETE_EXT &&
             glGetError() == GL_NO_ERROR;
    if (!initOK) checkFramebufferStatus();
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, static_cast<GLuint>(before));
    glPopAttrib();
    if (!initOK) Destroy();
    return initOK;
}

void glslFBO::Destroy() {
    // Without functions the context is gone, and all names with it.
    if (GLUse()) {
        if (texid) glDeleteTextures(1, &texid);
        if (fboid) glDeleteFramebuffersEXT(1, &fboid);
        if (rboid) glDeleteRenderbuffersEXT(1, &rboid);
    }
    texid = fboid = rboid = 0;
    initOK = false;
}

bool glslFBO::Begin() {
    if (!initOK || !GLUse()) return false;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &origFrame_);
    // What frame buffer draws where is its own: the attributes are kept on the one that was bound.
    glPushAttrib(GL_ALL_ATTRIB_BITS & ~GL_COLOR_BUFFER_BIT & ~GL_PIXEL_MODE_BIT);
    cameraProjectionMatrix = Get(GL_PROJECTION_MATRIX);
    cameraViewMatrix = Get(GL_MODELVIEW_MATRIX);
    glGetIntegerv(GL_VIEWPORT, origView);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, fboid);
    glViewport(0, 0, width, height);
    glDisable(GL_SCISSOR_TEST);
    glDisable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LESS);
    glDepthMask(GL_TRUE);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glShadeModel(GL_SMOOTH);
    glClearColor(0, 0, 0, 0);
    glClearDepth(1);
    return true;
}

void glslFBO::ResetCurrent() {
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, static_cast<GLuint>(origFrame_));
    glPopAttrib();
    glViewport(origView[0], origView[1], origView[2], origView[3]);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    Load(GL_PROJECTION, cameraProjectionMatrix);
    Load(GL_MODELVIEW, cameraViewMatrix);
}

bool glslFBO::ActivateTexture(int unit) const {
    if (!GLUse() || !texid) return false;
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    glBindTexture(GL_TEXTURE_2D, texid);
    return true;
}

bool glslShadowFBO::MakeCurrent() {
    if (!Begin()) return false;
    const double dist = (lightPos - objCenter).length();
    lightProjectionMatrix = Made([&] { gluPerspective(20, 1, 0.5 * dist, 1.3 * dist); });
    lightViewMatrix = Made([&] {
        gluLookAt(lightPos.x, lightPos.y, lightPos.z, objCenter.x, objCenter.y, objCenter.z, 0, 1,
                  0);
    });
    textureMatrix = cameraViewMatrix.inverse() * lightViewMatrix * lightProjectionMatrix * Bias();
    Load(GL_PROJECTION, lightProjectionMatrix);
    Load(GL_MODELVIEW, lightViewMatrix);
    glDisable(GL_CULL_FACE);
    glClear(GL_DEPTH_BUFFER_BIT);
    return true;
}

bool glslShadowFBO::ActivateTexture(int unit) const {
    if (!glslFBO::ActivateTexture(unit)) return false;
    Load(GL_TEXTURE, textureMatrix);
    glMatrixMode(GL_MODELVIEW);
    return true;
}

bool glslSSAOdepthFBO::MakeCurrent() {
    if (!Begin()) return false;
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    return true;
}

bool glslSSAO_FBO::MakeCurrent() {
    if (!Begin()) return false;
    glDisable(GL_CULL_FACE);
    glDisable(GL_DEPTH_TEST);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    for (const GLenum mode : {GL_PROJECTION, GL_MODELVIEW}) Load(mode, MMatrix());
    return true;
}

}  // namespace VantrelSDK
