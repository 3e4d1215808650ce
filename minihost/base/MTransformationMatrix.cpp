#include "maya/MTransformationMatrix.h"

MTransformationMatrix::MTransformationMatrix(const MMatrix& matrix) {
    translation_ = {matrix[3][0], matrix[3][1], matrix[3][2]};
    MVector rows[3];
    for (int i = 0; i < 3; ++i) rows[i] = {matrix[i][0], matrix[i][1], matrix[i][2]};
    // Gram-Schmidt: what a row has of the rows before it is shear.
    scale_.x = rows[0].length();
    rows[0].normalize();
    shear_.x = rows[0] * rows[1];
    rows[1] -= rows[0] * shear_.x;
    scale_.y = rows[1].length();
    rows[1].normalize();
    shear_.y = rows[0] * rows[2];
    rows[2] -= rows[0] * shear_.y;
    shear_.z = rows[1] * rows[2];
    rows[2] -= rows[1] * shear_.z;
    scale_.z = rows[2].length();
    rows[2].normalize();
    if (scale_.y != 0) shear_.x /= scale_.y;
    if (scale_.z != 0) {
        shear_.y /= scale_.z;
        shear_.z /= scale_.z;
    }
    if ((rows[0] ^ rows[1]) * rows[2] < 0) {  // a mirror is a negative scale of all three
        scale_ *= -1;
        for (MVector& row : rows) row *= -1;
    }
    MMatrix turn;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) turn[i][j] = rows[i][j];
    rotation_ = MEulerRotation::decompose(turn, MEulerRotation::kXYZ);
}

MMatrix MTransformationMatrix::asScaleMatrix() const {
    MMatrix m;
    for (int i = 0; i < 3; ++i) m[i][i] = scale_[i];
    return m;
}

MMatrix MTransformationMatrix::asRotateMatrix() const {
    return rotation_.asMatrix();
}

MMatrix MTransformationMatrix::asMatrix() const {
    MMatrix shear;
    shear[1][0] = shear_.x;
    shear[2][0] = shear_.y;
    shear[2][1] = shear_.z;
    MMatrix m = asScaleMatrix() * shear * asRotateMatrix();
    for (int j = 0; j < 3; ++j) m[3][j] = translation_[j];
    return m;
}

MStatus MTransformationMatrix::getScale(double (&scale)[3], MSpace::Space) const {
    for (int i = 0; i < 3; ++i) scale[i] = scale_[i];
    return MS::kSuccess;
}

MStatus MTransformationMatrix::setScale(const double (&scale)[3], MSpace::Space) {
    scale_ = MVector(scale);
    return MS::kSuccess;
}

MStatus MTransformationMatrix::getShear(double (&shear)[3], MSpace::Space) const {
    for (int i = 0; i < 3; ++i) shear[i] = shear_[i];
    return MS::kSuccess;
}

MStatus MTransformationMatrix::setShear(const double (&shear)[3], MSpace::Space) {
    shear_ = MVector(shear);
    return MS::kSuccess;
}
