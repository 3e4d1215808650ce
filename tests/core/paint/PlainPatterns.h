#pragma once

#include <utility>

#include "core/paint/LPatternCollection.h"
#include "core/sculpt/LNode.h"

/// Patterns without a host, for tests and benchmarks of what works with them.
namespace VantrelSDK {

/// A pattern of pixels in memory.
class PlainPattern : public LPattern {
  public:
    explicit PlainPattern(const LNode* node = nullptr) : node_(node) {}

    /// Four bytes a pixel, the first row at the bottom.
    void Take(int width, int height, std::vector<uint8_t> pixels) {
        width_ = width, height_ = height;
        pixels_ = std::move(pixels);
        refreshBuffers();
    }
    /// Of pixel(x, y), four bytes each.
    template <class Pixel>
    void Draw(int width, int height, const Pixel& pixel) {
        std::vector<uint8_t> pixels;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                for (const int value : pixel(x, y)) pixels.push_back(static_cast<uint8_t>(value));
        Take(width, height, std::move(pixels));
    }
    bool UpdateTex(float, const LColor*, const LFalloffCache*) override { return false; }

  protected:
    void fillBuffers(void*) override {}
    bool reloadBuffers() override { return refreshBuffers(); }
    bool refreshBuffers() override {
        if (pixels_.empty()) return false;
        FillFromPixels(node_ && node_->getUseColorAsAlpha());
        return true;
    }
    PatternPixels Pixels() const override { return {width_, height_, pixels_.data()}; }

  private:
    const LNode* node_;
    int width_ = 0, height_ = 0;
    std::vector<uint8_t> pixels_;
};

class PlainPatterns : public LPatternCollection {
  public:
    using LPatternCollection::LPatternCollection;

  protected:
    std::unique_ptr<LPattern> newPattern() override {
        return std::make_unique<PlainPattern>(owner());
    }
};

/// Gives the node a collection whose only pattern is drawn so, and active.
template <class Pixel>
PlainPattern& GivePattern(LNode& node, int width, int height, const Pixel& pixel) {
    node._lpatterns() = std::make_unique<PlainPatterns>(&node);
    auto& pattern = static_cast<PlainPattern&>(*node.lpatterns()->AddNewPattern());
    pattern.Draw(width, height, pixel);
    node.lpatterns()->SetAciveIndex(0);
    return pattern;
}

}  // namespace VantrelSDK
