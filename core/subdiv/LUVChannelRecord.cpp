#include <climits>

#include "core/subdiv/LSubdivMesh.h"
#include "core/subdiv/LTopoCaches.h"
#include "core/subdiv/LUVSubdivChannel.h"
#include "core/subdiv/LevelsRecord.h"

namespace VantrelSDK {

namespace {

using MFace = LUVChannel::MFace;

/// What the record of a LUVChannel says.
struct UVChannelRecord {
    int channel = 0;
    unsigned nverts = 0, nfaces = 0;
    PackedArray<LPoint2> verts;
    PackedArray<MFace> faces;

    int ReadFrom(LBlindData* stream) {
        const int code = ReadRecord(stream, 1536, [&](unsigned short tag) {
            if (tag == 1537) return stream->Read(channel);
            if (tag == 1538) return stream->Read(nverts);
            if (tag == 1540) return ReadPacked(stream, verts);
            if (tag == 1539) return stream->Read(nfaces);
            return tag == 1541 ? ReadPacked(stream, faces) : 0;
        });
        if (code != 0) return code;
        const bool fits = verts.size() == nverts && faces.size() == nfaces && nverts <= INT_MAX;
        return fits ? 0 : int{LBlindData::kBadRecord};
    }
};

/// Takes `count` faces from `first` on, which name points below `nverts`, or none.
bool TakeFaces(const PackedArray<MFace>& stored, size_t first, size_t count, int nverts,
               std::vector<MFace>& faces) {
    bool valid = true;
    AppendLarge(faces, count, [&](size_t i) {
        const MFace face = stored[first + i];
        for (const int v : face.v) valid &= v >= -1 && v < nverts;
        return face;
    });
    return valid;
}

/// The levels of a channel are those of the geometry, as far as they go, and lie over as many
/// faces.
bool HasLevelsOf(const LSubdivMesh& geom, const LevelsRecord& channel) {
    const int count = static_cast<int>(channel.levels.size());
    if (channel.noFaces == 0) return count == 0;
    if (count >= geom.GetNumSubivLevels()) return false;
    for (int level = 0; level <= count; ++level)
        if (channel.NumFaces(level) != geom.GetNumLevelFaces(level)) return false;
    for (int level = 1; level <= count; ++level)
        if (channel.levels[level - 1].isQuad != geom.GetSubdivs().GetLayer(level)->GetType())
            return false;
    return true;
}

}  // namespace

int LUVChannel::WriteTo(LBlindData* stream) const {
    return RecordWriter(stream, 1536)
        .Field(1537, channel_)
        .Field(1538, static_cast<unsigned>(nverts_))
        .Array(1540, std::span<const LPoint2>(verts_).first(nverts_))
        .Field(1539, static_cast<unsigned>(faces_.size()))
        .Array(1541, faces_)
        .End();
}

int LUVSubdivChannel::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, 1552);
    record.Chunk(1553, [&] { return LUVChannel::WriteTo(stream); });
    record.Record(1554, *subdivs_);
    size_t level = 0, local = 0;
    record.Values<MFace>(1555, subdivs_->GetNumExtFaces(), [&](size_t) {
        if (local == extfaces_[level].size()) ++level, local = 0;
        return extfaces_[level][local++];
    });
    return record.Array(1556, std::span<const LPoint2>(verts_).subspan(nverts_)).End();
}

int LUVSubdivChannel::ReadFrom(LBlindData* stream, const LSubdivMesh& geom) try {
    UVChannelRecord base;
    LevelsRecord levels;
    PackedArray<MFace> extfaces;
    PackedArray<LPoint2> extverts;
    bool hasLevels = false;
    const int code = ReadRecord(stream, 1552, [&](unsigned short tag) {
        if (tag == 1553) return base.ReadFrom(stream);
        if (tag == 1555) return ReadPacked(stream, extfaces);
        if (tag == 1556) return ReadPacked(stream, extverts);
        if (tag != 1554) return 0;
        hasLevels = true;
        return levels.ReadFrom(stream);
    });
    if (code != 0) return code;
    const int nverts = static_cast<int>(base.nverts);
    if (!hasLevels) levels = {nverts, static_cast<int>(base.faces.size()), {}, 0};
    if (levels.noVerts != nverts || static_cast<size_t>(levels.noFaces) != base.faces.size() ||
        static_cast<size_t>(levels.NumExtFaces()) != extfaces.size() ||
        static_cast<size_t>(levels.NumExtVerts()) != extverts.size() || !HasLevelsOf(geom, levels))
        return LBlindData::kBadRecord;

    std::vector<MFace> faces;
    if (!TakeFaces(base.faces, 0, base.faces.size(), nverts, faces)) return LBlindData::kBadRecord;
    auto subdivs = std::make_unique<LSubdivCollection>(levels.noVerts, levels.noFaces);
    std::vector<std::vector<MFace>> ext;
    size_t firstFace = 0;
    for (const LevelsRecord::Level& level : levels.levels) {
        if (level.isQuad)
            subdivs->AddEntireQuadLevel(level.nextVerts,
                                        geom.GetQuadStep(subdivs->GetNumLayers()).coupling, nullptr,
                                        nullptr);
        else
            subdivs->AddEntireLevel(level.nextVerts, nullptr, nullptr);
        if (!TakeFaces(extfaces, firstFace, level.numFaces, subdivs->GetTop()->GetNumVerts(),
                       ext.emplace_back()))
            return LBlindData::kBadRecord;
        firstFace += level.numFaces;
    }
    subdivs->Activate(levels.active);
    std::vector<LPoint2> verts;
    ReserveLarge(verts, base.verts.size() + extverts.size());
    AppendLarge(verts, base.verts);
    AppendLarge(verts, extverts);

    channel_ = base.channel;
    nverts_ = nverts;
    verts_ = std::move(verts);
    faces_ = std::move(faces);
    subdivs_ = std::move(subdivs);
    extfaces_ = std::move(ext);
    return 0;
} catch (const std::bad_alloc&) {
    return LBlindData::kNoMemory;
}

}  // namespace VantrelSDK
