#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "core/anim/LControlCollection.h"
#include "core/io/BlindRecord.h"
#include "core/mesh/Triangulation.h"
#include "core/sculpt/LHeadlessNode.h"
#include "core/sculpt/LNodeRecord.h"
#include "tests/core/subdiv/Levels.h"

/// Blocks of bytes, and nodes that fill them.
namespace VantrelSDK::blocks {

/// The block that write(stream), which returns a code, fills.
template <class Write>
std::string BlockOf(const Write& write) {
    LBlindData block;
    EXPECT_EQ(block.BeginWrite(), 0);
    EXPECT_EQ(write(&block), 0);
    EXPECT_EQ(block.EndWrite(), 0);
    return {reinterpret_cast<const char*>(block.GetData()), block.GetSize()};
}

/// The code of read(stream) over a block, whose buffer ends with its last byte.
template <class Read>
int ReadBlock(std::string_view bytes, const Read& read) {
    LBlindData block;
    if (block.SetSize(static_cast<unsigned>(bytes.size())) != 0) return LBlindData::kNoMemory;
    if (!bytes.empty()) std::memcpy(block.GetData(), bytes.data(), bytes.size());
    char version[4];
    if (const int code = block.BeginRead(version)) return code;
    if (const int code = read(&block)) return code;
    return block.EndRead();
}

inline std::string NodeBlock(LNode& node) {
    return BlockOf([&](LBlindData* stream) { return LNodeRecord(node, {}).WriteTo(stream); });
}

/// Reads into a node that has an object.
inline int ReadNode(std::string_view bytes, LNode& node) {
    return ReadBlock(bytes,
                     [&](LBlindData* stream) { return LNodeRecord(node, {}).ReadFrom(stream); });
}

inline std::unique_ptr<LHeadlessNode> NodeOf(const PolyMesh& mesh) {
    auto node = std::make_unique<LHeadlessNode>(1);
    std::string error;
    EXPECT_TRUE(node->Load(mesh, error)) << error;
    return node;
}

/// Everything that a target can hold, about the vertices of the node.
inline void Fill(LMorphTarget& target, LNode& node, unsigned seed) {
    std::mt19937 random(seed);
    const LSubdivMesh& geom = *node.lobject()->GetOrigGeom();
    LSubdivMesh delta(geom, false);
    SparseColors colors;
    for (LPoint3& p : std::span(delta.GetAllVertsPtr(), AllVerts(delta).size()))
        p = random() % 3 ? LPoint3::Zero
                         : LPoint3(seed + 1.0f, static_cast<float>(random() % 9), -0.0f);
    ASSERT_TRUE(target.CopyFromMesh(&delta));
    const int nverts = static_cast<int>(AllVerts(delta).size());
    for (int v = 0; v < nverts; v += 1 + static_cast<int>(random() % 4))
        colors.Append(v, LAColor(0.5f, static_cast<float>(v), 0, 1));
    colors.Pad(nverts);
    target.SetColors(std::move(colors));
    target.CopySkin(geom.GetAllVertsPtr(), geom.GetNumLevelVerts(0));
    target.SetName("target " + std::to_string(seed));
    target.SetBackColor(LColor(0.25f, 0.5f, seed));
    const uint8_t pixels[] = {1, 2, 3, static_cast<uint8_t>(seed)};
    target.setImageBytes(pixels);
    auto joint = target.newJoint();
    joint->nodename = "jaw";
    joint->nodeid = seed;
    joint->rotation = {1, 2, 3};
    joint->scale = {1, 1, 1};
    target.AddJoint(std::move(joint));
}

/// Sets every part of the node that its record holds.
inline void FillNode(LHeadlessNode& node, unsigned seed) {
    std::mt19937 random(seed);
    LSubdivMesh& delta = *node.GetDelta()->GetOrigMesh();
    for (LPoint3& p : std::span(delta.GetAllVertsPtr(), AllVerts(delta).size()))
        p = {static_cast<float>(random() % 7), 0, -0.5f};
    LColorDelta& colours = *node.lcolorDelta();
    for (int v = 0; v < colours.GetNumVerts(-2); v += 1 + static_cast<int>(random() % 3)) {
        const float a = static_cast<float>(random() % 9) / 8;
        colours.SetDeltaByAbsIdx(v, LAColor(a, a / 2, 0, a));
        colours.SetLevelStencil(v, -2, 1 - a);
        colours.SetLevelColor(v, -2, LColor(a, 1, 0.25f));
    }
    const int level0nv = node.GetLevel0Size();
    Fill(*node.GetMorph(3), node, seed);
    Fill(*node.AddMorph(), node, seed + 1);
    Fill(*node.GetNeutral(), node, seed + 2);
    node.updateNeutralLimit(nullptr);
    node._lneutralBackup() = node.lobject()->GetOrigGeom()->GetLevelCopy(0);
    auto group = std::make_unique<LMorphGroup>(&node, "mouth", level0nv);
    Fill(*group->GetTarget(2), node, seed + 3);
    group->blur = 4;
    node.AddMorphGroup(std::move(group));
    auto pose = std::make_unique<LPoseTarget>(&node, "Pose 00", level0nv);
    Fill(*pose, node, seed + 4);
    pose->SetSpace(kObjectSpace);
    pose->SetEnabled(false);
    node.AddPoseMorph(std::move(pose));
    node.AddFlexorMorph(std::make_unique<LFlexorTarget>(&node, "blink", level0nv, 7));
    auto mix = std::make_unique<LMixTarget>(&node, "smile", level0nv);
    Fill(*mix, node, seed + 5);
    mix->SetShow(false);
    node.AddMixTarget(std::move(mix));
    LControlCollection& tracks = node.NeedAnimControls();
    tracks.RemoveAll();
    for (int i = 0; i < 2; ++i) {
        auto track = tracks.createNewControl();
        track->SetType(LMorphControl2::kPhoneme + i);
        track->SetName("track " + std::to_string(seed + i));
        track->Enable(i == 0);
        track->SetJointsOn(i == 1);
        // Two of one time stand as they were added.
        for (const int time : {8000, 500, 8000, -40})
            track->AddKey({.id = time / 1000, .time = time, .weightIn = 0.5f, .weightOut = 2});
        tracks.AddMorphCtrl(std::move(track));
    }
    tracks.SetActive(1);
}

}  // namespace VantrelSDK::blocks
