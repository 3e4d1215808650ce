#pragma once

#include <maya/MFloatVectorArray.h>
#include <maya/MImage.h>
#include <maya/MObject.h>
#include <maya/MString.h>

#include <memory>

#include "core/paint/LTexture.h"
#include "host/gl/MLTextureFBO.h"

namespace VantrelSDK {

class LNode;
class MLPattern;

/// The pattern that lies over maps, in the state that it is in; null for none.
struct PatternOverlay {
    MLPattern* pattern = nullptr;
    unsigned revision = 0;
    float opacity = 0;

    bool operator==(const PatternOverlay&) const = default;
};

/// A map whose image comes from the host and which OpenGL shows: beside the image and its stencil
/// there is the display map, composed of both and of the pattern that lies over them. What could
/// not be had leaves it without an image, and is told.
class MLTexture : public LTexture {
  public:
    /// From a file; from the node of a file texture.
    explicit MLTexture(const MString& file, int uvChannel = 0);
    explicit MLTexture(const MObject& node, int uvChannel = 0);
    /// From so many colours, row by row from below.
    MLTexture(const MFloatVectorArray& colors, int width, int height, int uvChannel = 0);
    /// Blank, as a channel of a shader is when nobody has painted it: 1 grey, 2 white, others
    /// black.
    MLTexture(int channel, int width, int height, int uvChannel = 0);
    ~MLTexture() override;

    /// The file exists and may be written, or read; else that is told. True without a file.
    bool CheckWritePermissions() const override;
    bool CheckReadPermissions() const override;

    // With a current context.

    /// Makes what OpenGL has of the map, or brings it up to date; nothing where it is. False where
    /// it can't be had, which is told once.
    bool CreateGlMaps(const LNode* node, const PatternOverlay& over = {});
    /// The last CreateGlMaps went well.
    bool HasGlMaps() const { return id != 0; }
    /// Binds what CreateGlMaps made to a unit, and undoes its matrix.
    void ActivateDisplayMap(int unit) const;

    /// Makes the display map anew when it is next shown.
    void DropDisplayMap() { composed_ = false; }
    /// Writes the image to its file, and what was loaded beside it, "skin_orig.png" beside
    /// "skin.png". False without an image or a file, and for what can't be written, which is told.
    bool Save();

    /// Null before CreateGlMaps.
    const MLTextureFBO* displayMap() const { return fbo2.get(); }

  protected:
    void err(const char* text) override;

  private:
    void Take(MImage& image);
    bool MakeNames();
    void UpdateGlMap();
    void UpdateGlStencil();
    bool UpdateDisplayMap();
    bool WriteImage(const uint8_t* bytes, const std::string& path, const std::string& format,
                    const char* failed) const;

    unsigned id = 0, sid = 0;
    std::unique_ptr<MLTextureFBO> fbo2;
    /// The driver has refused it.
    bool refused_ = false;
    /// The display map shows the image as it is, with the stencil or without, under a pattern.
    bool composed_ = false, stenciled_ = false;
    PatternOverlay over_;
};

}  // namespace VantrelSDK
