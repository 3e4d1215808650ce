#include "minihost/mesh/MeshWalk.h"

#include <algorithm>

#include "minihost/api/Status.h"
#include "minihost/mesh/ComponentObject.h"
#include "minihost/mesh/MeshTypes.h"

namespace minihost {

MeshWalk::MeshWalk(const MObject& mesh, const MObject& component, MFn::Type kind, MStatus* status) {
    auto data = std::dynamic_pointer_cast<MeshData>(mesh.object());
    if (auto* node = mesh.as<Node>(); !data && node) data = MeshOf(*node);
    mesh_ = data;
    Tell(status, mesh_ ? MS::kSuccess : MS::kInvalidParameter);
    if (!mesh_) return;
    all_ = kind == MFn::kMeshVertComponent ? mesh_->numVertices() : mesh_->polygons().count();
    if (component.isNull()) return;
    some_ = true;
    const auto* held = component.as<ComponentObject>();
    if (held && held->component.kind == kind)
        elements_ = ElementsOf(held->component, all_);
    else
        Tell(status, MS::kInvalidParameter);
}

MStatus MeshWalk::reset() {
    place_ = 0;
    return MS::kSuccess;
}

MStatus MeshWalk::next() {
    if (isDone()) return MS::kFailure;
    ++place_;
    return MS::kSuccess;
}

int MeshWalk::count() const {
    return some_ ? static_cast<int>(elements_.size()) : all_;
}

int MeshWalk::index() const {
    if (isDone()) return -1;
    return some_ ? elements_[static_cast<size_t>(place_)] : place_;
}

MStatus MeshWalk::setIndex(int element, int& previous) {
    previous = index();
    int place = element;
    if (some_) {
        const auto at = std::ranges::lower_bound(elements_, element);
        if (at == elements_.end() || *at != element) return MS::kInvalidParameter;
        place = static_cast<int>(at - elements_.begin());
    }
    if (place < 0 || place >= count()) return MS::kInvalidParameter;
    place_ = place;
    return MS::kSuccess;
}

}  // namespace minihost
