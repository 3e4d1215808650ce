#pragma once

#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MString.h>

namespace VantrelSDK {

/// One of the channels of a host's shader that a texture may feed, looked at from shading groups.
/// What is missing is told.
class ShaderChannel {
  public:
    static constexpr int kFirst = 1, kLast = 4;

    /// 1 colour, 2 specular colour, 3 transparency, 4 ambient colour; null for another number.
    static const ShaderChannel* Find(int channel);

    /// The shader of the group has the channel.
    bool Has(const MObject& group) const;
    /// The file texture that feeds it; false where none does.
    bool GetTexture(const MObject& group, MObject& texture) const;
    /// Its image file, and the UV set that a chooser gives it, empty for the first one. False where
    /// no file texture feeds the channel, or it names no file.
    bool GetTextureFileAndUVSet(const MObject& group, MString& file, MString& uvSet) const;
    /// Gives a channel that nothing feeds a file texture with a new image, plain grey, in the
    /// user's workspace folder. False where something feeds it, and where the image can't be
    /// written; nothing is made then.
    bool CreateTexture(const MObject& group, MObject& texture, unsigned width,
                       unsigned height) const;

    struct Row;

  private:
    friend struct Row;
    explicit ShaderChannel(const Row& row) : row_(row) {}
    MPlug PlugOf(const MObject& group, const char* caller) const;

    const Row& row_;
};

/// The image of a file texture does not lie once, upright, over the unit square of the UVs.
bool IsTextureXformed(const MObject& texture);
/// The name of the UV set that a chooser gives a texture; false, and nothing written, without one.
bool GetUVSetFromChooser(const MObject& texture, MString& uvSet);

}  // namespace VantrelSDK
