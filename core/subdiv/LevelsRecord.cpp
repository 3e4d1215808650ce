#include "core/subdiv/LevelsRecord.h"

#include <climits>
#include <cstdint>

namespace VantrelSDK {

namespace {

constexpr unsigned short kCollection = 1344, kTriLayer = 1360, kQuadLayer = 1413;

/// The records of both kinds of layers hold these, under tags that follow that of the record.
struct LayerRecord {
    int index = 0;
    uint32_t faceStart = 0, faceEnd = 0, vertStart = 0, vertEnd = 0, nextVerts = 0;
    uint32_t numFaces = 0;
    PackedArray<int> quads, singles;

    int ReadFrom(LBlindData* stream, bool isQuad) {
        const unsigned short record = isQuad ? kQuadLayer : kTriLayer;
        return ReadRecord(stream, record, [&](unsigned short tag) {
            switch (tag - record) {
                case 1:
                    return stream->Read(index);
                case 2:
                    return stream->Read(faceStart);
                case 3:
                    return stream->Read(faceEnd);
                case 4:
                    return stream->Read(vertStart);
                case 5:
                    return stream->Read(vertEnd);
                case 6:
                    return stream->Read(nextVerts);
                case 7:
                    return isQuad ? stream->Read(numFaces) : 0;
                case 8:
                    return isQuad ? ReadPacked(stream, quads) : 0;
                case 9:
                    return isQuad ? ReadPacked(stream, singles) : 0;
                default:
                    return 0;
            }
        });
    }

    /// The two halves of each quad are a pair, and nothing is single: what a step always leaves.
    /// Numbers may count from the level's first face, or from level 1's, or through all.
    bool HasSplitQuads(int64_t firstFace, int64_t baseFaces) const {
        if (singles.size() > 0 || (quads.size() > 0 && quads.size() != numFaces)) return false;
        const int64_t from = quads.size() > 0 ? quads[0] : 0;
        if (from != 0 && from != firstFace && from != firstFace - baseFaces) return false;
        for (size_t i = 0; i < quads.size(); ++i)
            if (quads[i] != from + static_cast<int64_t>(i)) return false;
        return true;
    }
};

int WriteLayer(LBlindData* stream, const ISubdivLayer& layer) {
    const bool isQuad = layer.GetType() == 1;
    const unsigned short tag = isQuad ? kQuadLayer : kTriLayer;
    const auto field = [&](int by) { return static_cast<unsigned short>(tag + by); };
    RecordWriter record(stream, tag);
    record.Field(field(1), layer.index())
        .Field(field(2), static_cast<unsigned>(layer.GetFirstParentFace()))
        .Field(field(3), static_cast<unsigned>(layer.GetLastParentFace()))
        .Field(field(4), static_cast<unsigned>(layer.GetFirstParentVert()))
        .Field(field(5), static_cast<unsigned>(layer.GetLastParentVert()))
        .Field(field(6), static_cast<unsigned>(layer.GetNumExtVerts()));
    if (isQuad)
        record.Field(field(7), static_cast<unsigned>(layer.GetNumFaces()))
            .Values<int>(field(8), layer.GetNumFaces(),
                         [](size_t i) { return static_cast<int>(i); });
    return record.End();
}

/// Brings the layers together: where the next one starts.
struct Chain {
    int64_t faceStart = 0, numFaces, vertStart = 0, numVerts;
    int64_t totalVerts = numVerts, totalFaces = numFaces;
    int64_t baseFaces = numFaces;

    /// False when a layer doesn't fit where it stands.
    bool Add(const LayerRecord& layer, LevelsRecord::Level& level) {
        const int64_t faces = level.isQuad ? layer.numFaces : 4 * numFaces;
        const bool inPlace = layer.faceStart == faceStart &&
                             layer.faceEnd == static_cast<uint32_t>(faceStart + numFaces - 1) &&
                             layer.vertStart == vertStart &&
                             layer.vertEnd == static_cast<uint32_t>(vertStart + numVerts - 1);
        if (!inPlace || numFaces == 0 || (level.isQuad && faces % 2 != 0)) return false;
        faceStart += numFaces;
        vertStart += numVerts;
        numFaces = faces;
        numVerts = layer.nextVerts;
        totalFaces += faces;
        totalVerts += numVerts;
        if (totalFaces > INT_MAX || totalVerts > INT_MAX) return false;
        level.nextVerts = static_cast<int>(numVerts);
        level.numFaces = static_cast<int>(faces);
        return !level.isQuad || layer.HasSplitQuads(faceStart, baseFaces);
    }
};

}  // namespace

int LSubdivCollection::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, kCollection);
    record.Field(1345, static_cast<unsigned>(noVerts_))
        .Field(1346, static_cast<unsigned>(noFaces_));
    for (const auto& layer : layers_)
        record.Field(1348, layer->GetType()).Chunk(1347, [&] {
            return WriteLayer(stream, *layer);
        });
    return record.Field(1349, active_).End();
}

int LevelsRecord::ReadFrom(LBlindData* stream) {
    *this = {};
    unsigned verts = 0, faces = 0;
    int type = 0;
    std::vector<LayerRecord> layers;
    const int code = ReadRecord(stream, kCollection, [&](unsigned short tag) -> int {
        if (tag == 1345) return stream->Read(verts);
        if (tag == 1346) return stream->Read(faces);
        if (tag == 1348) return stream->Read(type);
        if (tag == 1349) return stream->Read(active);
        if (tag != 1347) return 0;
        if (type != 0 && type != 1) return LBlindData::kBadRecord;
        levels.push_back({.isQuad = type == 1});
        return layers.emplace_back().ReadFrom(stream, type == 1);
    });
    if (code != 0) return code;
    if (verts > INT_MAX || faces > INT_MAX || active < 0 ||
        active > static_cast<int>(levels.size()))
        return LBlindData::kBadRecord;
    noVerts = static_cast<int>(verts);
    noFaces = static_cast<int>(faces);
    Chain chain{.numFaces = noFaces, .numVerts = noVerts};
    for (size_t i = 0; i < levels.size(); ++i)
        if (layers[i].index != static_cast<int>(i) + 1 || !chain.Add(layers[i], levels[i]))
            return LBlindData::kBadRecord;
    return 0;
}

int LevelsRecord::NumExtVerts() const {
    int sum = 0;
    for (const Level& level : levels) sum += level.nextVerts;
    return sum;
}

int LevelsRecord::NumExtFaces() const {
    int sum = 0;
    for (const Level& level : levels) sum += level.numFaces;
    return sum;
}

void WriteExtFaces(RecordWriter& record, unsigned short tag, const LSubdivCollection& levels) {
    int level = 0, local = 0;
    const LFace* faces = nullptr;
    record.Values<LFace>(tag, levels.GetNumExtFaces(), [&](size_t i) {
        if (local == 0) faces = levels.GetLayer(++level)->topology()->Faces().data();
        LFace face = faces[local];
        face.id = levels.noFaces() + static_cast<int>(i);
        if (++local == levels.GetLayer(level)->GetNumFaces()) local = 0;
        return face;
    });
}

void WriteFaceSubs(RecordWriter& record, unsigned short tag, const LSubdivCollection& levels,
                   int from, int to) {
    const auto facesOf = [&](int level) {
        return level == 0 ? levels.noFaces() : levels.GetLayer(level)->GetNumFaces();
    };
    size_t count = 0;
    for (int level = from; level < to; ++level) count += facesOf(level);
    int level = from, local = 0;
    record.Values<LFaceSubs>(tag, count, [&](size_t) {
        if (local == facesOf(level)) ++level, local = 0;
        return levels.GetLayer(level + 1)->GetFaceSubs(local++);
    });
}

}  // namespace VantrelSDK
