#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>

#include "core/math/LColor.h"
#include "core/mesh/ZeroedArray.h"

namespace VantrelSDK {

/// An image of one material, and a stencil over it: bytes, RGBA, rows from the bottom, so that V
/// points up. Of the stencil the alpha counts, its colour is what shows it. Whoever derives from it
/// knows where images come from and what shows them.
class LTexture {
  public:
    static constexpr size_t kUndoDepth = 5;
    /// Of a stencil's texels.
    static constexpr uint8_t kStencilColor[3] = {255, 0, 0};

    /// An image that has no pixels yet. `uvChannel`: the UV set that it lies in.
    explicit LTexture(int uvChannel) : uvch(uvChannel) {}
    virtual ~LTexture() = default;
    LTexture(const LTexture&) = delete;
    LTexture& operator=(const LTexture&) = delete;

    /// Whether the image's file could be written, or read. True without a file.
    virtual bool CheckWritePermissions() const { return true; }
    virtual bool CheckReadPermissions() const { return true; }

    int GetWidth() const { return w; }
    int GetHeight() const { return h; }
    int GetUVChannel() const { return uvch; }
    /// The channel of its shader, 0 where it is not known.
    int GetChannel() const { return ch; }
    void SetChannel(int channel) { ch = channel; }
    const std::string& GetFileName() const { return imgfile; }
    void SetFileName(const std::string& path) { imgfile = path; }
    /// GetWidth() * GetHeight() * 4 bytes each; null without an image. Of the last what erasing
    /// brings back: the image as it was loaded.
    const uint8_t* GetPixels() const { return buffer.data(); }
    const uint8_t* GetStencil() const { return stencil.data(); }
    const uint8_t* GetEraser() const { return eraser.data(); }
    /// The image has been touched since it was loaded, or saved.
    bool IsPainted() const { return painted; }

    /// All of the image, or of the stencil; alpha stays in the former. Nothing without an image.
    virtual void Fill(const LColor& color);
    virtual void Clear();
    virtual void Invert();
    virtual void ClearStencil();
    virtual void InvertStencil();

    /// Keeps the image as it is. Of six the oldest goes; one that there is no memory for is kept as
    /// nothing, which an undo takes without a change.
    virtual void CacheUndo();
    /// Takes back to the newest that is kept; false, and no change, without any.
    virtual bool Undo();
    void FlushUndo() { undos.clear(); }
    size_t GetNumUndos() const { return undos.size(); }

  protected:
    using Bytes = ZeroedArray<uint8_t>;

    /// Takes an image. False without pixels and without memory, which err tells; the texture has no
    /// image then.
    bool fillBuffer(const uint8_t* rgba, int width, int height);
    /// What went wrong, told to the person.
    virtual void err(const char*) {}

    std::string imgfile;
    int ch = 0, uvch = 0, w = 0, h = 0;
    Bytes buffer, stencil, eraser;
    bool painted = false;
    /// What is shown is older than the image, or than the stencil.
    bool dirty = false, stencilDirty = false;

  private:
    bool HasImage() const { return w > 0 && h > 0; }
    size_t NumBytes() const { return size_t{4} * static_cast<size_t>(w) * static_cast<size_t>(h); }
    void Touched();

    std::deque<Bytes> undos;
};

}  // namespace VantrelSDK
