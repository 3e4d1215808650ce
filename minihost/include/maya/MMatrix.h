#pragma once

#include "maya/MFloatPoint.h"
#include "maya/MPoint.h"
#include "maya/MVector.h"

/// A 4 x 4 matrix for rows: p * M, translation in row 3, so that A * B does A first.
class MMatrix {
  public:
    /// The identity.
    MMatrix() { setToIdentity(); }
    explicit MMatrix(const double (&m)[4][4]);

    double operator()(unsigned row, unsigned column) const { return matrix[row][column]; }
    double& operator()(unsigned row, unsigned column) { return matrix[row][column]; }
    const double* operator[](unsigned row) const { return matrix[row]; }
    double* operator[](unsigned row) { return matrix[row]; }

    MMatrix operator*(const MMatrix& right) const;
    MMatrix& operator*=(const MMatrix& right) { return *this = *this * right; }
    bool operator==(const MMatrix& other) const;
    bool operator!=(const MMatrix& other) const { return !(*this == other); }

    MMatrix& setToIdentity();
    MMatrix transpose() const;
    /// The identity where there is none (a determinant of 0 or not finite).
    MMatrix inverse() const;
    double det4x4() const;
    double det3x3() const;
    bool isEquivalent(const MMatrix& other, double tolerance = 1e-10) const;
    bool isSingular() const;

    static const MMatrix identity;

    double matrix[4][4];
};

MPoint operator*(const MPoint& p, const MMatrix& m);
MFloatPoint operator*(const MFloatPoint& p, const MMatrix& m);
MVector operator*(const MVector& v, const MMatrix& m);
