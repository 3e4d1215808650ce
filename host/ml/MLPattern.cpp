#include "host/ml/MLPattern.h"

#include <maya/MGlobal.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string>

#include "core/sculpt/LFalloffCache.h"
#include "host/ml/MLNode.h"

namespace VantrelSDK {

MLPattern::MLPattern(MLNode* node, const MString& file, const MString& name) : kelmo_(node) {
    if (!Load(file)) return;
    SetName(name.asChar());
    SetFileName(file.asChar());
    hasFile_ = true;
}

bool MLPattern::Load(const MString& file) {
    MImage image;
    unsigned width = 0, height = 0;
    const bool read = image.readFromFile(file) == MS::kSuccess;
    if (!read) MGlobal::displayError("Kelmo: can read pattern (" + file + ")");
    if (!read || image.getSize(width, height) != MS::kSuccess || image.depth() <= 3) {
        fillBuffers(nullptr);
        MGlobal::displayError("MLPattern::Load can not load image file (" + file + ")\n");
        return false;
    }
    image_ = std::move(image);
    fillBuffers(&image_);
    return true;
}

bool MLPattern::LoadFile(const MString& file) {
    if (!Load(file)) return false;
    hasFile_ = true;
    SetFileName(file.asChar());
    const std::string stem = std::filesystem::path(file.asChar()).stem().string();
    if (!*GetName()) SetName(stem.c_str());
    return true;
}

void MLPattern::fillBuffers(void* image) {
    if (!image) {
        ReleaseTex();
        return freeBuffers();
    }
    FillFromPixels(kelmo_ && kelmo_->getUseColorAsAlpha());
    // What is shown is of other pixels.
    if (HasTex()) CreateTex(strength_, &color_, nullptr);
}

bool MLPattern::reloadBuffers() {
    return hasFile_ && Load(GetFileName());
}

bool MLPattern::refreshBuffers() {
    if (Pixels().IsEmpty()) return false;
    fillBuffers(&image_);
    return true;
}

PatternPixels MLPattern::Pixels() const {
    PatternPixels pixels;
    unsigned width = 0, height = 0;
    if (image_.getSize(width, height) != MS::kSuccess) return pixels;
    pixels.width = static_cast<int>(width);
    pixels.height = static_cast<int>(height);
    if (image_.pixelType() == MImage::kFloat)
        pixels.floats = image_.floatPixels();
    else
        pixels.bytes = image_.pixels();
    return pixels;
}

void MLPattern::CreateTex(float strength, const LColor* color, const LFalloffCache* falloff) {
    hasTex_ = isDue_ = true;
    strength_ = strength;
    color_ = color ? *color : LColor::cWhite;
    // A curve may be another by the time that it is looked at.
    if (falloff) UpdateTex(strength, color, falloff);
}

bool MLPattern::UpdateTex(float strength, const LColor* color, const LFalloffCache* falloff) {
    if (!HasTex() || !GetPreviewPixels()) return false;
    constexpr int kMiddle = kProjSide / 2;
    std::vector<LAColor> texels(GetProjColors(), GetProjColors() + kNumProj);
    const bool tinted = color && std::min({color->r, color->g, color->b}) < 0.999f;
    for (int i = 0; i < kNumProj; ++i) {
        LAColor& p = texels[static_cast<size_t>(i)];
        if (falloff) {
            const auto x = static_cast<float>(i % kProjStride - kMiddle),
                       y = static_cast<float>(i / kProjStride - kMiddle);
            constexpr auto kReach = static_cast<float>(kMiddle);
            p.a *= falloff->Value(std::min(std::sqrt(x * x + y * y), kReach), kReach);
        }
        if (strength != 1) p.a *= strength;
        if (tinted) p = {p.r * color->r, p.g * color->g, p.b * color->b, p.a};
    }
    isDue_ = false;
    return texture_.Upload(kProjStride, 4, &texels[0].r);
}

void MLPattern::ActivateTex(int unit) {
    if (isDue_) UpdateTex(strength_, &color_, nullptr);
    texture_.Activate(unit, false);
}

void MLPattern::ReleaseTex() {
    texture_.Release();
    hasTex_ = isDue_ = false;
}

MString MLPattern::GetSwatchImageName() const {
    if (!GetPreviewPixels()) return "EMPTY.xpm";
    return MString("lpattern_") + GetName() + ".xpm";
}

bool MLPattern::WriteSwatch() const {
    if (!GetPreviewPixels()) return false;
    if (!IsActive()) return true;
    constexpr int kFrame = 2;
    const auto framed = [](int i) { return i < kFrame || i >= kSide - kFrame; };
    std::vector<unsigned char> pixels;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            uint8_t r, g, b;
            getPreviewPixel(x, y, r, g, b);
            if (framed(x) || framed(y)) r = b = 0, g = 255;
            pixels.insert(pixels.end(), {r, g, b, 255});
        }
    MImage image;
    image.setPixels(pixels.data(), kSide, kSide);
    MString folder;
    MGlobal::executeCommand("internalVar -userBitmapsDir", folder);
    const MString path = folder + GetSwatchImageName();
    if (image.writeToFile(path, "xpm") == MS::kSuccess) return true;
    MGlobal::displayError("MLPattern: can not write pattern preview " + path);
    return false;
}

}  // namespace VantrelSDK
