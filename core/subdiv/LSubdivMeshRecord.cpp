#include <algorithm>

#include "core/mesh/LMeshRecord.h"
#include "core/subdiv/LQuadSubdivision.h"
#include "core/subdiv/LSubdivMesh.h"
#include "core/subdiv/LevelsRecord.h"

namespace VantrelSDK {

namespace {

/// Tables of a level for faces that came without: those that the step from the level below has.
/// Where the faces aren't a step's, its vertices have no parents.
LLevelTables RemakeTables(const std::shared_ptr<const LMeshTopology>& below,
                          const LMeshTopology& topology, bool isQuad, bool protectOpen) {
    const int newVerts = topology.GetNumVerts() - below->GetNumVerts();
    LLevelTables tables;
    if (isQuad) {
        const LQuadSubdivision step(below);
        if (step.NumVerts() == topology.GetNumVerts()) tables = step.MakeTables(topology);
    } else {
        const LSubdivLevelTopo step(below->Faces(), below->GetNumVerts(), 0,
                                    below->GetNumFaces() - 1);
        if (step.GetNumExtVerts() == newVerts) tables = step.MakeTables(topology, protectOpen);
    }
    if (tables.NumNewVerts() == newVerts) return tables;
    tables = {};
    tables.parents.assign(newVerts, {-1, -1});
    tables.rings.Build(topology.GetNumVerts(), [](auto&&) {});
    return tables;
}

/// The level was smoothed, as they are made; what a cache knows better it says later.
std::shared_ptr<const LLevelRule> MakeRuleLater(std::shared_ptr<const LMeshTopology> below,
                                                std::shared_ptr<const LMeshTopology> topology,
                                                bool isQuad) {
    constexpr bool kProtectOpen = true;
    return std::make_shared<LLevelRule>(isQuad, true, kProtectOpen, [=] {
        return RemakeTables(below, *topology, isQuad, kProtectOpen);
    });
}

/// Every two faces lie on both sides of the diagonal of a quad.
bool AreSplitQuads(const std::vector<LFace>& faces) {
    for (size_t f = 0; f < faces.size(); f += 2)
        if (faces[f].v[2] != faces[f + 1].v[0] || faces[f].v[0] != faces[f + 1].v[2]) return false;
    return true;
}

/// What the record of an LSubdivMesh says, as views into the stream.
struct SubdivMeshRecord {
    LMeshRecord base;
    LevelsRecord levels;
    StoredFaces extfaces;
    PackedArray<LPoint3> extverts, barys, extbarys;
    PackedArray<LFaceSubs> facesubs, extfsubs;
    bool needbarys = false, hasLevels = false;

    int ReadFrom(LBlindData* stream) {
        const int code = ReadRecord(stream, 1392, [&](unsigned short tag) {
            switch (tag) {
                case 1393:
                    return base.ReadFrom(stream);
                case 1399:
                    return extfaces.ReadFrom(stream, StoredFaces::kPresent);
                case 1394:
                    return extfaces.ReadFrom(stream, StoredFaces::kOld16);
                case 1395:
                    return ReadPacked(stream, extverts);
                case 1400:
                    return ReadBool(stream, needbarys);
                case 1401:
                    return ReadPacked(stream, barys);
                case 1402:
                    return ReadPacked(stream, extbarys);
                case 1396:
                    hasLevels = true;
                    return levels.ReadFrom(stream);
                case 1397:
                    return ReadPacked(stream, facesubs);
                case 1398:
                    return ReadPacked(stream, extfsubs);
                default:
                    return 0;
            }
        });
        if (code != 0) return code;
        if (!hasLevels) levels = {base.numVerts, base.numFaces, {}, 0};
        return Fits() ? 0 : int{LBlindData::kBadRecord};
    }

    /// Counts agree with each other. Which faces lie in a face follows from the levels, so that
    /// only the size of that is looked at.
    bool Fits() const {
        const auto none = [](const auto& array, size_t size) {
            return array.size() == 0 || array.size() == size;
        };
        const size_t nverts = levels.NumExtVerts(), nfaces = levels.NumExtFaces();
        const size_t top = levels.levels.empty() ? 0 : levels.levels.back().numFaces;
        return levels.noVerts == base.numVerts && levels.noFaces == base.numFaces &&
               extverts.size() == nverts && extfaces.size() == nfaces &&
               none(facesubs, base.numFaces) && none(extfsubs, nfaces - top) &&
               none(barys, base.numVerts) && none(extbarys, nverts);
    }
    bool HasBarys() const {
        return barys.size() + extbarys.size() == base.verts.size() + extverts.size();
    }
};

/// Builds the levels of a record one by one.
class LevelBuilder {
  public:
    LevelBuilder(const SubdivMeshRecord& record, const LSubdivMesh* like)
        : record_(record), like_(like) {}

    /// The topology of level 0; null when a face names no vertex.
    std::shared_ptr<const LMeshTopology> Base() {
        const int nverts = record_.base.numVerts;
        const auto shared = like_ ? like_->GetLevelTopology(0) : nullptr;
        if (shared && shared->GetNumVerts() == nverts &&
            shared->GetNumFaces() == record_.base.numFaces &&
            HasStoredFaces(*shared, record_.base.faces, 0))
            return below_ = shared;
        like_ = nullptr;
        std::vector<LFace> faces;
        const bool valid =
            TakeStoredFaces(record_.base.faces, 0, record_.base.numFaces, nverts, faces);
        below_ = valid ? std::make_shared<LMeshTopology>(nverts, std::move(faces)) : nullptr;
        return below_;
    }

    /// Adds the next level to `levels`. False when its faces aren't those of one.
    bool AddLevel(LSubdivCollection& levels) {
        const LevelsRecord::Level& level = record_.levels.levels[levels.GetNumLayers() - 1];
        if (!AddShared(levels, level) && !AddOwn(levels, level)) return false;
        firstFace_ += level.numFaces;
        below_ = levels.GetTop()->topology();
        return true;
    }

  private:
    /// A level that another mesh has too is held once.
    bool AddShared(LSubdivCollection& levels, const LevelsRecord::Level& level) {
        const ISubdivLayer* layer =
            like_ ? like_->GetSubdivs().GetLayer(levels.GetNumLayers()) : nullptr;
        if (layer && layer->GetType() == level.isQuad &&
            layer->GetNumExtVerts() == level.nextVerts && layer->GetNumFaces() == level.numFaces &&
            HasStoredFaces(*layer->topology(), record_.extfaces, firstFace_)) {
            levels.AddClone(*layer);
            return true;
        }
        like_ = nullptr;
        return false;
    }

    bool AddOwn(LSubdivCollection& levels, const LevelsRecord::Level& level) {
        const int nverts = below_->GetNumVerts() + level.nextVerts;
        std::vector<LFace> faces;
        if (!TakeStoredFaces(record_.extfaces, firstFace_, level.numFaces, nverts, faces))
            return false;
        if (!level.isQuad) {
            auto topology = std::make_shared<LMeshTopology>(nverts, std::move(faces));
            auto rule = MakeRuleLater(below_, topology, false);
            levels.AddEntireLevel(level.nextVerts, std::move(topology), std::move(rule));
            return true;
        }
        const auto& coupling = below_->Coupling();
        const int64_t expected = 8LL * coupling->NumPairs() + 6LL * coupling->NumSingles();
        if (level.numFaces != expected || !AreSplitQuads(faces)) return false;
        auto topology = LMeshTopology::OfQuads(nverts, std::move(faces));
        auto rule = MakeRuleLater(below_, topology, true);
        levels.AddEntireQuadLevel(level.nextVerts, coupling, std::move(topology), std::move(rule));
        return true;
    }

    const SubdivMeshRecord& record_;
    const LSubdivMesh* like_;
    std::shared_ptr<const LMeshTopology> below_;
    size_t firstFace_ = 0;
};

}  // namespace

int LSubdivMesh::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, 1392);
    record.Chunk(1393, [&] { return WriteMeshRecord(stream, topology_.get(), verts_.data()); });
    WriteExtFaces(record);
    const size_t base = nverts_;
    record.Array(1395, std::span<const LPoint3>(verts_).subspan(base)).Field(1400, needbarys_);
    if (needbarys_ && barys_) {
        const std::span<const LPoint3> barys(*barys_);
        record.Array(1401, barys.first(base)).Array(1402, barys.subspan(base));
    }
    record.Record(1396, *subdivs_);
    const int top = GetNumSubivLevels() - 1;
    if (top > 0) WriteFaceSubs(record, 1397, 0, 1);
    if (top > 1) WriteFaceSubs(record, 1398, 1, top);
    return record.End();
}

void LSubdivMesh::WriteExtFaces(RecordWriter& record) const {
    VantrelSDK::WriteExtFaces(record, 1399, *subdivs_);
}

void LSubdivMesh::WriteFaceSubs(RecordWriter& record, unsigned short tag, int from, int to) const {
    VantrelSDK::WriteFaceSubs(record, tag, *subdivs_, from, to);
}

int LSubdivMesh::ReadFrom(LBlindData* stream) {
    return ReadFrom(stream, nullptr);
}

int LSubdivMesh::ReadFrom(LBlindData* stream, const LSubdivMesh* like) try {
    SubdivMeshRecord record;
    if (const int code = record.ReadFrom(stream)) return code;
    LevelBuilder builder(record, like);
    auto topology = builder.Base();
    if (!topology) return LBlindData::kBadRecord;
    auto levels = std::make_unique<LSubdivCollection>(record.base.numVerts, record.base.numFaces);
    for (size_t i = 0; i < record.levels.levels.size(); ++i)
        if (!builder.AddLevel(*levels)) return LBlindData::kBadRecord;
    levels->Activate(record.levels.active);
    std::vector<LPoint3> verts;
    ReserveLarge(verts, record.base.verts.size() + record.extverts.size());
    AppendLarge(verts, record.base.verts);
    AppendLarge(verts, record.extverts);

    std::shared_ptr<std::vector<LPoint3>> barys;
    if (record.needbarys && record.HasBarys()) {
        barys = std::make_shared<std::vector<LPoint3>>();
        ReserveLarge(*barys, verts.size());
        AppendLarge(*barys, record.barys);
        AppendLarge(*barys, record.extbarys);
    }
    nverts_ = record.base.numVerts;
    verts_ = std::move(verts);
    topology_ = std::move(topology);
    subdivs_ = std::move(levels);
    barys_ = std::move(barys);
    needbarys_ = record.needbarys;
    levelchanged_ = false;
    if (needbarys_ && !barys_) AllocBarys();
    return 0;
} catch (const std::bad_alloc&) {
    return LBlindData::kNoMemory;
}

}  // namespace VantrelSDK
