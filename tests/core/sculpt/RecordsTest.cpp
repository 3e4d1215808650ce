#include <gtest/gtest.h>

#include "core/mesh/LAdjQuadList.h"
#include "core/mesh/LEdgeListFlagged.h"
#include "core/mesh/int_array.h"
#include "core/morph/LMeshBases.h"
#include "core/morph/LNeutral.h"
#include "core/subdiv/LTopoCaches.h"
#include "tests/core/math/SameBits.h"
#include "tests/core/sculpt/Blocks.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::blocks;

namespace {

template <class Object>
std::string RecordOf(const Object& object) {
    return BlockOf([&](LBlindData* stream) { return object.WriteTo(stream); });
}

template <class Object>
int ReadRecordOf(const std::string& bytes, Object& object) {
    return ReadBlock(bytes, [&](LBlindData* stream) { return object.ReadFrom(stream); });
}

/// The object reads its own record, writes the same, and is left alone by a cut one.
template <class Object>
void ExpectRoundTrip(const Object& object, Object& empty) {
    const std::string bytes = RecordOf(object);
    EXPECT_NE(ReadRecordOf(bytes.substr(0, bytes.size() / 2), empty), 0);
    ASSERT_EQ(ReadRecordOf(bytes, empty), 0);
    EXPECT_TRUE(RecordOf(empty) == bytes);
}

/// How faces were stored: the first words of a present one, and zeros behind them.
std::string StoredFaces(std::span<const LFace> faces, size_t stride) {
    std::string bytes;
    for (const LFace& face : faces) {
        bytes.append(reinterpret_cast<const char*>(&face), std::min<size_t>(stride, 16));
        if (stride == 20) bytes.append(1, static_cast<char>(face.flags)).append(3, '\0');
        if (stride == 24) bytes.append(8, '\0');
    }
    return bytes;
}

std::span<const char> Chars(const std::string& bytes) {
    return bytes;
}

/// The record of a mesh with its faces under another tag.
int WriteOldMesh(LBlindData* stream, const LMesh& mesh, unsigned short tag,
                 const std::string& faces) {
    return RecordWriter(stream, 864)
        .Field(866, mesh.GetNumVerts())
        .Array(868, std::span(mesh.GetVertsPtr(), static_cast<size_t>(mesh.GetNumVerts())))
        .Field(865, mesh.GetNumFaces())
        .Array(tag, Chars(faces))
        .End();
}

LMesh OldMesh(unsigned short tag, const LMesh& mesh, const std::string& faces, int code = 0) {
    LMesh read;
    EXPECT_EQ(ReadBlock(BlockOf([&](LBlindData* s) { return WriteOldMesh(s, mesh, tag, faces); }),
                        [&](LBlindData* s) { return read.ReadFrom(s); }),
              code);
    return read;
}

/// The faces with all edges visible and none gluing.
std::vector<LFace> WithoutFlags(std::span<const LFace> faces) {
    std::vector<LFace> plain(faces.begin(), faces.end());
    for (LFace& face : plain) face.flags = 7;
    return plain;
}

/// A block with the cache of level 1, which holds what write(stream) writes under a tag.
template <class Write>
std::string CacheBlock(unsigned short tag, const Write& write) {
    return BlockOf([&](LBlindData* s) {
        return RecordWriter(s, 1792)
            .Chunk(1793,
                   [&] {
                       return RecordWriter(s, 1680)
                           .Chunk(tag, [&] { return write(s); })
                           .Field(1683, 1)
                           .Field(1684, false)
                           .End();
                   })
            .End();
    });
}

}  // namespace

TEST(Records, TablesComeBack) {
    for (const shapes::Shape& shape : shapes::ShapesWithFaces()) {
        SCOPED_TRACE(shape.name);
        LSubdivMesh mesh = Chain(shape.mesh, "");
        const LMeshTopology& base = *mesh.LevelTables(0);
        LMesh plain;
        ExpectRoundTrip<LMesh>(*mesh.GetLevelCopy(0), plain);
        LEdgeListFlagged edges;
        ExpectRoundTrip({base.Faces(), base.GetNumVerts()}, edges);
        LAdjFaceList around;
        ExpectRoundTrip(base.AdjFaces(), around);
        for (int v = 0; v < base.GetNumVerts(); ++v)
            EXPECT_TRUE(
                SameBits(around.GetAdjFacesForVert(v), base.AdjFaces().GetAdjFacesForVert(v)));
        if (!mesh.SubdivideAll_Quad(true, true)) continue;
        LAdjQuadList quads;
        ExpectRoundTrip(LAdjQuadList(*mesh.LevelTables(1)), quads);
        LMeshBasesUV2 bases(nullptr);
        ExpectRoundTrip<LMeshBases>(LMeshBasesUV2(&mesh, nullptr, 1), bases);
        EXPECT_TRUE(SameBits(AllVerts(bases), AllVerts(mesh)));
    }
    LNeutral neutral, backup;
    neutral.mesh = std::make_unique<LMesh>(Triangulate(shapes::Cube()));
    ExpectRoundTrip(neutral, backup);
    int_array numbers(3), back;
    for (int i = 0; i < 7; ++i) numbers.push_back(i * i);
    ExpectRoundTrip(numbers, back);
    EXPECT_EQ(back.at(6), 36);
    EXPECT_EQ(back.capacity(), 9u);
}

TEST(Records, FacesOfOldForms) {
    const LMesh mesh = Triangulate(shapes::Cube());
    const std::vector<LFace> plain = WithoutFlags(mesh.Faces());
    const auto same = [&](const LMesh& read, std::span<const LFace> faces) {
        EXPECT_TRUE(SameBits(read.Faces(), faces));
        EXPECT_EQ(read.GetVert(3), mesh.GetVert(3));
    };
    same(OldMesh(869, mesh, StoredFaces(mesh.Faces(), 16)), plain);
    same(OldMesh(867, mesh, StoredFaces(mesh.Faces(), 20)), mesh.Faces());
    same(OldMesh(867, mesh, StoredFaces(mesh.Faces(), 24)), plain);
    std::vector<LFace> zeroed(plain.size());
    for (size_t f = 0; f < zeroed.size(); ++f) {
        zeroed[f].id = static_cast<int>(f);
        zeroed[f].flags = 0;
    }
    same(OldMesh(867, mesh, StoredFaces(mesh.Faces(), 16)), zeroed);
    EXPECT_EQ(OldMesh(867, mesh, "x", LBlindData::kBadRecord).GetNumFaces(), 0)
        << "a byte doesn't stand for twelve faces";
    EXPECT_EQ(OldMesh(869, mesh, StoredFaces(plain, 20), LBlindData::kBadRecord).GetNumVerts(), 0);
}

TEST(Records, LevelsOfOldForms) {
    LSubdivMesh mesh = Chain(shapes::Cube(), "ll");
    const LSubdivCollection& levels = mesh.GetSubdivs();
    std::vector<LFace> faces;
    for (int level = 1; level < 3; ++level)
        for (int f = 0; f < mesh.GetNumLevelFaces(level); ++f)
            faces.push_back(mesh.GetLevelFace(f, level));
    const std::string bytes = BlockOf([&](LBlindData* stream) {
        const std::string base = StoredFaces(mesh.GetLevelCopy(0)->Faces(), 16);
        return RecordWriter(stream, 1392)
            .Chunk(1393, [&] { return WriteOldMesh(stream, *mesh.GetLevelCopy(0), 869, base); })
            .Array(1394, Chars(StoredFaces(faces, 16)))
            .Array<LPoint3>(1395,
                            std::span(mesh.GetAllVertsPtr(), AllVerts(mesh).size()).subspan(8))
            .Record(1396, levels)
            .End();
    });
    LSubdivMesh read;
    ASSERT_EQ(ReadRecordOf(bytes, read), 0);
    EXPECT_TRUE(SameBits(AllVerts(read), AllVerts(mesh)));
    for (int level = 0; level < 3; ++level)
        EXPECT_TRUE(SameBits(read.LevelTables(level)->Faces(),
                             WithoutFlags(mesh.LevelTables(level)->Faces())));
    EXPECT_EQ(read.Validate(), "");
}

TEST(Records, ObjectsAndDeltasOfOldVersions) {
    const auto node = NodeOf(shapes::Cube());
    ASSERT_TRUE(node->SubdivideAll_Quad());
    const LMeshObject& object = *node->lobject();
    const LMesh base = *object.GetOrigGeom()->GetLevelCopy(0);
    // A block of a version, with an object and a delta of these parts.
    const auto blockOf = [](const char* version, const auto& writeObject, const auto& writeDelta) {
        std::string bytes = BlockOf([&](LBlindData* stream) {
            return RecordWriter(stream, 257)
                .Chunk(266, [&] { return writeObject(stream); })
                .Chunk(263, [&] { return writeDelta(stream); })
                .End();
        });
        return bytes.replace(0, 3, version);
    };
    const std::vector<int> junk(11, 3);
    const std::string oldest = blockOf(
        "002",
        [&](LBlindData* s) {
            return RecordWriter(s, 1136)
                .Record(1137, base)
                .Array(1139, junk)
                .Array(1140, junk)
                .Array(1142, junk)
                .End();
        },
        [&](LBlindData* s) { return RecordWriter(s, 848).Record(849, base).End(); });
    const auto read = NodeOf(shapes::Torus(4, 3));
    ASSERT_EQ(ReadNode(oldest, *read), 0);
    EXPECT_TRUE(
        SameBits(AllVerts(*read->lobject()->GetOrigGeom()), std::span(base.GetVertsPtr(), 8)));
    EXPECT_TRUE(
        SameBits(AllVerts(*read->GetDelta()->GetOrigMesh()), std::span(base.GetVertsPtr(), 8)));
    EXPECT_NE(read->lobject()->GetOrigGeom()->GetBarys(), nullptr);

    const std::string older = blockOf(
        "002",
        [&](LBlindData* s) {
            return RecordWriter(s, 1136)
                .Record(1138, *object.GetOrigGeom())
                .Chunk(1139,
                       [&] {
                           return object.topocaches()->WriteTo(
                               s, object.GetOrigGeom()->GetAllVertsPtr());
                       })
                .End();
        },
        [&](LBlindData* s) { return node->GetDelta()->WriteTo(s); });
    ASSERT_EQ(ReadNode(older, *read), 0);
    EXPECT_TRUE(
        SameBits(AllVerts(*read->lobject()->GetOrigGeom()), AllVerts(*object.GetOrigGeom())));
    EXPECT_EQ(read->lobject()->topocaches()->GetSize(), 1);
}

TEST(Records, LookupsCountFromVersion5) {
    LSubdivMesh mesh = Chain(shapes::Cube(), "Q");
    const std::vector<int> lookups(3, 1);
    const std::string bytes = CacheBlock(1681, [&](LBlindData* s) {
        return RecordWriter(s, 1808)
            .Chunk(1809, [&] { return RecordWriter(s, 1814).Array(1821, lookups).End(); })
            .End();
    });
    const auto read = [&](const char* version) {
        LTopoCaches caches;
        return ReadBlock(std::string(bytes).replace(0, 3, version),
                         [&](LBlindData* s) { return caches.ReadFrom(s, mesh); });
    };
    EXPECT_EQ(read("005"), LBlindData::kBadRecord);
    EXPECT_EQ(read("004"), 0);
    EXPECT_FALSE(mesh.GetSubdivs().GetLayer(1)->rule()->smooth) << "as the cache says";
}

TEST(Records, ACacheSaysHowManyQuadsThereAre) {
    LSubdivMesh mesh = Chain(shapes::Cube(), "Q");
    const int nverts = mesh.GetLevelCopy(1)->GetNumVerts();
    for (const unsigned nquads : {24u, 25u, 0x40000018u, 0x7fffffffu, 0x80000018u}) {
        const std::string bytes = CacheBlock(1682, [&](LBlindData* s) {
            RecordWriter record(s, 1844);
            record.Field(1845, nquads).Field(1846, static_cast<unsigned>(nverts));
            for (int v = 0; v < nverts; ++v) record.Field(1847, false);
            return record.End();
        });
        LTopoCaches caches;
        EXPECT_EQ(ReadBlock(bytes, [&](LBlindData* s) { return caches.ReadFrom(s, mesh); }),
                  nquads == 24 ? 0 : LBlindData::kBadRecord)
            << nquads;
    }
}

TEST(Records, LevelsThatDoNotFollowFromTheirBaseComeBackTheSame) {
    PolyMesh triangles;
    triangles.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 1}};
    triangles.cornerVerts = {0, 1, 3, 0, 3, 2};
    triangles.polygonStart = {0, 3, 6};
    const auto node = NodeOf(triangles), other = NodeOf(triangles), third = NodeOf(triangles);
    ASSERT_TRUE(node->SubdivideAll_Quad());
    std::string bytes = NodeBlock(*node);
    const LMesh base = *node->lobject()->GetOrigGeom()->GetLevelCopy(0);
    const size_t at = bytes.find(StoredFaces(base.Faces(), 20));
    ASSERT_NE(at, bytes.npos);
    bytes[at + 4] = 2;  // 0 2 3, which has the edges of the other
    ASSERT_EQ(ReadNode(bytes, *other), 0);
    const std::string written = NodeBlock(*other);
    ASSERT_EQ(ReadNode(written, *third), 0);
    EXPECT_TRUE(NodeBlock(*third) == written);
}

TEST(Records, OldJointsOfAPose) {
    LJoint joint;
    joint.nodename = "hip";
    LPoseTarget pose(nullptr, "lift", 0), read(nullptr, "", 0);
    const std::string bytes = BlockOf([&](LBlindData* s) {
        return RecordWriter(s, 1590)
            .Field(1593, 1)
            .Chunk(1591, [&] { return pose.LMorphTarget::WriteTo(s); })
            .Record(1592, joint)
            .End();
    });
    ASSERT_EQ(ReadRecordOf(bytes, read), 0);
    EXPECT_EQ(read.GetSpace(), kObjectSpace);
    ASSERT_EQ(read.GetNumJoints(), 1);
    EXPECT_EQ(read.GetJoint(0)->nodename, "hip");
}
