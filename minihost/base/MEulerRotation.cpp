#include "maya/MEulerRotation.h"

#include <array>
#include <cmath>

namespace {

/// The axes of an order, first turned first, and whether they are an even permutation of x, y, z.
struct Axes {
    int first, second, third;
    bool even;
};

Axes AxesOf(MEulerRotation::RotationOrder order) {
    constexpr std::array<Axes, 6> kAxes = {{{0, 1, 2, true},
                                            {1, 2, 0, true},
                                            {2, 0, 1, true},
                                            {0, 2, 1, false},
                                            {1, 0, 2, false},
                                            {2, 1, 0, false}}};
    return kAxes[static_cast<size_t>(order)];
}

MMatrix Turn(int axis, double angle) {
    MMatrix m;
    const int j = (axis + 1) % 3, k = (axis + 2) % 3;
    m[j][j] = m[k][k] = std::cos(angle);
    m[j][k] = std::sin(angle);
    m[k][j] = -std::sin(angle);
    return m;
}

}  // namespace

MMatrix MEulerRotation::asMatrix() const {
    const double angles[3] = {x, y, z};
    const Axes axes = AxesOf(order);
    return Turn(axes.first, angles[axes.first]) * Turn(axes.second, angles[axes.second]) *
           Turn(axes.third, angles[axes.third]);
}

MEulerRotation MEulerRotation::decompose(const MMatrix& m, RotationOrder order) {
    const auto [i, j, k, even] = AxesOf(order);
    const double sign = even ? 1 : -1;
    const double flat = std::hypot(m[i][i], m[i][j]);
    double angles[3];
    angles[j] = std::atan2(-sign * m[i][k], flat);
    if (flat > 1e-12) {
        angles[i] = std::atan2(sign * m[j][k], m[k][k]);
        angles[k] = std::atan2(sign * m[i][j], m[i][i]);
    } else {  // looking along the second axis: the other two turn about one line
        angles[i] = std::atan2(-sign * m[k][j], m[j][j]);
        angles[k] = 0;
    }
    return {angles[0], angles[1], angles[2], order};
}

MQuaternion MEulerRotation::asQuaternion() const {
    const MVector unit[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    const double angles[3] = {x, y, z};
    const Axes axes = AxesOf(order);
    MQuaternion q(angles[axes.first], unit[axes.first]);
    q = q * MQuaternion(angles[axes.second], unit[axes.second]);
    return q * MQuaternion(angles[axes.third], unit[axes.third]);
}
