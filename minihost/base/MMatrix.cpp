#include "maya/MMatrix.h"

#include <cstring>
#include <limits>

const MMatrix MMatrix::identity;

MMatrix::MMatrix(const double (&m)[4][4]) {
    std::memcpy(matrix, m, sizeof matrix);
}

MMatrix& MMatrix::setToIdentity() {
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) matrix[i][j] = i == j;
    return *this;
}

MMatrix MMatrix::operator*(const MMatrix& right) const {
    MMatrix product;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) {
            double sum = 0;
            for (int k = 0; k < 4; ++k) sum += matrix[i][k] * right.matrix[k][j];
            product.matrix[i][j] = sum;
        }
    return product;
}

bool MMatrix::operator==(const MMatrix& other) const {
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            if (matrix[i][j] != other.matrix[i][j]) return false;
    return true;
}

MMatrix MMatrix::transpose() const {
    MMatrix turned;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) turned.matrix[j][i] = matrix[i][j];
    return turned;
}

namespace {

/// The determinant of what is left without a row and a column.
double Minor(const double (&m)[4][4], int row, int column) {
    double v[9];
    int n = 0;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            if (i != row && j != column) v[n++] = m[i][j];
    return v[0] * (v[4] * v[8] - v[5] * v[7]) - v[1] * (v[3] * v[8] - v[5] * v[6]) +
           v[2] * (v[3] * v[7] - v[4] * v[6]);
}

double Sign(int i, int j) {
    return (i + j) % 2 ? -1 : 1;
}

}  // namespace

double MMatrix::det4x4() const {
    double sum = 0;
    for (int j = 0; j < 4; ++j) sum += Sign(0, j) * matrix[0][j] * Minor(matrix, 0, j);
    return sum;
}

double MMatrix::det3x3() const {
    return Minor(matrix, 3, 3);
}

bool MMatrix::isSingular() const {
    const double det = det4x4();
    return !(std::abs(det) > std::numeric_limits<double>::min()) || !std::isfinite(det);
}

MMatrix MMatrix::inverse() const {
    if (isSingular()) return identity;
    const double det = det4x4();
    MMatrix result;
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j) result.matrix[j][i] = Sign(i, j) * Minor(matrix, i, j) / det;
    return result;
}

bool MMatrix::isEquivalent(const MMatrix& other, double tolerance) const {
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            if (!(std::abs(matrix[i][j] - other.matrix[i][j]) <= tolerance)) return false;
    return true;
}

MPoint operator*(const MPoint& p, const MMatrix& m) {
    const auto& a = m.matrix;
    return {p.x * a[0][0] + p.y * a[1][0] + p.z * a[2][0] + p.w * a[3][0],
            p.x * a[0][1] + p.y * a[1][1] + p.z * a[2][1] + p.w * a[3][1],
            p.x * a[0][2] + p.y * a[1][2] + p.z * a[2][2] + p.w * a[3][2],
            p.x * a[0][3] + p.y * a[1][3] + p.z * a[2][3] + p.w * a[3][3]};
}

MFloatPoint operator*(const MFloatPoint& p, const MMatrix& m) {
    const MPoint moved = MPoint(p) * m;
    return {static_cast<float>(moved.x), static_cast<float>(moved.y), static_cast<float>(moved.z),
            static_cast<float>(moved.w)};
}

MVector operator*(const MVector& v, const MMatrix& m) {
    const auto& a = m.matrix;
    return {v.x * a[0][0] + v.y * a[1][0] + v.z * a[2][0],
            v.x * a[0][1] + v.y * a[1][1] + v.z * a[2][1],
            v.x * a[0][2] + v.y * a[1][2] + v.z * a[2][2]};
}
