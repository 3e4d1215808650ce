#include "core/paint/LTexture.h"

#include <algorithm>
#include <cstring>

#include "core/io/SystemMemory.h"

namespace VantrelSDK {

namespace {

/// The system promises more than it has, so it is asked first.
bool Allocate(ZeroedArray<uint8_t>& bytes, size_t count) {
    return AvailableMemory() > static_cast<long long>(count) && bytes.Reset(count);
}

uint8_t Byte(float channel) {
    // What is no number becomes 0.
    return channel > 0 ? static_cast<uint8_t>(255 * std::min(channel, 1.0f)) : uint8_t{0};
}

}  // namespace

bool LTexture::fillBuffer(const uint8_t* rgba, int width, int height) {
    w = h = 0;
    buffer.Reset(0);
    eraser.Reset(0);
    stencil.Reset(0);
    FlushUndo();
    if (!rgba || width < 1 || height < 1) return false;
    const size_t count = size_t{4} * static_cast<size_t>(width) * static_cast<size_t>(height);
    const auto fail = [this](const char* text) {
        buffer.Reset(0);
        eraser.Reset(0);
        err(text);
        return false;
    };
    if (!Allocate(buffer, count)) return fail("MLTexture::fillBuffer is running out of memory");
    if (!Allocate(eraser, count)) return fail("MLTexture::fillBuffer is running out of memory (2)");
    if (!Allocate(stencil, count))
        return fail("MLTexture::fillBuffer is running out of memory (2a)");
    std::memcpy(buffer.data(), rgba, count);
    std::memcpy(eraser.data(), rgba, count);
    w = width;
    h = height;
    painted = false;
    dirty = stencilDirty = true;
    return true;
}

void LTexture::Touched() {
    painted = dirty = true;
}

void LTexture::Fill(const LColor& color) {
    if (!HasImage()) return;
    const uint8_t rgb[3] = {Byte(color.r), Byte(color.g), Byte(color.b)};
    for (size_t i = 0; i < NumBytes(); i += 4) std::copy_n(rgb, 3, &buffer[i]);
    Touched();
}

void LTexture::Clear() {
    if (!HasImage()) return;
    std::memcpy(buffer.data(), eraser.data(), NumBytes());
    Touched();
}

void LTexture::Invert() {
    if (!HasImage()) return;
    for (size_t i = 0; i < NumBytes(); i += 4)
        for (size_t c = i; c < i + 3; ++c) buffer[c] = static_cast<uint8_t>(255 - buffer[c]);
    Touched();
}

void LTexture::ClearStencil() {
    if (!HasImage()) return;
    std::memset(stencil.data(), 0, NumBytes());
    stencilDirty = true;
}

void LTexture::InvertStencil() {
    if (!HasImage()) return;
    for (size_t i = 0; i < NumBytes(); i += 4) {
        std::copy_n(kStencilColor, 3, &stencil[i]);
        stencil[i + 3] = static_cast<uint8_t>(255 - stencil[i + 3]);
    }
    stencilDirty = true;
}

void LTexture::CacheUndo() {
    if (!HasImage()) return;
    if (undos.size() == kUndoDepth) undos.pop_front();
    Bytes& kept = undos.emplace_back();
    if (Allocate(kept, NumBytes())) std::memcpy(kept.data(), buffer.data(), NumBytes());
}

bool LTexture::Undo() {
    if (undos.empty()) return false;
    const Bytes kept = std::move(undos.back());
    undos.pop_back();
    if (kept.empty()) return false;
    std::memcpy(buffer.data(), kept.data(), NumBytes());
    Touched();
    return true;
}

}  // namespace VantrelSDK
