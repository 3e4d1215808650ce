#include "core/sculpt/theThData.h"

#include "core/mesh/LMeshObject.h"
#include "core/morph/LMorphDelta.h"

namespace VantrelSDK {

void theThData::Begin(LMorphDelta& delta, LMeshObject& object, LColorDelta* colours) {
    morph_ = &delta;
    object_ = &object;
    delta_ = delta.GetMesh()->GetAllVertsPtr();
    back_ = delta.Back();
    marks_ = delta.DirtyMarks();
    weights_ = object._weights();
    changed_ = false;
    kept_.clear();
    weighted_.clear();
    colours_ = colours;
    if (!colours) return;
    paints_ = colours->Paints();
    stencils_ = colours->Stencils();
    colourBack_ = colours->Back();
    colourMarks_ = colours->DirtyMarks();
    painted_ = stencilled_ = false;
    colourKept_.clear();
}

bool theThData::Join() {
    morph_->Join(kept_);
    object_->JoinWeighted(weighted_);
    if (colours_) colours_->Join(colourKept_, painted_, stencilled_);
    return changed_;
}

}  // namespace VantrelSDK
