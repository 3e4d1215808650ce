#include "minihost/view/Camera.h"

#include <algorithm>
#include <cmath>

#include "minihost/graph/Evaluation.h"

namespace minihost {
namespace {

// Apertures are in inches, focal lengths in millimetres.
constexpr double kMillimetres = 25.4;
/// The share of the view that a framed box may fill.
constexpr double kFilled = 0.92;

/// How far from the middle of the view a direction is, across and up, by its depth.
struct Opening {
    double across, up;
};

}  // namespace

Camera::Camera(DagNode& node) : shape_(*node.Shape()) {}

double Camera::Number(const char* attribute) const {
    return NumberOf(Pull(*shape_.FindSlot(attribute)));
}

void Camera::SetNumber(const char* attribute, double value) {
    Write(*shape_.FindSlot(attribute), value);
}

MMatrix Camera::ModelView() const {
    return shape_.WorldMatrix().inverse();
}

MMatrix Camera::Projection(int width, int height) const {
    const double aspect = static_cast<double>(height) / width, near = Number("nearClipPlane"),
                 far = Number("farClipPlane");
    MMatrix m;
    if (Number("orthographic") != 0) {
        const double across = Number("orthographicWidth");
        m[0][0] = 2 / across;
        m[1][1] = 2 / (across * aspect);
        m[2][2] = -2 / (far - near);
        m[3][2] = -(far + near) / (far - near);
        return m;
    }
    const double open = Number("horizontalFilmAperture") * kMillimetres / 2 / Number("focalLength");
    m[0][0] = 1 / open;
    m[1][1] = 1 / (open * aspect);
    m[2][2] = -(far + near) / (far - near);
    m[2][3] = -1;
    m[3][2] = -2 * far * near / (far - near);
    m[3][3] = 0;
    return m;
}

void Camera::MoveTo(const MPoint& eye) {
    DagNode& place = *shape_.parent();
    const MPoint moved = eye * place.WorldMatrix().inverse() * place.Matrix();
    const double to[3] = {moved.x, moved.y, moved.z};
    WriteNumbers(*place.FindSlot("translate"), to, 3);
}

void Camera::Tumble(double left, double up) {
    if (!shape_.parent() || Number("orthographic") != 0) return;
    const double distance = Number("centerOfInterest");
    const MPoint middle = MPoint(0, 0, -distance) * ModelView().inverse();
    Slot& rotate = *shape_.parent()->FindSlot("rotate");
    const auto angle = [&rotate](size_t axis) { return NumberOf(Pull(*rotate.parts[axis])); };
    const double turned[3] = {angle(0) + up, angle(1) + left, angle(2)};
    WriteNumbers(rotate, turned, 3);
    const MMatrix place = ModelView().inverse();
    MoveTo(middle + MVector(place[2][0], place[2][1], place[2][2]) * distance);
}

void Camera::Track(double right, double up) {
    if (!shape_.parent()) return;
    const double width = Number("orthographic") != 0
                             ? Number("orthographicWidth")
                             : Number("centerOfInterest") * Number("horizontalFilmAperture") *
                                   kMillimetres / Number("focalLength");
    MoveTo(MPoint(-right * width, -up * width, 0) * ModelView().inverse());
}

void Camera::Dolly(double share) {
    if (!shape_.parent() || !(share > 0)) return;
    if (Number("orthographic") != 0)
        return SetNumber("orthographicWidth", Number("orthographicWidth") * share);
    const double distance = Number("centerOfInterest"), far = Number("farClipPlane"),
                 next = std::clamp(distance * share, far * 1e-4, far * 0.5);
    MoveTo(MPoint(0, 0, next - distance) * ModelView().inverse());
    SetNumber("centerOfInterest", next);
    SetNumber("nearClipPlane", next * 0.02);
}

void Camera::Frame(std::span<const MPoint> points, int width, int height) {
    if (points.empty() || !shape_.parent()) return;
    const MMatrix view = ModelView(), place = view.inverse();
    MBoundingBox seen;
    for (const MPoint& p : points) seen.expand(p * view);
    const MPoint middle = seen.center();
    const double aspect = static_cast<double>(height) / width,
                 open = Number("horizontalFilmAperture") * kMillimetres / 2 / Number("focalLength");
    const Opening opening{open * kFilled, open * aspect * kFilled};
    double distance = 0, radius = 0, across = 0;
    for (const MPoint& p : points) {
        const MVector d = p * view - middle;
        distance = std::max(
            {distance, std::abs(d.x) / opening.across + d.z, std::abs(d.y) / opening.up + d.z});
        across = std::max({across, 2 * std::abs(d.x), 2 * std::abs(d.y) / aspect});
        radius = std::max(radius, d.length());
    }
    if (!(radius > 0)) radius = 1;
    const bool flat = Number("orthographic") != 0;
    if (flat) distance = 2 * radius;
    distance = std::max(distance, radius * 0.01);
    // Camera to world, with the eye at the right distance behind the middle.
    const MPoint eye = MPoint(middle.x, middle.y, middle.z + distance) * place;
    MoveTo(eye);
    SetNumber("nearClipPlane", std::max(distance - 2 * radius, distance * 0.02));
    SetNumber("farClipPlane", distance + 20 * radius);
    SetNumber("centerOfInterest", distance);
    if (flat) SetNumber("orthographicWidth", (across > 0 ? across : radius) / kFilled);
}

}  // namespace minihost
