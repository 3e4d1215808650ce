#include "core/mesh/LAdjQuadList.h"
#include "core/mesh/LEdgeListFlagged.h"
#include "core/mesh/LMeshRecord.h"
#include "core/subdiv/LSubdivMesh.h"
#include "core/subdiv/LTopoCaches.h"

namespace VantrelSDK {

namespace {

/// Blocks before this version have other tables at the place of the look-ups.
constexpr int kLookupsSince = 5;

/// The level has a new vertex on each of these edges and in each single triangle. One that was read
/// need not follow from the level below.
bool HasVertexOnEach(const LEdgeListFlagged& edges, const LQuadStep& step) {
    const int newVerts = step.topology->GetNumVerts() - step.below->GetNumVerts();
    return edges.GetNumEdges() + step.coupling->NumSingles() == newVerts;
}

/// What the record of a LQuadTriSubdivLevel says: the level that was cut. All of it follows from
/// the level's faces; it is looked at for whether it belongs to them.
struct CutLevelRecord {
    LMeshRecord mesh;
    PackedArray<int> coupling, ncoupling, couplingLookups, ncouplingLookups;
    LEdgeListFlagged edges;
    bool hasMesh = false, hasEdges = false;

    int ReadFrom(LBlindData* stream) {
        int totalfaces = 0;
        return ReadRecord(stream, 1808, [&](unsigned short tag) {
            if (tag == 1809) return ReadBase(stream);
            return tag == 1810 ? stream->Read(totalfaces) : 0;
        });
    }

    /// It is the level `step` was made from.
    bool Fits(const LQuadStep& step) const {
        const LTriCoupling& pairs = *step.coupling;
        const size_t nfaces = pairs.NumFaces();
        const auto none = [](const PackedArray<int>& array, size_t size) {
            return array.size() == 0 || array.size() == size;
        };
        if (!none(couplingLookups, nfaces) || !none(ncouplingLookups, nfaces)) return false;
        if (hasMesh && (mesh.faces.size() != nfaces || mesh.numVerts != step.below->GetNumVerts()))
            return false;
        if (hasEdges && (edges.faces().size() != nfaces || !HasVertexOnEach(edges, step)))
            return false;
        return coupling.size() + ncoupling.size() == 0 || HasPairs(pairs);
    }

  private:
    int ReadBase(LBlindData* stream) {
        bool owned = false;
        const int code = ReadRecord(stream, 1814, [&](unsigned short tag) {
            switch (tag) {
                case 1815:
                    hasMesh = true;
                    return mesh.ReadFrom(stream);
                case 1816:
                case 1820:
                    return ReadBool(stream, owned);
                case 1817:
                    return ReadPacked(stream, coupling);
                case 1818:
                    return ReadPacked(stream, ncoupling);
                case 1819:
                    hasEdges = true;
                    return edges.ReadFrom(stream);
                case 1821:
                    return ReadPacked(stream, couplingLookups);
                case 1822:
                    return ReadPacked(stream, ncouplingLookups);
                default:
                    return 0;
            }
        });
        if (stream->GetReadVersion() < kLookupsSince) couplingLookups = ncouplingLookups = {};
        return code;
    }

    bool HasPairs(const LTriCoupling& pairs) const {
        bool same = coupling.size() == 2 * static_cast<size_t>(pairs.NumPairs()) &&
                    ncoupling.size() == static_cast<size_t>(pairs.NumSingles());
        for (int i = 0; same && i < pairs.NumPairs(); ++i)
            same = pairs.Pair(i) == std::pair(coupling[2 * i], coupling[2 * i + 1]);
        for (int i = 0; same && i < pairs.NumSingles(); ++i) same = pairs.Single(i) == ncoupling[i];
        return same;
    }
};

int WriteCutLevelBase(LBlindData* stream, const LQuadStep& step, const LPoint3* verts) {
    const LMeshTopology& below = *step.below;
    const LTriCoupling& coupling = *step.coupling;
    const LEdgeListFlagged edges(below.Faces(), below.GetNumVerts());
    RecordWriter record(stream, 1814);
    record.Chunk(1815, [&] { return WriteMeshRecord(stream, &below, verts); })
        .Field(1816, true)
        .Values<int>(1817, 2 * static_cast<size_t>(coupling.NumPairs()),
                     [&](size_t i) {
                         const auto [a, b] = coupling.Pair(static_cast<int>(i / 2));
                         return i % 2 == 0 ? a : b;
                     })
        .Values<int>(1818, coupling.NumSingles(),
                     [&](size_t i) { return coupling.Single(static_cast<int>(i)); });
    if (HasVertexOnEach(edges, step)) record.Record(1819, edges);
    return record.Field(1820, true).End();
}

int WriteCutLevel(LBlindData* stream, const LQuadStep& step, const LPoint3* verts) {
    return RecordWriter(stream, 1808)
        .Chunk(1809, [&] { return WriteCutLevelBase(stream, step, verts); })
        .Field(1810, step.totalfaces)
        .End();
}

/// What the record of a LQuadLevelTopoCache says.
struct QuadCacheRecord {
    CutLevelRecord quadtri;
    LAdjQuadList adjquads;
    PackedArray<LPoint3> barys;
    int level = 0, numbarys = 0;
    bool smooth = false, protectopen = false, needbarys = false, hasAdjQuads = false;

    int ReadFrom(LBlindData* stream) {
        return ReadRecord(stream, 1680, [&](unsigned short tag) {
            switch (tag) {
                case 1681:
                    return quadtri.ReadFrom(stream);
                case 1682:
                    hasAdjQuads = true;
                    return adjquads.ReadFrom(stream);
                case 1683:
                    return stream->Read(level);
                case 1684:
                    return ReadBool(stream, smooth);
                case 1685:
                    return ReadBool(stream, protectopen);
                case 1686:
                    return ReadBool(stream, needbarys);
                case 1687:
                    return stream->Read(numbarys);
                case 1688:
                    return ReadPacked(stream, barys);
                default:
                    return 0;
            }
        });
    }

    bool Fits(const LQuadStep& step) const {
        const int nverts = step.topology->GetNumVerts();
        if (hasAdjQuads &&
            (adjquads.nverts() != nverts || adjquads.nquads() != step.topology->GetNumFaces() / 2))
            return false;
        const size_t bound = needbarys && numbarys != 0 ? nverts : 0;
        return barys.size() == bound && quadtri.Fits(step);
    }

    /// The barycentrics, which the mesh holds too when it is the top level's.
    std::shared_ptr<const std::vector<LPoint3>> TakeBarys(const LSubdivMesh& geom) const {
        if (barys.size() == 0) return nullptr;
        auto held = geom.GetBarys();
        if (held && barys.HasBytesOf(*held)) return held;
        auto own = std::make_shared<std::vector<LPoint3>>();
        AppendLarge(*own, barys);
        return own;
    }
};

}  // namespace

int LQuadLevelTopoCache::WriteTo(LBlindData* stream, const LPoint3* verts) const {
    RecordWriter record(stream, 1680);
    if (step_.topology) {
        record.Chunk(1681, [&] { return WriteCutLevel(stream, step_, verts); });
        if (smooth_)
            record.Chunk(1682, [&] { return LAdjQuadList(*step_.topology).WriteTo(stream); });
    }
    record.Field(1683, level_).Field(1684, smooth_).Field(1685, protectopen_);
    record.Field(1686, barys_ != nullptr);
    record.Field(1687, barys_ ? static_cast<int>(barys_->size()) : 0);
    if (barys_) record.Array(1688, *barys_);
    return record.End();
}

int LTopoCaches::WriteTo(LBlindData* stream, const LPoint3* verts) const {
    RecordWriter record(stream, 1792);
    for (const auto& cache : caches_)
        if (cache) record.Chunk(1793, [&] { return cache->WriteTo(stream, verts); });
    return record.End();
}

int LTopoCaches::ReadFrom(LBlindData* stream, LSubdivMesh& geom) {
    std::vector<std::unique_ptr<ILTopoCache>> caches(geom.GetNumSubivLevels() - 1);
    const int code = ReadRecord(stream, 1792, [&](unsigned short tag) -> int {
        if (tag != 1793) return 0;
        QuadCacheRecord record;
        if (const int failed = record.ReadFrom(stream)) return failed;
        const LQuadStep step = geom.GetQuadStep(record.level);
        if (!step.topology || !record.Fits(step)) return LBlindData::kBadRecord;
        geom.SetLevelMade(record.level, record.smooth, record.protectopen);
        auto cache =
            std::make_unique<LQuadLevelTopoCache>(record.level, record.smooth, record.protectopen);
        cache->SetStep(geom.GetQuadStep(record.level));
        cache->SetBarys(record.TakeBarys(geom));
        caches[record.level - 1] = std::move(cache);
        return 0;
    });
    if (code == 0) caches_ = std::move(caches);
    return code;
}

}  // namespace VantrelSDK
