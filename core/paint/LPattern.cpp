#include "core/paint/LPattern.h"

#include <cmath>
#include <utility>

namespace VantrelSDK {

namespace {

/// No two states of any patterns have the same.
unsigned NextRevision() {
    static std::atomic<unsigned> last = 0;
    return ++last;
}

/// What shows through a preview: squares of ten pixels.
int Checker(int x, int y) {
    return (x / 10 + y / 10) % 2 ? 110 : 50;
}

/// Visits a grid row by row, so that a row's last sample gives way to the next row's first.
template <class Visit>
void ForGrid(const PatternPixels& pixels, int side, const Visit& visit) {
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            visit(static_cast<size_t>(y * (side - 1) + x), pixels.At(x, y, side, side));
}

}  // namespace

void LPattern::SetName(const char* name) {
    name_ = name && *name ? name : "none";
}

void LPattern::SetFileName(const char* file) {
    file_ = file && *file ? file : "none";
}

bool LPattern::SetActive(bool active) {
    isactive_ = active && !weights_.empty() && !preview_.empty();
    return isactive_ == active;
}

void LPattern::SetProjMushWeights(std::vector<float> weights) {
    if (weights.size() != kNumProj) return;
    mushWeights_ = std::move(weights);
    revision_ = NextRevision();
}

void LPattern::SetProjMushColors(std::vector<LAColor> colors) {
    if (colors.size() != kNumProj) return;
    mushColors_ = std::move(colors);
    revision_ = NextRevision();
}

const float* LPattern::GetProjMushWeights() const {
    return mushWeights_.empty() ? nullptr : mushWeights_.data();
}

const LAColor* LPattern::GetProjMushColors() const {
    return mushColors_.empty() ? nullptr : mushColors_.data();
}

void LPattern::getPreviewPixel(int x, int y, uint8_t& r, uint8_t& g, uint8_t& b) const {
    r = g = b = 0;
    if (preview_.empty() || x < 0 || x >= kSide || y < 0 || y >= kSide) return;
    const uint8_t* pixel = &preview_[static_cast<size_t>(y * kSide + x) * 3];
    r = pixel[0], g = pixel[1], b = pixel[2];
}

void LPattern::freeBuffers() {
    preview_ = {};
    DropProjection();
    isactive_ = false;
}

void LPattern::DropProjection() {
    revision_ = NextRevision();
    ReleaseProjection();
    mushWeights_ = {};
    mushColors_ = {};
}

void LPattern::ReleaseProjection() {
    const std::lock_guard lock(projecting_);
    projected_ = false;
    projWeights_ = {};
    projColors_ = {};
}

LAColor LPattern::ColorOf(const PatternPixels::Sample& s) const {
    if (colorAsAlpha_) return {1, 1, 1, static_cast<float>(s.Grey()) / 255};
    return LAColor(static_cast<float>(s.r), static_cast<float>(s.g), static_cast<float>(s.b),
                   static_cast<float>(s.a)) /
           255;
}

void LPattern::FillFromPixels(bool colorAsAlpha) {
    const PatternPixels pixels = Pixels();
    colorAsAlpha_ = colorAsAlpha;
    DropProjection();
    FillPreview(pixels);
    weights_.assign(kSide * kSide, 0);
    colors_.assign(kSide * kSide, {});
    ForGrid(pixels, kSide, [&](size_t i, const PatternPixels::Sample& sample) {
        weights_[i] = sample.Weight();
        colors_[i] = ColorOf(sample);
    });
}

void LPattern::FillPreview(const PatternPixels& pixels) {
    preview_.resize(kSide * kSide * 3);
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            const PatternPixels::Sample s = pixels.At(x, y, kSide, kSide);
            const int grey = s.Grey(), under = Checker(x, y);
            // All but white shows the squares through, as far as it is dark.
            const int cover = !colorAsAlpha_ ? s.a : grey < 254 ? grey : 255;
            const int over[3] = {colorAsAlpha_ ? 255 : s.r, colorAsAlpha_ ? 255 : s.g,
                                 colorAsAlpha_ ? 255 : s.b};
            for (int c = 0; c < 3; ++c)
                preview_[static_cast<size_t>(y * kSide + x) * 3 + static_cast<size_t>(c)] =
                    static_cast<uint8_t>((over[c] * cover + under * (255 - cover)) / 255);
        }
}

void LPattern::Project() const {
    const std::lock_guard lock(projecting_);
    if (projected_) return;
    const PatternPixels pixels = Pixels();
    projWeights_.assign(kNumProj, 0);
    projColors_.assign(kNumProj, {});
    if (!pixels.IsEmpty())
        ForGrid(pixels, kProjSide, [&](size_t i, const PatternPixels::Sample& sample) {
            projWeights_[i] = sample.Weight();
            projColors_[i] = ColorOf(sample);
        });
    projected_.store(true, std::memory_order_release);
}

float LPattern::OnTile(float x) {
    if (x < 0) x += 1;
    // NaN too is no place.
    if (!(x >= 0 && x <= 1)) x = std::isfinite(x) ? x - std::floor(x) : 0;
    return x;
}

}  // namespace VantrelSDK
