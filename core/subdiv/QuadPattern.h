#pragma once

#include "core/mesh/LQuad.h"
#include "core/mesh/LTriCoupling.h"

namespace VantrelSDK {

/// How triangles are cut into quads: a pair of them in four around the middle of the edge they
/// share, a single one in three around its centre. What the corners are numbers of is the caller's:
/// vertices of a mesh, or points of a UV channel, whose faces have the same order of corners.
///
/// `at` answers, for triangle f: at.Corner(f, k) the number of its corner k; at.Middle(f, k) that
/// of the middle of its edge k; at.Visible(f, k) whether that edge is visible. k is 0 to 2.

/// Quad j (0 to 3) of the pair of triangles t and u, whose shared edges are `shared`.
template <class At>
LQuad PairQuad(int t, int u, LTriCoupling::SharedEdge shared, int j, const At& at) {
    const auto next = [](int k, int by) { return (k + by) % 3; };
    const int s = shared.first, s1 = next(s, 1), s2 = next(s, 2);
    const int r = shared.second, r1 = next(r, 1), r2 = next(r, 2);
    LQuad quad;
    const auto set = [&](int corner, int firstFace, int firstEdge, int lastFace, int lastEdge) {
        quad.v[0] = corner;
        quad.v[1] = at.Middle(firstFace, firstEdge);
        quad.v[2] = at.Middle(t, s);
        quad.v[3] = at.Middle(lastFace, lastEdge);
        quad.flags = LQuad::kDiagonal02;
        if (at.Visible(firstFace, firstEdge)) quad.flags |= 1 << 1;
        if (at.Visible(lastFace, lastEdge)) quad.flags |= 1 << 4;
    };
    switch (j) {
        case 0:
            set(at.Corner(t, s2), t, s2, t, s1);
            break;
        case 1:
            set(at.Corner(t, s), u, r1, t, s2);
            break;
        case 2:
            set(at.Corner(u, r2), u, r2, u, r1);
            break;
        default:
            set(at.Corner(t, s1), t, s1, u, r2);
    }
    quad.faces[0] = t;
    quad.faces[1] = u;
    return quad;
}

/// The quad at corner k of the single triangle f, whose centre is number `centre`.
template <class At>
LQuad SingleQuad(int f, int k, int centre, const At& at) {
    LQuad quad;
    const int before = (k + 2) % 3;
    quad.v[0] = at.Corner(f, k);
    quad.v[1] = at.Middle(f, k);
    quad.v[2] = centre;
    quad.v[3] = at.Middle(f, before);
    quad.flags = LQuad::kDiagonal02;
    if (at.Visible(f, k)) quad.flags |= 1 << 1;
    if (at.Visible(f, before)) quad.flags |= 1 << 4;
    quad.faces[0] = quad.faces[1] = f;
    return quad;
}

/// Quad q of a step with this coupling: four quads a pair, then three a single, whose centres are
/// numbered from `firstCentre`. Which corner of a single the first of its quads takes follows from
/// the quad's number, so it may be any.
template <class At>
LQuad StepQuad(int q, const LTriCoupling& coupling, int firstCentre, const At& at) {
    const int ofPairs = 4 * coupling.NumPairs();
    if (q < ofPairs) {
        const auto [t, u] = coupling.Pair(q / 4);
        return PairQuad(t, u, coupling.Shared(q / 4), q % 4, at);
    }
    const int i = (q - ofPairs) / 3;
    return SingleQuad(coupling.Single(i), q % 3, firstCentre + i, at);
}

}  // namespace VantrelSDK
