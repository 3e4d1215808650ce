#include "core/sculpt/theThData.h"

#include "core/mesh/LMeshObject.h"
#include "core/morph/LMorphDelta.h"

namespace VantrelSDK {

void theThData::Begin(LMorphDelta& delta, LMeshObject& object) {
    morph_ = &delta;
    object_ = &object;
    delta_ = delta.GetMesh()->GetAllVertsPtr();
    back_ = delta.Back();
    marks_ = delta.DirtyMarks();
    weights_ = object._weights();
    changed_ = false;
    kept_.clear();
    weighted_.clear();
}

bool theThData::Join() {
    morph_->Join(kept_);
    object_->JoinWeighted(weighted_);
    return changed_;
}

}  // namespace VantrelSDK
