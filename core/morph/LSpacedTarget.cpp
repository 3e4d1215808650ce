#include "core/morph/LSpacedTarget.h"

#include "core/morph/SkinFrames.h"

namespace VantrelSDK {

int LSpacedTarget::ConvertToSpace(int space, SkinFrames& frames) {
    if (space == space_) return 0;
    if (skin().empty()) return -1;
    Transform(frames,
              space == kTangentSpace ? LMeshBases::kObjectToTangent : LMeshBases::kTangentToObject);
    space_ = space;
    return 1;
}

}  // namespace VantrelSDK
