#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/io/ObjReader.h"
#include "core/io/StrokeLog.h"
#include "core/sculpt/HeadlessTarget.h"
#include "core/sculpt/StrokePlayer.h"

namespace kelmo {

/// The surface of a level after operations on the mesh of a file, without a host: positions one
/// behind another.
inline std::vector<float> Replayed(const std::string& obj,
                                   const std::vector<VantrelSDK::StrokeOp>& operations, int level) {
    using namespace VantrelSDK;
    PolyMesh mesh, result;
    FileError problem;
    std::string error;
    EXPECT_TRUE(ReadObj(obj, mesh, problem)) << problem.Text();
    LHeadlessNode node;
    EXPECT_TRUE(node.Load(mesh, error)) << error;
    HeadlessTarget target(node, mesh);
    StrokePlayer player(target);
    for (const StrokeOp& op : operations) EXPECT_TRUE(player.Play(op, error)) << error;
    EXPECT_TRUE(node.GetResult(mesh, level, result, error)) << error;
    const float* raw = &result.positions.data()->x;
    return {raw, raw + 3 * result.positions.size()};
}

}  // namespace kelmo
