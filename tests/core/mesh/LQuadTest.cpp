#include "core/mesh/LQuad.h"

#include <gtest/gtest.h>

using namespace VantrelSDK;

// For every diagonal and every choice of visible edges.
TEST(LQuad, SplitsAlongItsDiagonalAndKeepsEdgeVisibility) {
    for (int bits = 0; bits < 32; ++bits) {
        LQuad quad;
        for (int k = 0; k < 4; ++k) quad.v[k] = 10 + k;
        quad.flags = static_cast<uint8_t>(bits << 1);
        LFace halves[2];
        quad.Split(halves[0], halves[1]);
        EXPECT_EQ(halves[0].CornerOf(10) >= 0, (bits & 16) != 0);
        int edges = 0;
        for (const LFace& face : halves) {
            for (int k = 0; k < 2; ++k) {
                const int from = face.v[k] - 10;
                EXPECT_EQ(face.v[k + 1] - 10, (from + 1) % 4);
                EXPECT_EQ(face.IsEdgeVisible(k), bool(bits >> from & 1));
                edges |= 1 << from;
            }
            EXPECT_EQ(face.flags & ~3, 32);  // edge 2 is gluing and hidden
        }
        EXPECT_EQ(edges, 15);
    }
}

TEST(LFace, KnowsItsOnlyHiddenEdge) {
    for (const int flags : {0b101, 0b111, 0b100}) {
        LFace face;
        face.flags = static_cast<uint8_t>(flags);
        EXPECT_EQ(face.IsOnlyHiddenEdge(1), flags == 0b101);
    }
}
