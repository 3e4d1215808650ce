#include "core/io/BlindRecord.h"
#include "core/mesh/LMeshObject.h"
#include "core/morph/LMeshBases.h"
#include "core/morph/LMorphDelta.h"
#include "core/morph/LNeutral.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

namespace {

bool HasLevelsOf(const LSubdivMesh& geom, const LSubdivMesh& mesh) {
    if (geom.GetNumSubivLevels() != mesh.GetNumSubivLevels()) return false;
    for (int level = 0; level < geom.GetNumSubivLevels(); ++level)
        if (geom.GetNumLevelVerts(level) != mesh.GetNumLevelVerts(level) ||
            geom.GetNumLevelFaces(level) != mesh.GetNumLevelFaces(level))
            return false;
    return true;
}

}  // namespace

int LMorphDelta::WriteTo(LBlindData* stream) const {
    return RecordWriter(stream, 848).Record(850, *mesh_).End();
}

int LMorphDelta::ReadFrom(LBlindData* stream) try {
    const LMeshObject* object = owner_ ? owner_->lobject() : nullptr;
    const LSubdivMesh* geom = object ? object->GetOrigGeom() : nullptr;
    std::unique_ptr<LSubdivMesh> mesh;
    const int code = ReadRecord(stream, 848, [&](unsigned short tag) {
        if (tag == 850) {
            mesh = std::make_unique<LSubdivMesh>();
            return mesh->ReadFrom(stream, geom);
        }
        if (tag != 849) return 0;
        LMesh old;
        const int failed = old.ReadFrom(stream);
        mesh = std::make_unique<LSubdivMesh>(old);
        return failed;
    });
    if (code != 0) return code;
    if (!mesh) return 0;
    if (geom && !HasLevelsOf(*geom, *mesh)) return LBlindData::kBadRecord;
    mesh_ = std::move(mesh);
    FlushUndo();
    back_ = {};
    dirty_.Reset(0);
    backup_.reset();
    backupDirty_ = true;
    CacheDetails(false);
    return 0;
} catch (const std::bad_alloc&) {
    return LBlindData::kNoMemory;
}

int LNeutral::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, 1652);
    if (mesh) record.Record(1653, *mesh);
    return record.End();
}

int LNeutral::ReadFrom(LBlindData* stream) {
    std::unique_ptr<LMesh> read;
    const int code = ReadRecord(stream, 1652, [&](unsigned short tag) {
        if (tag != 1653) return 0;
        read = std::make_unique<LMesh>();
        return read->ReadFrom(stream);
    });
    if (code == 0) mesh = std::move(read);
    return code;
}

int LMeshBases::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, 2128);
    record.Chunk(2129, [&] { return LSubdivMesh::WriteTo(stream); });
    for (int level = 0; level < GetNumSubivLevels(); ++level)
        if (const LMeshTopology* tables = LevelTables(level))
            record.Record(2130, tables->AdjFaces());
    return record.End();
}

int LMeshBases::ReadFrom(LBlindData* stream) {
    int lists = 0;
    return ReadRecord(stream, 2128, [&](unsigned short tag) -> int {
        if (tag == 2129) return LSubdivMesh::ReadFrom(stream, barysrc_);
        if (tag != 2130) return 0;
        // The lists follow from the faces.
        LAdjFaceList list;
        if (const int failed = list.ReadFrom(stream)) return failed;
        const LMeshTopology* level = LevelTables(lists++);
        const bool fits =
            level && list.nverts() == level->GetNumVerts() && list.nfaces() == level->GetNumFaces();
        return fits ? 0 : int{LBlindData::kBadRecord};
    });
}

}  // namespace VantrelSDK
