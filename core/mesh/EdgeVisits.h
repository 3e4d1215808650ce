#pragma once

#include "core/mesh/CornerView.h"
#include "core/mesh/LAdjFaceList.h"

namespace VantrelSDK {

/// Visits each edge of each face from its lower end: visit(higher end, face, place of the edge in
/// the face). Of the edges whose lower end is `low`, by face and there by place, ascending. Edges
/// with an end out of range are passed over. `adj` is the table of these faces.
///
/// Going through all of them by their lower end, an edge is found again through a table by the
/// higher end, so that no list is ever searched whose length the mesh decides.
template <class Visit>
void VisitEdgesFrom(int low, CornerView faces, const LAdjFaceList& adj, Visit&& visit) {
    const int nverts = adj.nverts();
    for (const int f : adj.GetAdjFacesForVert(low)) {
        const int32_t* v = faces[f];
        for (int k = 0; k < 3; ++k) {
            const int a = v[k], b = v[k == 2 ? 0 : k + 1], high = a ^ b ^ low;
            if ((a == low || b == low) && high >= low && high < nverts) visit(high, f, k);
        }
    }
}

}  // namespace VantrelSDK
