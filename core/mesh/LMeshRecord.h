#pragma once

#include <vector>

#include "core/io/BlindRecord.h"
#include "core/mesh/LMesh.h"

namespace VantrelSDK {

/// Faces as they lie in a stream, of the present form or an old one. Old ones have no flags: all
/// their edges are visible, none is gluing.
class StoredFaces {
  public:
    /// Bytes that a face takes in a stream: 20, or without flags 24 and, still older, 16.
    static constexpr unsigned kPresent = sizeof(LFace), kOld24 = 24, kOld16 = 16;

    StoredFaces() = default;
    StoredFaces(const void* bytes, size_t count, unsigned stride)
        : bytes_(static_cast<const uint8_t*>(bytes)), count_(count), stride_(stride) {}
    /// So many faces of zeros.
    static StoredFaces Zeroed(size_t count) { return {nullptr, count, 0}; }

    /// A block of a whole number of faces of `stride` bytes each.
    int ReadFrom(LBlindData* stream, unsigned stride);

    size_t size() const { return count_; }
    LFace operator[](size_t i) const {
        LFace face;
        if (stride_ == 0) {
            face.id = face.flags = 0;
        } else {
            // Vertices and id come first in all forms.
            const size_t held = stride_ == kPresent ? kPresent : kOld16;
            std::memcpy(static_cast<void*>(&face), bytes_ + i * stride_, held);
        }
        return face;
    }

  private:
    const uint8_t* bytes_ = nullptr;
    size_t count_ = 0;
    unsigned stride_ = kPresent;
};

/// What the record of an LMesh says, as views into the stream.
struct LMeshRecord {
    int numVerts = 0, numFaces = 0;
    PackedArray<LPoint3> verts;
    StoredFaces faces;

    /// Counts and arrays fit when it is 0.
    int ReadFrom(LBlindData* stream);
};

/// Writes the record of a mesh of these; `verts` gives topology->GetNumVerts() positions, or null
/// for zeros, and `topology` may be null for none.
int WriteMeshRecord(LBlindData* stream, const LMeshTopology* topology, const LPoint3* verts);

/// Takes `count` faces from `first` on, each with its place among them as its number. False when
/// one names a vertex that isn't there.
bool TakeStoredFaces(const StoredFaces& stored, size_t first, size_t count, int nverts,
                     std::vector<LFace>& faces);
/// A topology with these faces, numbers aside.
bool HasStoredFaces(const LMeshTopology& topology, const StoredFaces& stored, size_t first);

}  // namespace VantrelSDK
