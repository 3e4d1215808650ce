#include "host/gl/MLTexture.h"

#include <maya/MGlobal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

#include "core/sculpt/LNode.h"
#include "host/gl/GLFunctions.h"
#include "host/gl/UnusedNames.h"
#include "host/ml/MLPattern.h"

namespace VantrelSDK {

namespace {

void Upload(unsigned name, GLint format, int width, int height, const uint8_t* pixels) {
    glPushAttrib(GL_TEXTURE_BIT);
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glBindTexture(GL_TEXTURE_2D, name);
    glTexImage2D(GL_TEXTURE_2D, 0, format, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        glTexParameteri(GL_TEXTURE_2D, filter, GL_NEAREST);
    for (const GLenum wrap : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T})
        glTexParameteri(GL_TEXTURE_2D, wrap, GL_REPEAT);
    glPopClientAttrib();
    glPopAttrib();
}

uint8_t Byte(float channel) {
    return channel > 0 ? static_cast<uint8_t>(255 * std::min(channel, 1.0f)) : uint8_t{0};
}

bool Allowed(const std::string& file, int how, const char* what) {
    if (file.empty() || access(file.c_str(), how) == 0) return true;
    MGlobal::displayWarning(MString("Vantrel: can not ") + what + " texture " + file.c_str() +
                            ". Please, check your permissions.");
    return false;
}

}  // namespace

MLTexture::MLTexture(const MString& file, int uvChannel) : LTexture(uvChannel) {
    imgfile = file.asChar();
    MImage image;
    if (image.readFromFile(file)) Take(image);
}

MLTexture::MLTexture(const MObject& node, int uvChannel) : LTexture(uvChannel) {
    MImage image;
    if (image.readFromTextureNode(node)) Take(image);
}

MLTexture::MLTexture(const MFloatVectorArray& colors, int width, int height, int uvChannel)
    : LTexture(uvChannel) {
    const size_t count = colors.length();
    if (width < 1 || height < 1 ||
        count != static_cast<size_t>(width) * static_cast<size_t>(height))
        return;
    std::vector<uint8_t> rgba(4 * count, 255);
    for (size_t i = 0; i < count; ++i)
        for (unsigned c = 0; c < 3; ++c)
            rgba[4 * i + c] = Byte(colors[static_cast<unsigned>(i)][c]);
    fillBuffer(rgba.data(), width, height);
}

MLTexture::MLTexture(int channel, int width, int height, int uvChannel) : LTexture(uvChannel) {
    ch = channel;
    if (width < 1 || height < 1) return;
    const uint8_t shade = channel == 1 ? 185 : channel == 2 ? 255 : 0;
    std::vector<uint8_t> rgba(size_t{4} * static_cast<size_t>(width) * static_cast<size_t>(height));
    for (size_t i = 0; i < rgba.size(); ++i) rgba[i] = i % 4 == 3 ? uint8_t{0} : shade;
    fillBuffer(rgba.data(), width, height);
}

MLTexture::~MLTexture() {
    LetGoOfTexture(id);
    LetGoOfTexture(sid);
}

void MLTexture::err(const char* text) {
    MGlobal::displayError(text);
}

void MLTexture::Take(MImage& image) {
    unsigned width = 0, height = 0;
    if (!image.pixels() || !image.getSize(width, height))
        return err("MLTexture: MImage::pixels() is NULL.");
    if (image.depth() != 4) return err("MLTexture: RGBA image is expected.");
    fillBuffer(image.pixels(), static_cast<int>(width), static_cast<int>(height));
}

bool MLTexture::CheckWritePermissions() const {
    return Allowed(imgfile, W_OK, "write");
}

bool MLTexture::CheckReadPermissions() const {
    return Allowed(imgfile, R_OK, "read");
}

bool MLTexture::MakeNames() {
    if (refused_ || w < 1 || h < 1 || !GLUse()) return false;
    if (!FitsOnCard(w, h)) {
        char text[128];
        std::snprintf(text, sizeof text,
                      "MLTexture::UpdateGlMap GL_RGBA texture with size %ix%i is not supported by "
                      "GPU.",
                      w, h);
        err(text);
        refused_ = true;
        return false;
    }
    glGenTextures(1, &id);
    fbo2 = std::make_unique<MLTextureFBO>(w, h);
    fbo2->Init();
    dirty = true;
    return id != 0;
}

bool MLTexture::CreateGlMaps(const LNode* node, const PatternOverlay& over) {
    if (!id && !MakeNames()) return false;
    const bool stenciled = node && (node->getAffectTexStencil(true) ||
                                    (node->getAffectTexture(true) && node->getUseStencil()));
    if (dirty) UpdateGlMap();
    if (stenciled && (stencilDirty || !sid)) UpdateGlStencil();
    if (composed_ && stenciled == stenciled_ && over == over_) return true;
    stenciled_ = stenciled;
    over_ = over;
    composed_ = UpdateDisplayMap();
    return true;
}

void MLTexture::UpdateGlMap() {
    Upload(id, GL_RGB, w, h, buffer.data());
    dirty = composed_ = false;
}

void MLTexture::UpdateGlStencil() {
    if (!sid) glGenTextures(1, &sid);
    Upload(sid, GL_RGBA, w, h, stencil.data());
    stencilDirty = composed_ = false;
}

/// False where there is nothing to draw into; the image then shows itself.
bool MLTexture::UpdateDisplayMap() {
    if (!fbo2 || !fbo2->MakeCurrent()) return false;
    glClearColor(1, 1, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glColor4f(1, 1, 1, 1);
    DrawWhole(id);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    if (over_.pattern && over_.pattern->HasTex()) {
        over_.pattern->ActivateTex(0);
        glColor4f(1, 1, 1, over_.opacity);
        DrawWhole();
        glColor4f(1, 1, 1, 1);
    }
    if (stenciled_) DrawWhole(sid);
    fbo2->ResetCurrent();
    return true;
}

void MLTexture::ActivateDisplayMap(int unit) const {
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    glBindTexture(GL_TEXTURE_2D, composed_ ? fbo2->texture() : id);
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glActiveTexture(GL_TEXTURE0);
}

bool MLTexture::WriteImage(const uint8_t* bytes, const std::string& path, const std::string& format,
                           const char* failed) const {
    const auto fail = [](const MString& text) {
        MGlobal::displayError(text);
        return false;
    };
    if (!bytes) return fail("MLTexture: NULL pixels ");
    MImage image;
    if (!image.create(static_cast<unsigned>(w), static_cast<unsigned>(h), 4))
        return fail(MString(failed) + w + "x" + h);
    if (!image.pixels()) return fail("MLTexture::Save(..) NULL MImage pixels");
    std::memcpy(image.pixels(), bytes, size_t{4} * static_cast<size_t>(w) * static_cast<size_t>(h));
    return image.writeToFile(path.c_str(), format.c_str()) ||
           fail(MString("MLTexture: can not write file ") + path.c_str());
}

bool MLTexture::Save() {
    if (w < 1 || h < 1 || imgfile.empty()) return false;
    const size_t slash = imgfile.rfind('/'), point = imgfile.rfind('.');
    if (point == std::string::npos || point + 1 == imgfile.size() ||
        (slash != std::string::npos && point < slash)) {
        MGlobal::displayError(MString("MLTexture: incorrect name ") + imgfile.c_str());
        return false;
    }
    const std::string format = imgfile.substr(point + 1),
                      original = imgfile.substr(0, point) + "_orig." + format;
    const bool saved = WriteImage(buffer.data(), imgfile, format,
                                  "MLTexture::Save(..) can not create MImage with size ") &&
                       WriteImage(eraser.data(), original, format,
                                  "MLTexture::Save(..) can not crate MImage with size ");
    if (saved) painted = false;
    return saved;
}

}  // namespace VantrelSDK
