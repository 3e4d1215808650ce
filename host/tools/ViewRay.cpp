#include "host/tools/ViewRay.h"

#include <maya/MDagPath.h>
#include <maya/MFnDependencyNode.h>

#include <algorithm>

namespace VantrelSDK {

ViewRay RayAt(const M3dView& view, int x, int y) {
    const auto pixel = [](int at) { return static_cast<short>(std::clamp(at, -32768, 32767)); };
    ViewRay ray;
    view.viewToWorld(pixel(x), pixel(y), ray.origin, ray.dir);
    MDagPath camera;
    view.getCamera(camera);
    ray.parallel = MFnDependencyNode(camera.node()).findPlug("orthographic").asBool();
    return ray;
}

double WorldSize(const M3dView& view, int x, int y, const MPoint& place, double share) {
    const int width = view.portWidth(), pixels = static_cast<int>(width * share);
    // Towards the view's middle, so that it is seen.
    const ViewRay beside = RayAt(view, x > width / 2 ? x - pixels : x + pixels, y);
    const MPoint point = beside.origin + beside.dir * (place - beside.origin).length();
    return (place - point).length();
}

MVector ViewRight(const M3dView& view) {
    MDagPath camera;
    view.getCamera(camera);
    const MMatrix place = camera.inclusiveMatrix();
    return {place(0, 0), place(0, 1), place(0, 2)};
}

}  // namespace VantrelSDK
