#include "core/morph/LNeutral.h"

namespace VantrelSDK {

bool LNeutral::enabled = true;

LMesh LNeutral::Evaluate(const LMesh& input, bool hasTweaks) {
    const int count = input.GetNumVerts();
    if (!enabled || !mesh || mesh->GetNumVerts() != count) return input;
    LMesh result(input);
    if (!hasTweaks) {
        delta = std::make_unique<LMesh>(*mesh);
        for (int v = 0; v < count; ++v) {
            delta->OffsetVert(v, -input.GetVert(v));
            result.SetVert(v, mesh->GetVert(v));
        }
    } else if (delta && delta->GetNumVerts() == count) {
        for (int v = 0; v < count; ++v) result.OffsetVert(v, delta->GetVert(v));
    }
    inputchanged = false;
    return result;
}

}  // namespace VantrelSDK
