#include "core/mesh/LQuad.h"

#include <gtest/gtest.h>

#include <vector>

using namespace VantrelSDK;

// Both halves, for every diagonal and every choice of visible edges: they turn as the quad does, an
// edge is as visible as in the quad, and the diagonal is edge 2, gluing and hidden.
TEST(LQuad, SplitsAlongItsDiagonalAndKeepsEdgeVisibility) {
    for (int bits = 0; bits < 32; ++bits) {
        LQuad quad;
        for (int k = 0; k < 4; ++k) quad.v[k] = 10 + k;
        quad.flags = static_cast<uint8_t>(bits << 1);
        const bool diagonal02 = bits & 16;
        LFace halves[2];
        quad.Split(halves[0], halves[1]);
        EXPECT_EQ(halves[0].CornerOf(10) >= 0, diagonal02);
        int edges = 0;
        for (const LFace& face : halves) {
            EXPECT_EQ(face.id, -1);
            for (int k = 0; k < 2; ++k) {
                const int from = face.v[k] - 10, to = face.v[k + 1] - 10;
                EXPECT_EQ(to, (from + 1) % 4);
                EXPECT_EQ(face.IsEdgeVisible(k), bool(bits >> from & 1));
                EXPECT_FALSE(face.IsEdgeGluing(k));
                edges |= 1 << from;
            }
            EXPECT_TRUE(face.IsEdgeGluing(2));
            EXPECT_FALSE(face.IsEdgeVisible(2));
        }
        EXPECT_EQ(edges, 15);
    }
}

TEST(LFace, KnowsItsOnlyHiddenEdge) {
    const auto hidden1 = [](int flags) {
        LFace face;
        face.flags = static_cast<uint8_t>(flags);
        return face.IsOnlyHiddenEdge(1);
    };
    EXPECT_TRUE(hidden1(0b101));
    EXPECT_FALSE(hidden1(0b111));
    EXPECT_FALSE(hidden1(0b100));
}
