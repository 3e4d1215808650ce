#pragma once

#include <maya/MPxSurfaceShape.h>

namespace VantrelSDK {

class KelmoSurfaceCallback;

/// Shows what is being sculpted: a shape that a node's `displayCbk` feeds. Outside a session it
/// shows nothing.
class KelmoSurfaceShape : public MPxSurfaceShape {
  public:
    static void* creator() { return new KelmoSurfaceShape; }
    static MStatus initialize();
    static void release() { displayCbk = MObject(); }

    MStatus compute(const MPlug&, MDataBlock&) override { return MS::kUnknownParameter; }
    MStatus legalConnection(const MPlug& plug, const MPlug& other, bool asSrc,
                            bool& isLegal) const override;
    bool isBounded() const override;
    MBoundingBox boundingBox() const override;

    /// What the node behind the shape has handed to it, up to date; null without one, which is
    /// told.
    KelmoSurfaceCallback* getDisplayCallback() const;

    static MObject displayCbk;

  private:
    KelmoSurfaceCallback* Pull(bool tell) const;
};

}  // namespace VantrelSDK
