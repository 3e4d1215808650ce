#define GL_GLEXT_PROTOTYPES
#include "minihost/view/FrameBuffer.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <algorithm>

namespace minihost {

FrameBuffer::~FrameBuffer() {
    Free(drawn_);
    Free(resolved_);
}

bool FrameBuffer::Make(Target& target, int width, int height, int samples) {
    while (glGetError() != GL_NO_ERROR) {
    }
    glGenFramebuffers(1, &target.frame);
    glBindFramebuffer(GL_FRAMEBUFFER, target.frame);
    const auto attach = [&](unsigned& name, GLenum format, GLenum place) {
        glGenRenderbuffers(1, &name);
        glBindRenderbuffer(GL_RENDERBUFFER, name);
        glRenderbufferStorageMultisample(GL_RENDERBUFFER, samples, format, width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, place, GL_RENDERBUFFER, name);
    };
    attach(target.color, GL_RGBA8, GL_COLOR_ATTACHMENT0);
    attach(target.depth, GL_DEPTH24_STENCIL8, GL_DEPTH_STENCIL_ATTACHMENT);
    return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE &&
           glGetError() == GL_NO_ERROR;
}

void FrameBuffer::Free(Target& target) {
    if (!target.frame) return;
    glDeleteFramebuffers(1, &target.frame);
    glDeleteRenderbuffers(1, &target.color);
    glDeleteRenderbuffers(1, &target.depth);
    target = {};
}

std::string FrameBuffer::Resize(int width, int height, int samples) {
    GLint most = 0, mostSamples = 0, port[2] = {};
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &most);
    glGetIntegerv(GL_MAX_SAMPLES, &mostSamples);
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, port);
    const int mostWidth = std::min(most, port[0]), mostHeight = std::min(most, port[1]);
    if (width < 1 || height < 1 || width > mostWidth || height > mostHeight)
        return "a picture of " + std::to_string(width) + "x" + std::to_string(height) +
               " pixels can't be drawn; this machine draws 1x1 to " + std::to_string(mostWidth) +
               "x" + std::to_string(mostHeight);
    samples = std::clamp(samples, 0, mostSamples);
    if (drawn_.frame && width == width_ && height == height_ && samples == samples_) return {};
    Free(drawn_);
    Free(resolved_);
    width_ = width;
    height_ = height;
    samples_ = samples;
    if (Make(drawn_, width, height, samples) && (samples == 0 || Make(resolved_, width, height, 0)))
        return {};
    Free(drawn_);
    Free(resolved_);
    return "the driver has no memory for a picture of " + std::to_string(width) + "x" +
           std::to_string(height) + " pixels";
}

void FrameBuffer::Bind() const {
    glBindFramebuffer(GL_FRAMEBUFFER, drawn_.frame);
    glViewport(0, 0, width_, height_);
    glDisable(GL_SCISSOR_TEST);
}

unsigned FrameBuffer::Resolve() const {
    if (samples_ == 0) return drawn_.frame;
    glDisable(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, drawn_.frame);
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, resolved_.frame);
    glBlitFramebuffer(0, 0, width_, height_, 0, 0, width_, height_, GL_COLOR_BUFFER_BIT,
                      GL_NEAREST);
    return resolved_.frame;
}

void FrameBuffer::Show(int x, int y) const {
    glBindFramebuffer(GL_READ_FRAMEBUFFER, Resolve());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
    glBlitFramebuffer(0, 0, width_, height_, x, y, x + width_, y + height_, GL_COLOR_BUFFER_BIT,
                      GL_NEAREST);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
}

Picture FrameBuffer::Read() const {
    glBindFramebuffer(GL_FRAMEBUFFER, Resolve());
    Picture picture = ReadPixels(width_, height_);
    glBindFramebuffer(GL_FRAMEBUFFER, drawn_.frame);
    return picture;
}

Picture ReadPixels(int width, int height) {
    Picture picture{width, height, 3, {}};
    picture.pixels.resize(picture.RowBytes() * static_cast<size_t>(height));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, picture.pixels.data());
    // OpenGL begins at the bottom.
    const size_t row = picture.RowBytes();
    std::uint8_t* pixels = picture.pixels.data();
    for (int y = 0; y < height / 2; ++y)
        std::swap_ranges(pixels + static_cast<size_t>(y) * row,
                         pixels + static_cast<size_t>(y + 1) * row,
                         pixels + static_cast<size_t>(height - 1 - y) * row);
    return picture;
}

}  // namespace minihost
