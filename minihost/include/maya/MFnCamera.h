#pragma once

#include "maya/MFnDagNode.h"
#include "maya/MPoint.h"
#include "maya/MSpace.h"
#include "maya/MVector.h"

/// A camera: it looks along -z of its transform, with +y up.
class MFnCamera : public MFnDagNode {
  public:
    MFnCamera() = default;
    explicit MFnCamera(const MObject& node, MStatus* status = nullptr);
    explicit MFnCamera(const MDagPath& path, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kCamera; }

    MPoint eyePoint(MSpace::Space space, MStatus* status = nullptr) const;
    MVector viewDirection(MSpace::Space space, MStatus* status = nullptr) const;
    MVector upDirection(MSpace::Space space, MStatus* status = nullptr) const;
    MVector rightDirection(MSpace::Space space, MStatus* status = nullptr) const;
    MPoint centerOfInterestPoint(MSpace::Space space, MStatus* status = nullptr) const;
    bool isOrtho(MStatus* status = nullptr) const;
    double orthoWidth(MStatus* status = nullptr) const;
    double nearClippingPlane(MStatus* status = nullptr) const;
    double farClippingPlane(MStatus* status = nullptr) const;
    /// In radians.
    double horizontalFieldOfView(MStatus* status = nullptr) const;
    double verticalFieldOfView(MStatus* status = nullptr) const;
    double aspectRatio(MStatus* status = nullptr) const;

  private:
    MMatrix Placement(MSpace::Space space) const;
    double Number(const char* attribute, MStatus* status) const;
};
