#pragma once

#include <cfloat>
#include <cmath>

#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// A ray made ready to be tested against many triangles.
///
/// The triangle is seen along the ray: each corner is sheared into a plane where the ray is a
/// point, and the signed areas that the point makes with the edges are the barycentric coordinates.
/// What is computed for an edge depends on the ray and the edge's two ends alone, so neighbours
/// agree about their edge, and a ray that leaves one face over an edge enters the next: no cracks,
/// whatever the plane of the triangle. See Woop, Benthin, Wald: Watertight Ray/Triangle
/// Intersection, Journal of Computer Graphics Techniques 2(1), 2013.
class LRay {
  public:
    /// The direction need not be a unit vector.
    LRay(const LPoint3& origin, const LPoint3& dir) : origin_(origin), dir_(dir) {
        const float x = std::abs(dir.x), y = std::abs(dir.y), z = std::abs(dir.z);
        depthAxis_ = x > y ? (x > z ? 0 : 2) : (y > z ? 1 : 2);
        const float from[3] = {origin.x, origin.y, origin.z}, along[3] = {dir.x, dir.y, dir.z};
        const int xAxis = (depthAxis_ + 1) % 3, yAxis = (depthAxis_ + 2) % 3;
        fromX_ = from[xAxis], fromY_ = from[yAxis], fromDepth_ = from[depthAxis_];
        dirDepth_ = along[depthAxis_], dirY_ = along[yAxis];
        dirX_ = dirDepth_ < 0 ? -along[xAxis] : along[xAxis];
    }

    /// The hit with triangle a, b, c: origin + dir * t for t at or above 0, edges and corners
    /// included. `bary` gets three values within 0 to 1 whose sum is 1 (up to rounding). With
    /// `cullBackfaces`, a triangle seen from behind is no hit; a degenerate one or one parallel to
    /// the ray never is. Without a hit the out-parameters stay as they are. Costs a few
    /// multiplications for most misses.
    bool Intersect(const LPoint3& a, const LPoint3& b, const LPoint3& c, float& t, LPoint3& hit,
                   LPoint3& bary, bool cullBackfaces) const {
        switch (depthAxis_) {
            case 0:
                return IntersectAlong<0>(a, b, c, t, hit, bary, cullBackfaces);
            case 1:
                return IntersectAlong<1>(a, b, c, t, hit, bary, cullBackfaces);
            default:
                return IntersectAlong<2>(a, b, c, t, hit, bary, cullBackfaces);
        }
    }

  private:
    /// Double precision throughout: differences and products of floats are exact in it, or nearly.
    struct Sheared {
        double x, y, depth;
        double operator^(const Sheared& o) const { return x * o.y - y * o.x; }
    };

    template <int Axis>
    static double Component(const LPoint3& p) {
        if constexpr (Axis % 3 == 0) return p.x;
        if constexpr (Axis % 3 == 1) return p.y;
        return p.z;
    }

    /// The corner relative to the origin, sheared along the ray. Both coordinates are scaled by the
    /// direction's depth instead of divided by it, which is exact; x by the size of the depth,
    /// without its sign, so that a triangle turns the same way for rays in either direction.
    template <int Axis>
    Sheared Shear(const LPoint3& p) const {
        const double depth = Component<Axis>(p) - fromDepth_;
        return {(Component<Axis + 1>(p) - fromX_) * std::abs(dirDepth_) - depth * dirX_,
                (Component<Axis + 2>(p) - fromY_) * dirDepth_ - depth * dirY_, depth};
    }

    template <int Axis>
    bool IntersectAlong(const LPoint3& a, const LPoint3& b, const LPoint3& c, float& t,
                        LPoint3& hit, LPoint3& bary, bool cullBackfaces) const {
        // A front face, turned against the ray, has no positive area; a back face no negative one.
        const Sheared sb = Shear<Axis>(b), sc = Shear<Axis>(c);
        const double u = sb ^ sc;
        if (cullBackfaces && u > 0) return false;
        const Sheared sa = Shear<Axis>(a);
        const double v = sc ^ sa, w = sa ^ sb;
        if (u > 0 || v > 0 || w > 0) {
            if (cullBackfaces || u < 0 || v < 0 || w < 0) return false;
        }
        const double area = u + v + w;
        if (area == 0 || IsEdgeOn(a, b, c)) return false;

        const double depth = (u * sa.depth + v * sb.depth + w * sc.depth) / area;
        const double distance = depth / dirDepth_;
        if (!(distance >= 0 && distance <= FLT_MAX)) return false;  // also when not a number
        t = static_cast<float>(distance);
        hit = origin_ + dir_ * t;
        bary = {static_cast<float>(u / area), static_cast<float>(v / area),
                static_cast<float>(w / area)};
        return true;
    }

    /// The triangle has no area or holds the ray's direction.
    bool IsEdgeOn(const LPoint3& a, const LPoint3& b, const LPoint3& c) const {
        const double ax = a.x, ay = a.y, az = a.z;
        const double ux = b.x - ax, uy = b.y - ay, uz = b.z - az;
        const double vx = c.x - ax, vy = c.y - ay, vz = c.z - az;
        const double nx = uy * vz - uz * vy, ny = uz * vx - ux * vz, nz = ux * vy - uy * vx;
        return nx * dir_.x + ny * dir_.y + nz * dir_.z == 0;
    }

    LPoint3 origin_, dir_;
    /// The axis (0 to 2) along which the ray runs fastest; x and y are the two that follow it.
    int depthAxis_;
    double fromX_, fromY_, fromDepth_;
    /// dirX_ carries the sign of dirDepth_.
    double dirX_, dirY_, dirDepth_;
};

}  // namespace VantrelSDK
