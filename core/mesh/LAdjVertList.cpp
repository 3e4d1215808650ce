#include "core/mesh/LAdjVertList.h"

#include <cstdint>
#include <new>
#include <vector>

namespace VantrelSDK {

LAdjVertList::LAdjVertList(const LAdjFaceList& adj, std::span<const LFace> faces,
                           const ElementMasks& masks) {
    if (static_cast<size_t>(adj.nfaces()) != faces.size()) return;
    try {
        const int nverts = adj.nverts();
        // Marks who is in the present vertex's list: a search of the list would take forever around
        // the hub of a large fan. Each vertex has a mark of its own in each of the two passes.
        std::vector<uint32_t> marks(nverts);
        uint32_t mark = 0;
        rows_.Build(nverts, [&](auto&& emit) {
            for (int v = 0; v < nverts; ++v) {
                if (!masks.Includes(v) || masks.ExcludeValue(v) == 1) continue;
                ++mark;
                for (const int f : adj.GetAdjFacesForVert(v)) {
                    for (const int other : faces[f].v) {
                        if (other == v || other < 0 || other >= nverts) continue;
                        if (marks[other] == mark) continue;
                        marks[other] = mark;
                        emit(v, other);
                    }
                }
            }
        });
    } catch (const std::bad_alloc&) {
    }
}

}  // namespace VantrelSDK
