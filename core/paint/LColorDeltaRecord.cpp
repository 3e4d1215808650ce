#include <algorithm>
#include <climits>
#include <new>

#include "core/mesh/LMeshObject.h"
#include "core/mesh/LMeshRecord.h"
#include "core/paint/LColorDelta.h"
#include "core/sculpt/LNode.h"
#include "core/subdiv/LSubdivMesh.h"
#include "core/subdiv/LevelsRecord.h"

namespace VantrelSDK {

namespace {

/// What the record of a colour delta says, as views into the stream.
struct ColorRecord {
    bool zero = false, hasLevels = false;
    unsigned numVerts = 0, numFaces = 0;
    PackedArray<LColor> deltas, extdeltas, incoms, extincoms;
    PackedArray<float> alphas, extalphas, stencils, extstencils;
    PackedArray<LFaceSubs> facesubs, extfsubs;
    StoredFaces faces, extfaces;
    LevelsRecord levels;

    int ReadFrom(LBlindData* stream) {
        const int code =
            ReadRecord(stream, 1312, [&](unsigned short tag) { return ReadField(stream, tag); });
        if (code != 0) return code;
        if (numVerts > INT_MAX || numFaces > INT_MAX) return LBlindData::kBadRecord;
        if (!hasLevels) levels = {static_cast<int>(numVerts), static_cast<int>(numFaces), {}, 0};
        return Fits() ? 0 : int{LBlindData::kBadRecord};
    }

  private:
    int ReadField(LBlindData* stream, unsigned short tag) {
        switch (tag) {
            case 1313:
                return ReadBool(stream, zero);
            case 1314:
                return stream->Read(numVerts);
            case 1315:
                return ReadPacked(stream, deltas);
            case 1316:
                return ReadPacked(stream, alphas);
            case 1317:
                return ReadPacked(stream, incoms);
            case 1318:
                return ReadPacked(stream, extdeltas);
            case 1319:
                return ReadPacked(stream, extalphas);
            case 1320:
                return ReadPacked(stream, extincoms);
            case 1321:
                return stream->Read(numFaces);
            case 1322:
                return faces.ReadFrom(stream, StoredFaces::kOld16);
            case 1323:
                return extfaces.ReadFrom(stream, StoredFaces::kOld16);
            case 1324:
                hasLevels = true;
                return levels.ReadFrom(stream);
            case 1325:
                return ReadPacked(stream, facesubs);
            case 1326:
                return ReadPacked(stream, extfsubs);
            case 1327:
                return faces.ReadFrom(stream, StoredFaces::kPresent);
            case 1328:
                return extfaces.ReadFrom(stream, StoredFaces::kPresent);
            case 1329:
                return ReadPacked(stream, stencils);
            case 1330:
                return ReadPacked(stream, extstencils);
            default:
                return 0;
        }
    }

    /// Counts agree with each other; arrays may be left out. What faces lie in a face follows from
    /// the levels, so that only the size of that is looked at.
    bool Fits() const {
        const auto none = [](const auto& array, size_t size) {
            return array.size() == 0 || array.size() == size;
        };
        const size_t ext = levels.NumExtVerts(), nfaces = levels.NumExtFaces();
        const size_t top = levels.levels.empty() ? 0 : levels.levels.back().numFaces;
        return levels.noVerts == static_cast<int>(numVerts) &&
               levels.noFaces == static_cast<int>(numFaces) && none(deltas, numVerts) &&
               none(alphas, numVerts) && none(incoms, numVerts) && none(stencils, numVerts) &&
               none(extdeltas, ext) && none(extalphas, ext) && none(extincoms, ext) &&
               none(extstencils, ext) && none(faces, numFaces) && none(extfaces, nfaces) &&
               none(facesubs, numFaces) && none(extfsubs, nfaces - top);
    }
};

/// Value v of an array that goes on in another, zero where they are left out.
template <class T>
T At(const PackedArray<T>& base, const PackedArray<T>& ext, size_t v, size_t nverts) {
    if (v < nverts) return base.size() > 0 ? base[v] : T{};
    return ext.size() > 0 ? ext[v - nverts] : T{};
}

/// The levels that the record tells are those of a collection.
bool AreLevelsOf(const LevelsRecord& record, const LSubdivCollection& levels) {
    if (levels.GetNumLayers() != static_cast<int>(record.levels.size()) + 1 ||
        levels.noVerts() != record.noVerts || levels.noFaces() != record.noFaces)
        return false;
    for (size_t i = 0; i < record.levels.size(); ++i) {
        const ISubdivLayer& layer = *levels.GetLayer(static_cast<int>(i) + 1);
        const LevelsRecord::Level& level = record.levels[i];
        if ((layer.GetType() == 1) != level.isQuad || layer.GetNumExtVerts() != level.nextVerts ||
            layer.GetNumFaces() != level.numFaces)
            return false;
    }
    return true;
}

/// A part of a colour, or a share, from anywhere: NaN is none.
float Held(float x) {
    return x > 0 ? std::min(x, 1.0f) : 0;
}

}  // namespace

int LColorDelta::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, 1312);
    const size_t base = nverts_, ext = paints_.size() - base;
    const auto color = [](size_t from, const auto& at) {
        return [from, &at](size_t i) -> LColor { return at(from + i); };
    };
    const auto number = [](size_t from, const auto& at) {
        return [from, &at](size_t i) -> float { return at(from + i); };
    };
    const auto delta = [&](size_t v) { return ColorOf(paints_[v]); };
    const auto alpha = [&](size_t v) { return paints_[v].a; };
    const auto stencil = [&](size_t v) { return stencils_[v]; };
    const auto incom = [&](size_t v) { return IncomAt(v); };
    record.Field(1313, zero_)
        .Field(1314, static_cast<unsigned>(nverts_))
        .Values<LColor>(1315, base, color(0, delta))
        .Values<float>(1316, base, number(0, alpha))
        .Values<float>(1329, base, number(0, stencil))
        .Values<LColor>(1317, base, color(0, incom))
        .Values<LColor>(1318, ext, color(base, delta))
        .Values<float>(1319, ext, number(base, alpha))
        .Values<float>(1330, ext, number(base, stencil))
        .Values<LColor>(1320, ext, color(base, incom))
        .Field(1321, static_cast<unsigned>(nfaces_));
    if (topology_) {
        record.Array(1327, topology_->Faces());
        WriteExtFaces(record, 1328, *subdivs_);
    }
    record.Record(1324, *subdivs_);
    const int top = GetNumSubdivLevels() - 1;
    if (top > 0) WriteFaceSubs(record, 1325, *subdivs_, 0, 1);
    if (top > 1) WriteFaceSubs(record, 1326, *subdivs_, 1, top);
    return record.End();
}

int LColorDelta::ReadFrom(LBlindData* stream) try {
    ColorRecord record;
    if (const int code = record.ReadFrom(stream)) return code;
    const LMeshObject* object = owner_ ? owner_->lobject() : nullptr;
    const LSubdivMesh* geom = object ? object->GetOrigGeom() : nullptr;
    const LSubdivCollection& levels = geom ? geom->GetSubdivs() : *subdivs_;
    if (!AreLevelsOf(record.levels, levels)) return LBlindData::kBadRecord;
    const size_t base = record.numVerts, count = base + record.levels.NumExtVerts();
    ZeroedArray<LAColor> paints(count);
    ZeroedArray<float> stencils(count);
    if (paints.size() != count || stencils.size() != count) return LBlindData::kNoMemory;
    bool zero = record.zero, zeroStencil = true, plain = true;
    const auto incomAt = [&](size_t v) {
        const LColor color = At(record.incoms, record.extincoms, v, base);
        return LColor(Held(color.r), Held(color.g), Held(color.b));
    };
    const LColor first = count > 0 ? incomAt(0) : LColor();
    for (size_t v = 0; v < count; ++v) {
        const LColor color = At(record.deltas, record.extdeltas, v, base);
        const LAColor paint(Held(color.r), Held(color.g), Held(color.b),
                            Held(At(record.alphas, record.extalphas, v, base)));
        const float stencil = Held(At(record.stencils, record.extstencils, v, base));
        // Pages that nothing is written to cost nothing.
        if (!(paint == LAColor())) paints[v] = paint, zero = false;
        if (stencil != 0) stencils[v] = stencil, zeroStencil = false;
        plain &= incomAt(v) == first;
    }
    std::vector<LColor> incoms;
    if (!plain) AppendLarge(incoms, count, incomAt);
    if (geom) {
        topology_ = geom->GetLevelTopology(0);
        subdivs_ = std::make_unique<LSubdivCollection>(levels);
    }
    nverts_ = static_cast<int>(record.numVerts);
    nfaces_ = static_cast<int>(record.numFaces);
    paints_ = std::move(paints);
    stencils_ = std::move(stencils);
    incoms_ = std::move(incoms);
    plain_ = first;
    zeroStencil_ = zeroStencil;
    back_ = {};
    dirty_.Reset(0);
    FlushUndo();
    ColorsReplaced(zero);
    return 0;
} catch (const std::bad_alloc&) {
    return LBlindData::kNoMemory;
}

}  // namespace VantrelSDK
