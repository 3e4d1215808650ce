#include "core/mesh/LMeshObject.h"
#include "core/mesh/LMeshRecord.h"
#include "core/morph/LMeshBases.h"
#include "core/subdiv/LTopoCaches.h"
#include "core/subdiv/LUVSubdivChannel.h"

namespace VantrelSDK {

namespace {

/// A block that is passed over.
int Drop(LBlindData* stream) {
    PackedArray<char> dropped;
    return ReadPacked(stream, dropped);
}

}  // namespace

int LMeshObject::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, 1136);
    if (geom_) record.Record(1138, *geom_);
    if (geom_ && topocaches_)
        record.Chunk(1143, [&] { return topocaches_->WriteTo(stream, geom_->GetAllVertsPtr()); });
    return record.End();
}

/// Every quad level has its cache; in old blocks they may lack.
bool LMeshObject::HasAllCaches() const {
    for (int i = 0; i < topocaches_->GetSize(); ++i)
        if (!topocaches_->Get(i) && geom_->GetSubdivs().GetLayer(i + 1)->GetType() == 1)
            return false;
    return true;
}

int LMeshObject::ReadFrom(LBlindData* stream) try {
    std::unique_ptr<LSubdivMesh> geom;
    auto caches = std::make_unique<LTopoCaches>();
    const auto readCaches = [&]() -> int {
        return geom ? caches->ReadFrom(stream, *geom) : int{LBlindData::kBadRecord};
    };
    const int code = ReadRecord(stream, 1136, [&](unsigned short tag) -> int {
        switch (tag) {
            case 1138:
                caches = std::make_unique<LTopoCaches>();
                geom = std::make_unique<LSubdivMesh>();
                return geom->ReadFrom(stream);
            case 1137: {
                caches = std::make_unique<LTopoCaches>();
                LMesh old;
                const int failed = old.ReadFrom(stream);
                geom = std::make_unique<LSubdivMesh>(old);
                return failed;
            }
            case 1143:
                return readCaches();
            case 1139:
                return stream->AtPos() == LBlindData::VOIDCHUNK_START ? Drop(stream) : readCaches();
            case 1140:
            case 1141:
            case 1142:
                return Drop(stream);
            default:
                return 0;
        }
    });
    if (code != 0) return code;
    // An object that has a geometry isn't left without one.
    const bool empty = !geom || geom->GetNumVerts() == 0 || geom->GetNumFaces() == 0;
    if (empty && geom_) return LBlindData::kBadRecord;
    if (geom && !geom->NeedBarys()) geom->SetNeedBarys(true);

    if (!geom || input_.size() != static_cast<size_t>(geom->GetNumLevelVerts(0)))
        input_ = blured_ = {};
    bases_.reset();
    geom_ = std::move(geom);
    topocaches_ = std::move(caches);
    if (!HasAllCaches()) topocaches_ = std::make_unique<LTopoCaches>();
    // The arrays of the base first.
    const int active = ActiveLevel();
    if (geom_) geom_->SetActiveLevel(0);
    ResetArrays();
    if (!geom_) return 0;
    // Channels that stay lie over the base and get the new levels.
    std::erase_if(uvs_, [&](const auto& channel) {
        while (channel->DeleteTopLevel()) {
        }
        return channel->nfaces() != geom_->GetNumLevelFaces(0);
    });
    geom_->SetActiveLevel(active);
    const bool followed = FollowLevels();
    AfterLevelChange();
    return followed ? 0 : int{LBlindData::kNoMemory};
} catch (const std::bad_alloc&) {
    return LBlindData::kNoMemory;
}

}  // namespace VantrelSDK
