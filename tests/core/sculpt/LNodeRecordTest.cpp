#include "core/sculpt/LNodeRecord.h"

#include <unistd.h>

#include <filesystem>

#include "core/io/ObjReader.h"
#include "core/subdiv/LTopoCaches.h"
#include "core/subdiv/LUVSubdivChannel.h"
#include "tests/core/math/SameBits.h"
#include "tests/core/sculpt/Blocks.h"
#include "tests/shapes/Models.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::blocks;

namespace {

/// A node with a level for each letter, as far as its mesh has them.
std::unique_ptr<LHeadlessNode> NodeOf(const PolyMesh& mesh, const std::string& kinds) {
    auto node = blocks::NodeOf(mesh);
    node->settings().doSmoothProtectOpenEdges = true;
    for (const char kind : kinds)
        if (!(kind == 'q' ? node->SubdivideAll_Quad() : node->SubdivideAll_Loop())) break;
    // A stored geometry always has them.
    node->lobject()->GetOrigGeom()->SetNeedBarys(true);
    return node;
}

void ExpectSameMesh(const LSubdivMesh& a, const LSubdivMesh& b) {
    ASSERT_EQ(a.GetNumSubivLevels(), b.GetNumSubivLevels());
    EXPECT_EQ(a.GetActiveLevel(), b.GetActiveLevel());
    EXPECT_TRUE(SameBits(AllVerts(a), AllVerts(b)));
    for (int level = 0; level < a.GetNumSubivLevels(); ++level)
        EXPECT_TRUE(SameBits(a.LevelTables(level)->Faces(), b.LevelTables(level)->Faces()));
    ASSERT_EQ(a.GetBarys() == nullptr, b.GetBarys() == nullptr);
    EXPECT_TRUE(!a.GetBarys() || SameBits(*a.GetBarys(), *b.GetBarys()));
    EXPECT_EQ(b.Validate(), "");
}

void ExpectSameTarget(const LMorphTarget& a, const LMorphTarget& b) {
    EXPECT_EQ(a.GetName(), b.GetName());
    EXPECT_TRUE(a.geom() == b.geom() && a.proxy() == b.proxy() && a.colors() == b.colors());
    EXPECT_TRUE(SameBits(a.skin(), b.skin()) && SameBits(a.getImageBytes(), b.getImageBytes()));
    EXPECT_EQ(a.IsDefBack(), b.IsDefBack());
    EXPECT_EQ(a.GetSpace(), b.GetSpace());
    ASSERT_EQ(a.GetNumJoints(), b.GetNumJoints());
    for (int i = 0; i < a.GetNumJoints(); ++i)
        EXPECT_EQ(a.GetJoint(i)->nodename, b.GetJoint(i)->nodename);
}

void ExpectSameColours(const LColorDelta& a, const LColorDelta& b) {
    ASSERT_EQ(a.GetNumSubdivLevels(), b.GetNumSubdivLevels());
    EXPECT_EQ(a.GetActiveLevel(), b.GetActiveLevel());
    EXPECT_EQ(a.IsZero(), b.IsZero());
    EXPECT_EQ(a.IsZeroStencil(), b.IsZeroStencil());
    for (int v = 0; v < a.GetNumVerts(-2); ++v) {
        ASSERT_EQ(a.Paints()[v], b.Paints()[v]);
        ASSERT_EQ(a.Stencils()[v], b.Stencils()[v]);
        ASSERT_EQ(a.IncomAt(v), b.IncomAt(v));
    }
}

void ExpectSameTracks(const LControlCollection& a, const LControlCollection& b) {
    ASSERT_EQ(a.NumMorphCtrls(), b.NumMorphCtrls());
    for (int i = 0; i < a.NumMorphCtrls(); ++i) {
        const LMorphControl2 &ofA = *a.GetMorphCtrl(i), &ofB = *b.GetMorphCtrl(i);
        EXPECT_EQ(ofA.GetName(), ofB.GetName());
        EXPECT_EQ(ofA.GetType(), ofB.GetType());
        EXPECT_EQ(ofA.IsActive(), ofB.IsActive());
        EXPECT_EQ(ofA.IsEnabled(), ofB.IsEnabled());
        EXPECT_EQ(ofA.GetJointsOn(), ofB.GetJointsOn());
        EXPECT_TRUE(std::ranges::equal(ofA.Keys(), ofB.Keys()));
    }
}

void ExpectSameNode(const LHeadlessNode& a, const LHeadlessNode& b) {
    ExpectSameMesh(*a.lobject()->GetOrigGeom(), *b.lobject()->GetOrigGeom());
    ExpectSameMesh(*a.GetDelta()->GetOrigMesh(), *b.GetDelta()->GetOrigMesh());
    ExpectSameColours(*a.lcolorDelta(), *b.lcolorDelta());
    const LUVSubdivChannel *ofA = a.lobject()->GetUVChannel(0), *ofB = b.lobject()->GetUVChannel(0);
    ASSERT_EQ(ofA == nullptr, ofB == nullptr);
    for (int level = 0; ofA && level < ofA->GetNumSubdivLevels(); ++level)
        EXPECT_TRUE(SameBits(ofA->LevelFaces(level), ofB->LevelFaces(level)));
    EXPECT_TRUE(!ofA || SameBits(ofA->AllVerts(), ofB->AllVerts()));
    const auto targetsOfA = a.AllTargets(), targetsOfB = b.AllTargets();
    ASSERT_EQ(targetsOfA.size(), targetsOfB.size());
    for (size_t i = 0; i < targetsOfA.size(); ++i) ExpectSameTarget(*targetsOfA[i], *targetsOfB[i]);
    ASSERT_TRUE(a.GetAnimControls() && b.GetAnimControls());
    ExpectSameTracks(*a.GetAnimControls(), *b.GetAnimControls());
}

/// What was read holds each level's topology once, and makes its levels from a new base as the
/// other does.
void ExpectAlive(LHeadlessNode& a, LHeadlessNode& b) {
    LSubdivMesh &ofA = *a.lobject()->GetOrigGeom(), &ofB = *b.lobject()->GetOrigGeom();
    const LSubdivMesh& delta = *b.GetDelta()->GetOrigMesh();
    for (int level = 0; level < ofB.GetNumSubivLevels(); ++level) {
        EXPECT_EQ(delta.GetLevelTopology(level), ofB.GetLevelTopology(level));
        const auto* cache =
            dynamic_cast<LQuadLevelTopoCache*>(b.lobject()->topocaches()->Get(level));
        EXPECT_TRUE(!cache || cache->GetStep().topology == ofB.GetLevelTopology(level + 1));
    }
    for (LSubdivMesh* mesh : {&ofA, &ofB}) {
        for (int v = 0; v < mesh->GetNumLevelVerts(0); ++v)
            mesh->SetVertByAbsIdx(v, mesh->GetVertByAbsIdx(v) * 1.5f + LPoint3(0, v % 3, 0));
        mesh->RebuildLevels();
    }
    EXPECT_TRUE(SameBits(AllVerts(ofA), AllVerts(ofB)));
}

struct File {
    std::string path = testing::TempDir() + "kelmo-node-" + std::to_string(getpid());
    ~File() { std::filesystem::remove(path); }
};

}  // namespace

TEST(NodeRecord, ComesBackEqualAndEqualAgain) {
    for (const shapes::Shape& shape : shapes::ShapesWithFaces())
        for (const char* kinds : {"", "q", "lq", "qql"}) {
            SCOPED_TRACE(shape.name + " " + kinds);
            const auto node = NodeOf(shape.mesh, kinds);
            FillNode(*node, 5);
            node->SetActiveSubdivLevel(node->lobject()->GetOrigGeom()->GetActiveLevel() / 2);
            const std::string bytes = NodeBlock(*node);
            // Over another state of the same node, and into a node that has nothing.
            const auto other = NodeOf(shapes::Cube(), "q");
            FillNode(*other, 9);
            ASSERT_EQ(ReadNode(bytes, *other), 0);
            ExpectSameNode(*node, *other);
            EXPECT_TRUE(NodeBlock(*other) == bytes);
            ExpectAlive(*node, *other);
        }
}

TEST(NodeRecord, ALoadedNodeIsSculptedOn) {
    File file;
    std::string error;
    const auto node = NodeOf(shapes::Sphere(1), "qq");
    FillNode(*node, 1);
    ASSERT_TRUE(node->SaveState(file.path, error)) << error;
    LHeadlessNode loaded(1);
    int version = 0;
    ASSERT_TRUE(loaded.LoadState(file.path, error, &version)) << error;
    EXPECT_EQ(GetKelmoVersionString(version), "v 6.5.03");
    ExpectSameNode(*node, loaded);
    ASSERT_TRUE(loaded.InitSculpt());
    EXPECT_TRUE(SameBits(AllVerts(*loaded.lobject()->GetOrigGeom()),
                         AllVerts(*node->lobject()->GetOrigGeom())));
    const std::vector<LPoint3> before = AllVerts(*node->GetDelta()->GetOrigMesh());
    loaded.FinishSculpt(true);
    for (size_t v = 0; v < before.size(); ++v)
        ASSERT_LT((loaded.GetDelta()->GetOrigMesh()->GetVertByAbsIdx(v) - before[v]).Len(), 1e-4f);
    EXPECT_TRUE(loaded.SubdivideAll_Quad());
    EXPECT_TRUE(loaded.DeleteTopLevelSudiv());
    EXPECT_FALSE(loaded.LoadState(file.path + "/none", error));
    std::filesystem::resize_file(file.path, 2000);
    EXPECT_FALSE(loaded.LoadState(file.path, error));
    EXPECT_NE(error.find("does not match expected"), std::string::npos);
}

TEST(NodeRecord, RealHeadsComeBack) {
    const auto files = shapes::ObjFilesIn(shapes::ModelsFolder());
    if (files.empty()) GTEST_SKIP() << "left out: there are no shared models";
    PolyMesh mesh;
    FileError failed;
    ASSERT_TRUE(ParseObj(shapes::TextOf(files.front()), mesh, failed)) << failed.Text();
    const auto node = NodeOf(mesh, "q");
    FillNode(*node, 2);
    const std::string bytes = NodeBlock(*node);
    const auto other = NodeOf(shapes::Cube(), "");
    ASSERT_EQ(ReadNode(bytes, *other), 0);
    ExpectSameNode(*node, *other);
    EXPECT_TRUE(NodeBlock(*other) == bytes);
}

TEST(NodeRecord, AnyPrefixAndAnyChangedByteIsReadOrRefused) {
    const auto node = NodeOf(shapes::Grid(1, 1), "ql");
    FillNode(*node, 3);
    const std::string bytes = NodeBlock(*node);
    const auto other = NodeOf(shapes::Cube(), "");
    for (size_t size = 0; size < bytes.size(); ++size)
        ASSERT_NE(ReadNode(std::string_view(bytes).substr(0, size), *other), 0) << size;
    int read = 0;
    for (size_t i = 0; i < bytes.size(); ++i) {
        std::string changed = bytes;
        changed[i] = static_cast<char>(changed[i] ^ 1 << i % 8);
        const int code = ReadNode(changed, *other);
        if (i % 64 == 0) {
            ASSERT_TRUE(other->InitSculpt()) << "what is left of a node can be sculpted";
        }
        if (code != 0) continue;
        ++read;
        ASSERT_EQ(other->lobject()->GetOrigGeom()->Validate(), "") << i;
        other->lobject()->GetOrigGeom()->RebuildLevels();
        if (i % 16 != 0) continue;
        ASSERT_EQ(ReadNode(NodeBlock(*other), *other), 0) << i;
    }
    EXPECT_GT(read, 0) << "a coordinate may be any number";
    EXPECT_EQ(ReadNode(bytes, *other), 0);
    ExpectSameNode(*node, *other);
}

TEST(NodeRecord, ColoursThatAreLeftOutOrNoneOfTheirRange) {
    const auto node = NodeOf(shapes::Cube(), "q");
    LColorDelta& colours = *node->lcolorDelta();
    const int base = colours.GetNumVerts(0), all = colours.GetNumVerts(-2);
    const auto read = [&](const auto& write) {
        return ReadBlock(BlockOf([&](LBlindData* stream) {
                             RecordWriter record(stream, 1312);
                             write(record);
                             return record.End();
                         }),
                         [&](LBlindData* stream) { return colours.ReadFrom(stream); });
    };
    const auto counts = [&](RecordWriter& record, int verts) {
        record.Field(1313, true)
            .Field(1314, static_cast<unsigned>(verts))
            .Field(1321, static_cast<unsigned>(colours.GetNumFaces(0)))
            .Record(1324, colours.GetSubdivs());
    };
    // Arrays may be missing: then there is nothing.
    colours.MixColor(3, 1, LColor::cWhite);
    EXPECT_EQ(read([&](RecordWriter& record) { counts(record, base); }), 0);
    EXPECT_TRUE(colours.IsZero() && colours.IsZeroStencil());
    EXPECT_EQ(colours.GetAlpha(3), 0);
    // Numbers from anywhere are held to their range.
    std::vector<float> stencils(base, NAN), alphas(all - base, 7);
    stencils[1] = 0.5f;
    EXPECT_EQ(read([&](RecordWriter& record) {
                  counts(record, base);
                  record.Array(1329, stencils).Array(1319, alphas);
              }),
              0);
    EXPECT_EQ(colours.GetStencil(0), 0);
    EXPECT_EQ(colours.GetStencil(1), 0.5f);
    EXPECT_EQ(colours.GetAlpha(base), 1);
    EXPECT_FALSE(colours.IsZero());
    // Another mesh's, and arrays of another length.
    EXPECT_NE(read([&](RecordWriter& record) { counts(record, base + 1); }), 0);
    stencils.pop_back();
    EXPECT_NE(read([&](RecordWriter& record) {
                  counts(record, base);
                  record.Array(1329, stencils);
              }),
              0);
    EXPECT_EQ(colours.GetStencil(1), 0.5f) << "a failed reading leaves the layer as it was";
}

TEST(NodeRecord, TracksOfOlderVersionsComeIn) {
    const auto node = NodeOf(shapes::Cube(), "");
    FillNode(*node, 4);
    // Targets were counted with the neutral.
    std::string bytes = NodeBlock(*node);
    const auto other = NodeOf(shapes::Cube(), "");
    bytes[2] = '6';
    ASSERT_EQ(ReadNode(bytes, *other), 0);
    const LControlCollection& tracks = *other->GetAnimControls();
    for (int i = 0; i < 2; ++i)
        for (int k = 0; k < 4; ++k)
            EXPECT_EQ(tracks.GetMorphCtrl(i)->Keys()[k].id,
                      node->GetAnimControls()->GetMorphCtrl(i)->Keys()[k].id - (i == 0));

    // A master track and what is under it.
    const auto block = [&](bool also274) {
        return BlockOf([&](LBlindData* stream) {
            const auto track = [stream](int time) {
                return RecordWriter(stream, 592)
                    .Field(593, true)
                    .Field(594, false)
                    .Record(595, LMorphKey{.id = 5, .time = time + 9})
                    .Record(595, LMorphKey{.id = 4, .time = time})
                    .End();
            };
            const auto sub = [&](int time, const char* name) {
                RecordWriter record(stream, 656);
                record.Chunk(657, [&] { return track(time); });
                if (name) record.Text(658, name);
                return record.End();
            };
            RecordWriter record(stream, 257);
            if (also274) record.Record(274, *node->GetAnimControls());
            record.Chunk(260, [&] {
                return RecordWriter(stream, 624)
                    .Chunk(625, [&] { return track(1); })
                    .Chunk(626, [&] { return sub(2, "brows"); })
                    .Chunk(626, [&] { return sub(3, nullptr); })
                    .End();
            });
            record.Chunk(270, [&] {
                return RecordWriter(stream, 624).Chunk(625, [&] { return track(7); }).End();
            });
            return record.End();
        });
    };
    ASSERT_EQ(ReadNode(block(false), *other), 0);
    ASSERT_EQ(tracks.NumMorphCtrls(), 4);
    const char* names[] = {"Phonemes 01", "brows", "Phonemes 03", "Poses 04"};
    const int times[] = {1, 2, 3, 7};
    for (int i = 0; i < 4; ++i) {
        const LMorphControl2& track = *tracks.GetMorphCtrl(i);
        EXPECT_EQ(track.GetName(), names[i]);
        EXPECT_EQ(track.GetType(), i < 3 ? LMorphControl2::kPhoneme : LMorphControl2::kPoses);
        EXPECT_FALSE(track.IsEnabled());
        ASSERT_EQ(track.NumKeys(), 2);
        EXPECT_EQ(track.Keys()[0], (LMorphKey{.id = 4, .time = times[i]})) << "in order of time";
    }
    ASSERT_EQ(ReadNode(block(true), *other), 0);
    ExpectSameTracks(*node->GetAnimControls(), tracks);
}

TEST(NodeRecord, SaysWhichStepFailed) {
    const auto node = NodeOf(shapes::Cube(), "");
    LNodeRecord record(*node, {});
    const std::pair<const char*, const char*> bad[] = {
        {"007<!\x01\x01x*>", "MLNode: can not open chunk\n"},
        {"007<!\x01\x01!\x02\x01!**>", "MLNode: can not read chunk data\n"},
        {"007<!\x01\x01!\x0f\x01!aa***>", "MLNode: can not finish to read chunk\n"},
    };
    for (const auto& [bytes, message] : bad) {
        EXPECT_NE(ReadBlock(bytes, [&](LBlindData* s) { return record.ReadFrom(s); }), 0);
        EXPECT_EQ(record.Message(), message);
    }
    LHeadlessNode empty(1);
    empty.clearMorphs();
    EXPECT_EQ(NodeBlock(empty), "007<!\x01\x01*>");
}
