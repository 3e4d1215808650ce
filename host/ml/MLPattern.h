#pragma once

#include <maya/MImage.h>

#include "core/paint/LPattern.h"
#include "host/gl/FloatTexture.h"

namespace VantrelSDK {

class MLNode;

/// A pattern of an image file of the host's, with what OpenGL shows of it.
class MLPattern : public LPattern {
  public:
    /// Without a picture. The node is borrowed.
    explicit MLPattern(MLNode* node) : kelmo_(node) {}
    /// Loads a picture, and takes its name when that went well.
    MLPattern(MLNode* node, const MString& file, const MString& name);

    /// Makes the grids of an image. False, which is told, for a file that is none: the pattern has
    /// no picture then.
    bool Load(const MString& file);

    /// The same for a pattern that has a place in a list: it takes the file, and where nobody has
    /// named it, its name.
    bool LoadFile(const MString& file);

    // The texture: the large grid's colours. It is made when it is first activated.

    /// From now on there is one, of this strength, colour and falloff from the middle out; see
    /// UpdateTex.
    void CreateTex(float strength, const LColor* color, const LFalloffCache* falloff);
    /// False without a texture or a picture. The alpha goes by the strength and the falloff, the
    /// colour by `color` unless that is white.
    bool UpdateTex(float strength, const LColor* color, const LFalloffCache* falloff) override;
    /// Binds it to a texture unit; with a current context.
    void ActivateTex(int unit);
    bool HasTex() const { return hasTex_; }
    void ReleaseTex();

    /// "lpattern_NAME.xpm"; "EMPTY.xpm" without a picture.
    MString GetSwatchImageName() const;
    /// Writes the preview of an active pattern, framed, into the user's folder of icons; of others
    /// nothing. False without a picture and, which is told, where it can't be written.
    bool WriteSwatch() const;

  protected:
    void fillBuffers(void* image) override;
    bool reloadBuffers() override;
    bool refreshBuffers() override;
    PatternPixels Pixels() const override;

  private:
    MLNode* kelmo_;
    MImage image_;
    FloatTexture texture_;
    bool hasFile_ = false, hasTex_ = false;
    /// The texture is still to be made, so.
    bool isDue_ = false;
    float strength_ = 1;
    LColor color_ = LColor::cWhite;
};

}  // namespace VantrelSDK
