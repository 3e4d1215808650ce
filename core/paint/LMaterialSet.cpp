#include "core/paint/LMaterialSet.h"

#include <algorithm>

namespace VantrelSDK {

LMaterial* LMaterialSet::GetMaterialById(int id) const {
    const int at = GetIndexById(id);
    return at < 0 ? nullptr : GetMaterial(static_cast<unsigned>(at));
}

bool LMaterialSet::HasMaps() const {
    return std::ranges::any_of(mtls, [](const auto& m) { return m->GetNumMaps() > 0; });
}

bool LMaterialSet::CheckWritePermissions() const {
    bool all = !mtls.empty();
    for (const auto& material : mtls) all &= material->CheckWritePermissions();
    return all;
}

void LMaterialSet::Add(int shader, std::unique_ptr<LMaterial> material) {
    if (shader < 0 || shader >= kMaxShaders || !material || material->GetNumMaps() == 0) {
        voidmtls.push_back(shader);
        return;
    }
    mtlbyid[static_cast<size_t>(shader)] = static_cast<int>(mtls.size());
    mtls.push_back(std::move(material));
}

}  // namespace VantrelSDK
