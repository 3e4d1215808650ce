#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "core/math/LColor.h"
#include "core/paint/PatternPixels.h"

namespace VantrelSDK {

class LFalloffCache;

/// A picture that shapes and colours a brush, or lies over a surface. It is reduced once, to grids
/// of two sizes, so that a stroke never looks at its pixels: one for under a brush, and one for a
/// whole surface, of 44 MB, that is made when it is first asked for. Look-ups do not interpolate.
///
/// In both grids a row begins where the last sample of the row before lies, so that they are as
/// wide as they have samples, less one.
class LPattern {
  public:
    static constexpr int kSide = 60, kStride = kSide - 1;
    static constexpr int kProjSide = 1480, kProjStride = kProjSide - 1;
    static constexpr int kNumProj = kProjSide * kProjSide;

    LPattern() = default;
    LPattern(const LPattern&) = delete;
    LPattern& operator=(const LPattern&) = delete;
    virtual ~LPattern() = default;

    /// "none" when set empty.
    virtual void SetName(const char* name);
    virtual const char* GetName() const { return name_.c_str(); }
    /// The picture's whole path; "none" when set empty.
    virtual void SetFileName(const char* file);
    virtual const char* GetFileName() const { return file_.c_str(); }
    /// Reads the picture anew; false when it can't be.
    virtual bool Reload() { return reloadBuffers(); }
    /// Makes the grids anew, after a change of colour-as-alpha; false without a picture.
    virtual bool Refresh() { return refreshBuffers(); }
    virtual bool IsActive() const { return isactive_; }
    /// False, and not active, for a pattern without a picture. Others stay as they are.
    virtual bool SetActive(bool active);
    /// Makes what OpenGL shows: with a strength, a colour and a falloff from the middle out, which
    /// may be null.
    virtual bool UpdateTex(float strength, const LColor* color, const LFalloffCache* falloff) = 0;

    // Under a brush: u and v in brush radii, -1 to 1 across it.

    /// 0 outside.
    float GetWeight(float u, float v) const {
        const int i = BrushIndex(u, v);
        return i < 0 ? 0 : weights_[static_cast<size_t>(i)];
    }
    /// White outside.
    LAColor GetColor(float u, float v) const {
        const int i = BrushIndex(u, v);
        return i < 0 ? LAColor::White : colors_[static_cast<size_t>(i)];
    }

    // Over a surface: u and v from 0 to 1, beyond which the pattern repeats. The first look-up
    // makes the grid, on whichever thread.

    float GetProjWeight(float u, float v) const {
        return GetProjWeights()[static_cast<size_t>(ProjIndex(u, v))];
    }
    LAColor GetProjColor(float u, float v) const { return GetProjColor(ProjIndex(u, v)); }
    /// Entry i of kNumProj.
    LAColor GetProjColor(int i) const { return GetProjColors()[static_cast<size_t>(i)]; }
    /// kNumProj entries: those that were set, else the picture's.
    const float* GetProjWeights() const {
        MakeProjection();
        return mushWeights_.empty() ? projWeights_.data() : mushWeights_.data();
    }
    const LAColor* GetProjColors() const {
        MakeProjection();
        return mushColors_.empty() ? projColors_.data() : mushColors_.data();
    }
    /// Take the place of the picture's until it is read anew; kNumProj entries, else nothing
    /// happens.
    void SetProjMushWeights(std::vector<float> weights);
    void SetProjMushColors(std::vector<LAColor> colors);
    /// Null unless they were set.
    const float* GetProjMushWeights() const;
    const LAColor* GetProjMushColors() const;
    /// Makes that grid, so that no stroke waits for it.
    void MakeProjection() const {
        if (!projected_.load(std::memory_order_acquire)) Project();
    }
    /// Gives its memory back until it is looked at again. Not while others look.
    void ReleaseProjection();
    bool HasProjection() const { return projected_; }

    /// A small picture for lists: kSide x kSide, three bytes each, the first row at the bottom;
    /// null without one.
    const uint8_t* GetPreviewPixels() const { return preview_.empty() ? nullptr : preview_.data(); }
    void getPreviewPixel(int x, int y, uint8_t& r, uint8_t& g, uint8_t& b) const;

    /// Another with each change of what look-ups find, and another than that of any other pattern.
    unsigned revision() const { return revision_; }
    /// Gives the picture up: not active any more.
    void freeBuffers();

  protected:
    /// Makes the grids of a picture, whose type the implementation knows; null frees them.
    virtual void fillBuffers(void* image) = 0;
    virtual bool reloadBuffers() = 0;
    virtual bool refreshBuffers() = 0;
    /// The picture of which the grids were made last.
    virtual PatternPixels Pixels() const = 0;

    /// Makes the small grids of Pixels(), and forgets the large one. With `colorAsAlpha` the
    /// brightness is the alpha, and the colour white.
    void FillFromPixels(bool colorAsAlpha);

    std::string name_, file_;

  private:
    LAColor ColorOf(const PatternPixels::Sample& sample) const;
    void FillPreview(const PatternPixels& pixels);
    void Project() const;
    void DropProjection();

    int BrushIndex(float u, float v) const {
        if (!(u >= -1 && u <= 1 && v >= -1 && v <= 1) || weights_.empty()) return -1;
        return static_cast<int>(kStride * 0.5f * (1 + v)) * kStride +
               static_cast<int>(kStride * 0.5f * (1 + u));
    }
    /// A picture is laid over a surface turned round: u runs from its right edge to its left.
    static int ProjIndex(float u, float v) {
        u = OnTile(1 - u);
        v = OnTile(v);
        return static_cast<int>(kProjStride * v) * kProjStride + static_cast<int>(kProjStride * u);
    }
    static float OnTile(float x);

    std::vector<uint8_t> preview_;
    std::vector<float> weights_;
    std::vector<LAColor> colors_;
    mutable std::mutex projecting_;
    mutable std::atomic<bool> projected_ = false;
    mutable std::vector<float> projWeights_;
    mutable std::vector<LAColor> projColors_;
    std::vector<float> mushWeights_;
    std::vector<LAColor> mushColors_;
    unsigned revision_ = 0;
    bool colorAsAlpha_ = false, isactive_ = false;
};

}  // namespace VantrelSDK
