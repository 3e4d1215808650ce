#include "core/paint/LMaterial.h"

namespace VantrelSDK {

bool LMaterial::CheckWritePermissions() const {
    bool all = !maps.empty();
    // Each tells of itself.
    for (const auto& map : maps) all &= map->CheckWritePermissions();
    return all;
}

}  // namespace VantrelSDK
