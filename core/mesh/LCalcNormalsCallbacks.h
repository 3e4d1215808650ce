#pragma once

#include <algorithm>
#include <span>

#include "core/math/Float4.h"
#include "core/mesh/LFace.h"
#include "core/mesh/LIndexCache.h"
#include "core/mesh/LMeshTopology.h"

namespace VantrelSDK {

/// Fills normals[at(i)] with the unit vector along vector(at(i)) for i from first to last - 1. A
/// zero vector stays zero.
template <class At, class Vector>
void FillUnitVectors(int first, int last, LPoint3* normals, const At& at, const Vector& vector) {
    for (int i = first; i < last; i += 4) {
        const int count = std::min(4, last - i);
        Float4 four[4] = {};
        for (int k = 0; k < count; ++k) four[k] = vector(at(i + k));
        NormalizeFour(four);
        for (int k = 0; k < count; ++k) StorePoint(normals[at(i + k)], four[k]);
    }
}

/// What a worker runs to bring face normals up to date: (b - a) ^ (c - b) of the corners, of unit
/// length. Faces are independent of each other, so that any division among workers gives the same
/// bits.
template <class Position>
struct LCalcFaceNormalsCallback {
    const LFace* faces;
    /// One a face.
    LPoint3* normals;
    /// Position(v) gives a vertex as Float4.
    Position position;

    /// Faces at(first) to at(last - 1).
    template <class At>
    void operator()(int first, int last, const At& at) const {
        FillUnitVectors(first, last, normals, at, [this](int f) {
            const int* v = faces[f].v;
            const Float4 a = position(v[0]), b = position(v[1]), c = position(v[2]);
            return Cross(_mm_sub_ps(b, a), _mm_sub_ps(c, b));
        });
    }
};

template <class Position>
LCalcFaceNormalsCallback(const LFace*, LPoint3*, Position) -> LCalcFaceNormalsCallback<Position>;

/// The same for vertex normals: the sum of the face normals around, of unit length. A vertex
/// without faces has none: zero.
struct LCalcVertNormalsCallback {
    /// A row a vertex.
    const LIndexRows& around;
    /// One a face, and one more that is never used: the last is loaded as four floats.
    const LPoint3* faceNormals;
    /// One a vertex.
    LPoint3* normals;

    /// Vertices at(first) to at(last - 1).
    template <class At>
    void operator()(int first, int last, const At& at) const {
        const uint32_t* starts = around.Starts();
        const int* entries = around.Entries();
        FillUnitVectors(first, last, normals, at, [=, this](int v) {
            Float4 sum = _mm_setzero_ps();
            for (uint32_t k = starts[v]; k < starts[v + 1]; ++k)
                sum = _mm_add_ps(sum, LoadPoint(faceNormals[entries[k]]));
            return sum;
        });
    }
};

/// Marks what turns when these vertices move: themselves, the faces around them, into `faces`, and
/// the corners of those. markVert(v) takes a vertex, and may be given one more than once.
template <class MarkVert>
void MarkMoved(const LMeshTopology& topology, std::span<const int> verts, LIndexCache& faces,
               const MarkVert& markVert) {
    const LAdjFaceList& around = topology.AdjFaces();
    for (const int v : verts) {
        markVert(v);
        for (const int f : around.GetAdjFacesForVert(v))
            if (faces.Add(f))
                for (const int corner : topology.Faces()[f].v) markVert(corner);
    }
}

}  // namespace VantrelSDK
