#include "host/gl/FloatTexture.h"

#include <utility>

#include "host/gl/GLFunctions.h"
#include "host/gl/UnusedNames.h"

namespace VantrelSDK {

FloatTexture::FloatTexture(FloatTexture&& other) noexcept : name_(std::exchange(other.name_, 0)) {}

FloatTexture& FloatTexture::operator=(FloatTexture&& other) noexcept {
    std::swap(name_, other.name_);
    return *this;
}

void FloatTexture::Release() {
    LetGoOfTexture(std::exchange(name_, 0));
}

bool FloatTexture::Upload(int side, int channels, const float* texels) {
    GLint most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &most);
    if (side > most) return false;
    if (!name_) glGenTextures(1, &name_);
    if (!name_) return false;
    glBindTexture(GL_TEXTURE_2D, name_);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    const GLenum format = channels == 4 ? GL_RGBA : GL_RGB;
    glTexImage2D(GL_TEXTURE_2D, 0, static_cast<GLint>(format), side, side, 0, format, GL_FLOAT,
                 texels);
    glBindTexture(GL_TEXTURE_2D, 0);
    return true;
}

void FloatTexture::Activate(int unit, bool repeat) const {
    if (GLUse()) glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    glBindTexture(GL_TEXTURE_2D, name_);
    const GLint wrap = repeat ? GL_REPEAT : GL_CLAMP_TO_EDGE;
    for (const auto& [which, value] : {std::pair{GL_TEXTURE_MIN_FILTER, GL_NEAREST},
                                       {GL_TEXTURE_MAG_FILTER, GL_NEAREST},
                                       {GL_TEXTURE_WRAP_S, wrap},
                                       {GL_TEXTURE_WRAP_T, wrap}})
        glTexParameteri(GL_TEXTURE_2D, static_cast<GLenum>(which), value);
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
}

}  // namespace VantrelSDK
