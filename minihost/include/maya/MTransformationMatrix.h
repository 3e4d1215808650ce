#pragma once

#include "maya/MEulerRotation.h"
#include "maya/MMatrix.h"
#include "maya/MSpace.h"
#include "maya/MStatus.h"
#include "maya/MVector.h"

/// A matrix in parts: scale, shear (xy, xz, yz), rotation, translation, done in that order.
class MTransformationMatrix {
  public:
    enum RotationOrder { kInvalid, kXYZ, kYZX, kZXY, kXZY, kYXZ, kZYX };

    MTransformationMatrix() = default;
    /// Takes a matrix apart (Shoemake, "Euler Angle Conversion" and Thomas, "Decomposing a Matrix
    /// into Simple Transformations", Graphics Gems II and IV).
    explicit MTransformationMatrix(const MMatrix& matrix);

    MMatrix asMatrix() const;
    MMatrix asMatrixInverse() const { return asMatrix().inverse(); }
    MMatrix asScaleMatrix() const;
    MMatrix asRotateMatrix() const;

    MVector getTranslation(MSpace::Space) const { return translation_; }
    MStatus setTranslation(const MVector& v, MSpace::Space) {
        translation_ = v;
        return MS::kSuccess;
    }
    MStatus getScale(double (&scale)[3], MSpace::Space) const;
    MStatus setScale(const double (&scale)[3], MSpace::Space);
    MStatus getShear(double (&shear)[3], MSpace::Space) const;
    MStatus setShear(const double (&shear)[3], MSpace::Space);
    MEulerRotation eulerRotation() const { return rotation_; }
    MQuaternion rotation() const { return rotation_.asQuaternion(); }
    MTransformationMatrix& rotateTo(const MEulerRotation& rotation) {
        rotation_ = rotation;
        return *this;
    }
    MTransformationMatrix& rotateTo(const MQuaternion& rotation) {
        rotation_ = rotation.asEulerRotation();
        return *this;
    }

  private:
    MVector scale_{1, 1, 1}, shear_;
    MEulerRotation rotation_;
    MVector translation_;
};
