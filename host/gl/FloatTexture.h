#pragma once

namespace VantrelSDK {

/// A texture made of floats, looked up without interpolation. May be let go of at any time, also
/// without a context: what it holds is freed by FreeUnusedNames.
class FloatTexture {
  public:
    FloatTexture() = default;
    ~FloatTexture() { Release(); }
    FloatTexture(FloatTexture&& other) noexcept;
    FloatTexture& operator=(FloatTexture&& other) noexcept;
    FloatTexture(const FloatTexture&) = delete;
    FloatTexture& operator=(const FloatTexture&) = delete;

    bool IsMade() const { return name_ != 0; }
    void Release();

    // With a current context.

    /// Takes `side` x `side` texels of 3 or 4 channels, the first row at the bottom. False, and
    /// nothing taken, where a texture can't have that size.
    bool Upload(int side, int channels, const float* texels);
    /// Binds it to a texture unit, whose texture matrix becomes identity; beyond its edges it
    /// repeats, or its edge does.
    void Activate(int unit, bool repeat) const;

  private:
    unsigned name_ = 0;
};

}  // namespace VantrelSDK
