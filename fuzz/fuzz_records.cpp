// Any bytes must be read as a record or refused. What was read must keep its promises and survive
// being written and read again. The first byte chooses the record.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "core/io/BlindRecord.h"
#include "core/mesh/LAdjQuadList.h"
#include "core/mesh/LEdgeListFlagged.h"
#include "core/mesh/Triangulation.h"
#include "core/mesh/int_array.h"
#include "core/morph/LMeshBases.h"
#include "core/sculpt/LHeadlessNode.h"
#include "core/sculpt/LNodeRecord.h"
#include "core/subdiv/LTopoCaches.h"
#include "tests/shapes/Generators.h"

using namespace VantrelSDK;

namespace {

void Demand(bool holds) {
    if (!holds) std::abort();
}

/// The code of read(stream) over these bytes, in a buffer that ends with them.
template <class Read>
int ReadBytes(const uint8_t* data, size_t size, const Read& read) {
    LBlindData block;
    Demand(block.SetSize(static_cast<unsigned>(size)) == 0);
    if (size > 0) std::memcpy(block.GetData(), data, size);
    char version[4];
    if (const int code = block.BeginRead(version)) return code;
    if (const int code = read(&block)) return code;
    return block.EndRead();
}

/// Reads something, and when that goes well writes it and reads and writes that again.
template <class Read, class Write>
void ThereAndBack(const uint8_t* data, size_t size, const Read& read, const Write& write) {
    if (ReadBytes(data, size, read) != 0) return;
    const auto written = [&](LBlindData& block) {
        Demand(block.BeginWrite() == 0 && write(&block) == 0 && block.EndWrite() == 0);
    };
    LBlindData first, second;
    written(first);
    Demand(ReadBytes(first.GetData(), first.GetSize(), read) == 0);
    written(second);
    Demand(first.GetSize() == second.GetSize() &&
           std::memcmp(first.GetData(), second.GetData(), first.GetSize()) == 0);
}

template <class Object>
void OneObject(const uint8_t* data, size_t size, Object& object) {
    ThereAndBack(
        data, size, [&](LBlindData* s) { return object.ReadFrom(s); },
        [&](LBlindData* s) { return object.WriteTo(s); });
}

/// Walks a block by what it says itself, and reads each value in every way.
int Walk(LBlindData* stream) {
    while (!stream->IsEndOfData()) {
        unsigned short tag;
        int whole;
        unsigned size;
        float x;
        LPoint3 p;
        LAColor color;
        void* block = nullptr;
        char* text = nullptr;
        const bool moved = stream->EndReadChunk() == 0 || stream->BeginReadChunk(tag) == 0 ||
                           stream->Read(whole) == 0 || stream->Read(x) == 0 ||
                           stream->Read(p) == 0 || stream->Read(color) == 0 ||
                           stream->Read(block, size, 1u) == 0 || stream->Read(text) == 0;
        if (text) Demand(std::strlen(text) < stream->GetSize());
        std::free(block);
        std::free(text);
        if (!moved && !stream->SetpForward()) return LBlindData::kWrongMark;
    }
    return 0;
}

LHeadlessNode& CubeNode() {
    static LHeadlessNode node(1);
    std::string error;
    if (!node.lobject()) Demand(node.Load(shapes::Cube(), error) && node.SubdivideAll_Quad());
    return node;
}

void OneNode(const uint8_t* data, size_t size) {
    LHeadlessNode node(1);
    std::string error;
    Demand(node.Load(shapes::Cube(), error));
    // A stored geometry always has them.
    node.lobject()->GetOrigGeom()->SetNeedBarys(true);
    LNodeRecord record(node, {});
    OneObject(data, size, record);
    LSubdivMesh& geom = *node.lobject()->GetOrigGeom();
    if (geom.GetNumLevelFaces(geom.GetNumSubivLevels() - 1) < 2000) node.InitSculpt();
    Demand(geom.Validate().empty() && node.GetDelta()->GetOrigMesh()->Validate().empty());
    geom.RebuildLevels();
    node.GetDelta()->UpdateUpperLayers();
    LColorDelta& colours = *node.lcolorDelta();
    Demand(colours.GetNumVerts(-2) == geom.GetNumLevelVerts(geom.GetNumSubivLevels() - 1));
    for (int v = 0; v < colours.GetNumVerts(-2); ++v)
        Demand(colours.Paints()[v].a >= 0 && colours.Paints()[v].a <= 1 &&
               colours.Stencils()[v] >= 0 && colours.Stencils()[v] <= 1);
    colours.MixColor(0, 0.5f, LColor::cWhite);
    colours.UpdateUpperLayers();
}

void OneMesh(const uint8_t* data, size_t size) {
    LSubdivMesh mesh;
    OneObject(data, size, mesh);
    Demand(mesh.Validate().empty());
    mesh.RebuildLevels();
    std::vector<int> subs;
    for (int f = 0; f < mesh.GetNumLevelFaces(0); ++f)
        mesh.FindSubFaces(f, subs, mesh.GetSubdivs().GetTop());
    if (mesh.GetNumLevelFaces(mesh.GetNumSubivLevels() - 1) < 10000)
        mesh.SubdivideAll_Quad(true, true);
}

void OneChannel(const uint8_t* data, size_t size) {
    const LSubdivMesh& geom = *CubeNode().lobject()->GetOrigGeom();
    LUVSubdivChannel channel;
    ThereAndBack(
        data, size, [&](LBlindData* s) { return channel.ReadFrom(s, geom); },
        [&](LBlindData* s) { return channel.WriteTo(s); });
    for (int f = 0; f < channel.GetNumFaces(); ++f) {
        LPoint2 uvs[3];
        channel.GetFaceUVs(f, channel.GetSubdivs().GetActiveIndex(), uvs);
    }
}

void OneCaches(const uint8_t* data, size_t size) {
    LSubdivMesh geom(*CubeNode().lobject()->GetOrigGeom());
    LTopoCaches caches;
    ThereAndBack(
        data, size, [&](LBlindData* s) { return caches.ReadFrom(s, geom); },
        [&](LBlindData* s) { return caches.WriteTo(s, geom.GetAllVertsPtr()); });
}

template <class Object>
void OneOf(const uint8_t* data, size_t size) {
    Object object;
    OneObject(data, size, object);
}

template <class Target>
void OneTarget(const uint8_t* data, size_t size) {
    LHeadlessNode& node = CubeNode();
    Target target(&node, "", node.GetLevel0Size());
    OneObject(data, size, target);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using One = void (*)(const uint8_t*, size_t);
    static constexpr One kRecords[] = {
        [](const uint8_t* d, size_t n) { ReadBytes(d, n, Walk); },
        OneNode,
        OneMesh,
        OneChannel,
        OneCaches,
        OneOf<LMesh>,
        OneOf<int_array>,
        OneOf<LAdjFaceList>,
        OneOf<LAdjQuadList>,
        OneOf<LEdgeListFlagged>,
        OneTarget<LMorphTarget>,
        OneTarget<LFlexorTarget>,
        OneTarget<LMixTarget>,
        OneTarget<LMorphGroup>,
        [](const uint8_t* d, size_t n) {
            LMeshBasesUV2 bases(nullptr);
            OneObject(d, n, static_cast<LMeshBases&>(bases));
        },
        [](const uint8_t* d, size_t n) {
            LColorDelta colours(&CubeNode());
            OneObject(d, n, colours);
        },
    };
    if (size > 0) kRecords[data[0] % std::size(kRecords)](data + 1, size - 1);
    return 0;
}
