#include "maya/M3dView.h"

#include <algorithm>
#include <cmath>

#include "maya/MDrawData.h"
#include "maya/MPxSurfaceShapeUI.h"
#include "minihost/Host.h"
#include "minihost/api/Status.h"
#include "minihost/view/ViewWindow.h"

using minihost::Host;
using minihost::Tell;

namespace {

short Pixel(double at) {
    return static_cast<short>(std::clamp(std::floor(at), -32768., 32767.));
}

}  // namespace

void MPxSurfaceShapeUI::getDrawData(void* geometry, MDrawData& data) const {
    data = MDrawData(geometry);
}

M3dView M3dView::active3dView(MStatus* status) {
    minihost::Views& views = Host::Get().views;
    std::string error;
    minihost::View* view = views.active() ? views.active() : views.Open({}, error);
    return Tell(status, view ? MS::kSuccess : MS::kFailure, M3dView(view));
}

unsigned M3dView::numberOf3dViews() {
    return static_cast<unsigned>(Host::Get().views.count());
}

MStatus M3dView::get3dView(unsigned index, M3dView& view) {
    if (index >= numberOf3dViews()) return MS::kInvalidParameter;
    view = M3dView(&Host::Get().views.At(index));
    return MS::kSuccess;
}

MStatus M3dView::beginGL() {
    return view_ && view_->BeginGL() ? MS::kSuccess : MS::kFailure;
}

MStatus M3dView::endGL() {
    if (!view_) return MS::kFailure;
    view_->EndGL();
    return MS::kSuccess;
}

int M3dView::portWidth(MStatus* status) const {
    return Tell(status, view_ ? MS::kSuccess : MS::kFailure, view_ ? view_->width() : 0);
}

int M3dView::portHeight(MStatus* status) const {
    return Tell(status, view_ ? MS::kSuccess : MS::kFailure, view_ ? view_->height() : 0);
}

MStatus M3dView::viewport(unsigned& x, unsigned& y, unsigned& width, unsigned& height) const {
    x = y = 0;
    width = static_cast<unsigned>(portWidth());
    height = static_cast<unsigned>(portHeight());
    return view_ ? MS::kSuccess : MS::kFailure;
}

MStatus M3dView::getCamera(MDagPath& camera) const {
    if (!view_) return MS::kFailure;
    camera = MDagPath(MObject(view_->camera()));
    return MS::kSuccess;
}

MStatus M3dView::projectionMatrix(MMatrix& matrix) const {
    if (!view_) return MS::kFailure;
    matrix = view_->Projection();
    return MS::kSuccess;
}

MStatus M3dView::modelViewMatrix(MMatrix& matrix) const {
    if (!view_) return MS::kFailure;
    matrix = view_->ModelView();
    return MS::kSuccess;
}

bool M3dView::worldToView(const MPoint& world, short& x, short& y, MStatus* status) const {
    MPoint place;
    const bool seen = view_ && view_->Project(world, place);
    Tell(status, seen ? MS::kSuccess : MS::kFailure);
    if (!seen) return false;
    x = Pixel(place.x);
    y = Pixel(place.y);
    return place.x >= 0 && place.y >= 0 && place.x < view_->width() && place.y < view_->height() &&
           place.z >= 0 && place.z <= 1;
}

MStatus M3dView::viewToWorld(short x, short y, MPoint& nearPoint, MPoint& farPoint) const {
    if (!view_) return MS::kFailure;
    nearPoint = view_->Unproject(MPoint(x, y, 0));
    farPoint = view_->Unproject(MPoint(x, y, 1));
    return MS::kSuccess;
}

MStatus M3dView::viewToWorld(short x, short y, MPoint& origin, MVector& direction) const {
    MPoint far;
    const MStatus status = viewToWorld(x, y, origin, far);
    direction = (far - origin).normal();
    return status;
}

MStatus M3dView::refresh(bool all, bool force) {
    minihost::Views& views = Host::Get().views;
    const auto draw = [force](minihost::View& view) {
        if (!view.window) return view.Draw().empty();
        force ? view.window->Show() : view.window->Touch();
        return true;
    };
    if (!all) return view_ && draw(*view_) ? MS::kSuccess : MS::kFailure;
    for (size_t i = 0; i < views.count(); ++i) draw(views.At(i));
    return MS::kSuccess;
}

_WidgetRec* M3dView::widget() const {
    return view_ && view_->window ? view_->window->widget() : nullptr;
}

_XDisplay* M3dView::display() const {
    return view_ && view_->window ? view_->window->display() : nullptr;
}

unsigned long M3dView::window() const {
    return view_ && view_->window ? view_->window->window() : 0;
}
