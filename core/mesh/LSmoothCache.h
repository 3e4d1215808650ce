#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "core/math/LColor.h"
#include "core/math/LPoint2.h"
#include "core/math/LPoint3.h"
#include "core/mesh/LAdjFaceList.h"
#include "core/mesh/LAdjQuadList.h"
#include "core/mesh/LAdjVertList.h"
#include "core/mesh/LFace.h"
#include "core/mesh/LMeshTopology.h"
#include "core/mesh/ZeroedArray.h"

namespace VantrelSDK {

/// Smoothing of per-vertex values. A round replaces each value by the mean of the centroids of its
/// faces, all read from one buffer and written to another before any value changes.
///
/// With `add` false the means come out negated. A vertex in no face of a round keeps its value, a
/// face with a corner out of range takes no part, and so do listed faces and vertices out of range.
/// Rounds run on the calling thread. The buffers cost only the pages that are touched: making one
/// without values takes no time in proportion to the mesh, and what the forms with listed faces and
/// vertices do and touch is in proportion to the lists.
template <class T>
class LSmoothBuffers {
  public:
    /// `faces` are borrowed for the life of this. Values past the end of `values` are zero. Without
    /// memory there are no vertices.
    LSmoothBuffers(int nverts, std::span<const LFace> faces, std::span<const T> values = {})
        : faces_(faces) {
        const size_t size = std::max(nverts, 0);
        if (!read_.Reset(size) || !write_.Reset(size) || !counts_.Reset(size)) return;
        nverts_ = static_cast<int>(size);
        Reset(values);
    }

    /// Loads as many values as there are, at most GetNumVerts().
    void Reset(std::span<const T> values) {
        std::copy_n(values.begin(), std::min<size_t>(values.size(), nverts_), read_.begin());
    }

    int GetNumVerts() const { return nverts_; }
    /// GetNumVerts() values: what goes into the next round and what the last one gave.
    const T* read() const { return read_.data(); }
    T* _read() { return read_.data(); }
    /// GetNumVerts() values of room, for callers with rounds of their own.
    T* _write() { return write_.data(); }

    /// n rounds over all faces.
    void Iterate(int n, bool add) {
        IterateAll(n, [&] {
            for (const LFace& face : faces_) Gather(face, add);
        });
    }
    /// n rounds over the faces with at least one corner whose byte in `mask` isn't 0. A vertex past
    /// the end of the mask counts as 0.
    void Iterate(int n, std::span<const char> mask, bool add) {
        const auto marked = [&](int v) { return static_cast<size_t>(v) < mask.size() && mask[v]; };
        IterateAll(n, [&] {
            for (const LFace& face : faces_)
                if (marked(face.v[0]) || marked(face.v[1]) || marked(face.v[2])) Gather(face, add);
        });
    }
    /// n rounds over the given faces.
    void Iterate(int n, std::span<const int> faces, bool add) {
        IterateAll(n, [&] { GatherListed(faces, add); });
    }
    /// n rounds over the given faces that change the given vertices only: the others of those faces
    /// hold the border still.
    void Iterate(int n, std::span<const int> faces, std::span<const int> verts, bool add) {
        IterateListed(n, faces, verts, add, [](int) { return false; });
    }

    /// Copies what a round has written over what it reads, and zeroes the former and its counts: of
    /// all vertices or of the given ones.
    void Swap() {
        for (int v = 0; v < nverts_; ++v) SwapVert(v);
    }
    void Swap(std::span<const int> verts) {
        for (const int v : verts)
            if (IsVert(v)) SwapVert(v);
    }

  protected:
    /// Listed rounds in which a vertex stays as it is where keep(v).
    template <class Keep>
    void IterateListed(int n, std::span<const int> faces, std::span<const int> verts, bool add,
                       Keep&& keep) {
        for (const int v : verts)
            if (IsVert(v)) Clear(v);
        for (int round = 0; round < n; ++round) {
            GatherListed(faces, add);
            for (const int v : verts) {
                if (!IsVert(v)) continue;
                if (keep(v)) Clear(v);
                Finish(v);
            }
        }
    }

  private:
    template <class GatherRound>
    void IterateAll(int n, GatherRound&& gather) {
        if (n <= 0) return;
        // Listed rounds leave sums behind at vertices that they don't finish.
        std::fill(write_.begin(), write_.end(), T());
        std::fill(counts_.begin(), counts_.end(), 0);
        for (int round = 0; round < n; ++round) {
            gather();
            for (int v = 0; v < nverts_; ++v) Finish(v);
        }
    }

    bool IsVert(int v) const { return static_cast<unsigned>(v) < static_cast<unsigned>(nverts_); }

    void GatherListed(std::span<const int> faces, bool add) {
        for (const int f : faces)
            if (static_cast<size_t>(f) < faces_.size()) Gather(faces_[f], add);
    }

    void Gather(const LFace& face, bool add) {
        const auto [a, b, c] = face.v;
        if (!IsVert(a) || !IsVert(b) || !IsVert(c)) return;
        const T centroid = (read_[a] + read_[b] + read_[c]) * 0.33333334f;
        for (const int v : face.v) {
            if (add)
                write_[v] += centroid;
            else
                write_[v] -= centroid;
            ++counts_[v];
        }
    }

    /// A vertex that is listed twice is without a count the second time.
    void Finish(int v) {
        if (counts_[v] == 0) return;
        write_[v] /= static_cast<float>(counts_[v]);
        SwapVert(v);
    }

    void SwapVert(int v) {
        read_[v] = write_[v];
        Clear(v);
    }

    void Clear(int v) {
        write_[v] = T();
        counts_[v] = 0;
    }

    int nverts_ = 0;
    ZeroedArray<T> write_, read_;
    ZeroedArray<int> counts_;
    std::span<const LFace> faces_;
};

/// Smooths positions.
class LSmoothCache : public LSmoothBuffers<LPoint3> {
  public:
    using LSmoothBuffers::Iterate;
    using LSmoothBuffers::LSmoothBuffers;

    /// Listed rounds that keep open vertices: those with neighbours in `adjVerts` that have two
    /// faces or fewer, or fewer faces than neighbours. With either table null none is kept.
    void Iterate(int n, std::span<const int> faces, std::span<const int> verts,
                 const LAdjVertList* adjVerts, const LAdjFaceList* adjFaces, bool add);
    /// The same on quads, which keeps vertices with fewer than 4 quads or, where `adjQuads` is
    /// null, with fewer than 5 neighbours. With both tables null none is kept.
    void Iterate(int n, std::span<const int> faces, std::span<const int> verts,
                 const LAdjVertList* adjVerts, const LAdjQuadList* adjQuads, bool add);
};

/// The positions of a base shape, one a vertex, after `iterations` rounds over all faces that keep
/// open vertices.
std::vector<LPoint3> SmoothedShape(const LMeshTopology& topology, std::span<const LPoint3> verts,
                                   int iterations);

/// Smooths colours.
class LColorSmoothCache : public LSmoothBuffers<LColor> {
  public:
    using LSmoothBuffers::LSmoothBuffers;
};

/// Smooths one number per vertex: stencils and weights.
class LFloatSmoothCache : public LSmoothBuffers<float> {
  public:
    using LSmoothBuffers::LSmoothBuffers;
};

/// Smooths the points of a UV channel; its faces hold UV numbers.
class LUVSmoothCache : public LSmoothBuffers<LPoint2> {
  public:
    using LSmoothBuffers::LSmoothBuffers;
};

/// Smooths colours with alpha.
class LAColorSmoothCache2 : public LSmoothBuffers<LAColor> {
  public:
    using LSmoothBuffers::LSmoothBuffers;
};

/// Smooths colours with alpha and a stencil value beside each, round by round alike.
class LAColorSmoothCache3 : public LSmoothBuffers<LAColor> {
  public:
    LAColorSmoothCache3(int nverts, std::span<const LFace> faces,
                        std::span<const LAColor> colors = {}, std::span<const float> stencils = {})
        : LSmoothBuffers(nverts, faces, colors), stencils_(nverts, faces, stencils) {}

    /// Every form of LSmoothBuffers::Iterate.
    template <class... Args>
    void Iterate(int n, const Args&... args) {
        LSmoothBuffers::Iterate(n, args...);
        stencils_.Iterate(n, args...);
    }
    template <class... Args>
    void Swap(const Args&... args) {
        LSmoothBuffers::Swap(args...);
        stencils_.Swap(args...);
    }

    /// GetNumVerts() stencil values.
    const float* stencils() const { return stencils_.read(); }
    float* _stencils() { return stencils_._read(); }

  private:
    LFloatSmoothCache stencils_;
};

/// The same, for the brushes.
class LAColorSmoothCache : public LAColorSmoothCache3 {
  public:
    using LAColorSmoothCache3::LAColorSmoothCache3;
};

}  // namespace VantrelSDK
