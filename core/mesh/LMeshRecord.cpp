#include "core/mesh/LMeshRecord.h"

#include <climits>

namespace VantrelSDK {

int StoredFaces::ReadFrom(LBlindData* stream, unsigned stride) {
    PackedArray<char> bytes;
    if (const int code = ReadPacked(stream, bytes)) return code;
    if (bytes.size() % stride != 0) return LBlindData::kBadRecord;
    *this = StoredFaces(bytes.data(), bytes.size() / stride, stride);
    return 0;
}

int LMeshRecord::ReadFrom(LBlindData* stream) {
    PackedArray<char> old;
    bool hasOld = false;
    const int code = ReadRecord(stream, 864, [&](unsigned short tag) {
        if (tag == 866) return stream->Read(numVerts);
        if (tag == 868) return ReadPacked(stream, verts);
        if (tag == 865) return stream->Read(numFaces);
        if (tag == 870) return faces.ReadFrom(stream, StoredFaces::kPresent);
        if (tag == 869) return faces.ReadFrom(stream, StoredFaces::kOld16);
        if (tag != 867) return 0;
        hasOld = true;
        return ReadPacked(stream, old);
    });
    if (code != 0) return code;
    if (numVerts < 0 || numFaces < 0) return LBlindData::kBadRecord;
    if (hasOld) {
        const size_t count = numFaces;
        if (old.size() == count * StoredFaces::kPresent ||
            old.size() == count * StoredFaces::kOld24)
            faces = StoredFaces(old.data(), count, count ? old.size() / count : 1);
        else if (old.size() >= count)
            faces = StoredFaces::Zeroed(count);
    }
    const bool fits = verts.size() == static_cast<size_t>(numVerts) &&
                      faces.size() == static_cast<size_t>(numFaces);
    return fits ? 0 : int{LBlindData::kBadRecord};
}

int WriteMeshRecord(LBlindData* stream, const LMeshTopology* topology, const LPoint3* verts) {
    const int nverts = topology ? topology->GetNumVerts() : 0;
    RecordWriter record(stream, 864);
    record.Field(866, nverts);
    if (verts)
        record.Array(868, std::span<const LPoint3>(verts, nverts));
    else
        record.Values<LPoint3>(868, nverts, [](size_t) { return LPoint3::Zero; });
    record.Field(865, topology ? topology->GetNumFaces() : 0);
    if (topology) record.Array(870, topology->Faces());
    return record.End();
}

bool TakeStoredFaces(const StoredFaces& stored, size_t first, size_t count, int nverts,
                     std::vector<LFace>& faces) {
    bool valid = true;
    AppendLarge(faces, count, [&](size_t i) {
        LFace face = stored[first + i];
        face.id = static_cast<int>(i);
        for (const int v : face.v)
            valid &= static_cast<unsigned>(v) < static_cast<unsigned>(nverts);
        return face;
    });
    return valid;
}

bool HasStoredFaces(const LMeshTopology& topology, const StoredFaces& stored, size_t first) {
    const std::vector<LFace>& faces = topology.Faces();
    bool same = stored.size() >= first + faces.size();
    for (size_t i = 0; same && i < faces.size(); ++i) {
        const LFace face = stored[first + i];
        same = std::memcmp(face.v, faces[i].v, sizeof face.v) == 0 && face.flags == faces[i].flags;
    }
    return same;
}

int LMesh::WriteTo(LBlindData* stream) const {
    return WriteMeshRecord(stream, topology_.get(), verts_.data());
}

int LMesh::ReadFrom(LBlindData* stream) try {
    LMeshRecord record;
    if (const int code = record.ReadFrom(stream)) return code;
    std::vector<LFace> faces;
    if (!TakeStoredFaces(record.faces, 0, record.faces.size(), record.numVerts, faces))
        return LBlindData::kBadRecord;
    auto topology = std::make_shared<LMeshTopology>(record.numVerts, std::move(faces));
    std::vector<LPoint3> verts;
    AppendLarge(verts, record.verts);
    verts_ = std::move(verts);
    topology_ = std::move(topology);
    nverts_ = record.numVerts;
    return 0;
} catch (const std::bad_alloc&) {
    return LBlindData::kNoMemory;
}

}  // namespace VantrelSDK
