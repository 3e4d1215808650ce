#include "tests/core/sculpt/Strokes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::strokes;

// Closed forms of the modes that drag what the press has weighted.

TEST(DraggingModes, MoveWithoutFalloffShiftsTheBallUnderTheBrush) {
    const auto node = OpenNode(Boulder(4));
    node->settings().useFalloff = false;
    const std::vector<LPoint3> before = Surface(*node);
    const Press press{.mode = 0, .pos = before[20]};
    const LPoint3 drag(0.3f, -0.1f, 0.2f);
    Stroke(*node, press, {press.pos + drag * 0.5f, press.pos + drag});
    const std::vector<LPoint3> after = Surface(*node);
    for (size_t v = 0; v < before.size(); ++v) {
        const bool inside = (before[v] - press.pos).LenSq() <= press.radius * press.radius;
        EXPECT_LT((after[v] - (inside ? before[v] + drag : before[v])).Len(), 1e-6f);
    }
}

TEST(DraggingModes, RotateWithoutFalloffTurnsTheBallRigidly) {
    const auto node = OpenNode(Boulder(4));
    node->settings().useFalloff = false;
    const std::vector<LPoint3> before = Surface(*node);
    const Press press{.mode = 1, .pos = before[20]};
    // A quarter of a turn: half a radius along the screen's horizontal, about the view direction
    // -z.
    Stroke(*node, press, {press.pos + LPoint3(press.radius / 2, 0, 0)});
    const std::vector<LPoint3> after = Surface(*node);
    double turn = 0;
    for (size_t v = 0; v < before.size(); ++v) {
        const LPoint3 d = before[v] - press.pos, e = after[v] - press.pos;
        if (d.LenSq() > press.radius * press.radius) {
            EXPECT_EQ(before[v], after[v]);
            continue;
        }
        EXPECT_NEAR(d.z, e.z, 1e-6f);
        const double length = std::hypot(d.x, d.y);
        EXPECT_NEAR(std::hypot(e.x, e.y), length, 1e-5);
        if (length < 0.01) continue;
        EXPECT_NEAR(d.x * e.x + d.y * e.y, 0, 1e-4);
        const double sign = d.x * e.y - d.y * e.x;
        if (turn == 0) turn = sign;
        EXPECT_GT(sign * turn, 0) << "all turn the same way";
    }
}

TEST(DraggingModes, DraggingBackRestoresTheShape) {
    for (int mode = 0; mode <= 7; ++mode) {
        const auto node = OpenNode(Boulder(4));
        const std::vector<LPoint3> before = Surface(*node);
        const Press press{.mode = mode, .pos = before[11]};
        node->settings().sculptMode = mode;
        node->InitTransform(press.pos, press.dir, press.orth, press.normal, {0, 0}, press.radius,
                            mode, false);
        node->Transform(press.pos + LPoint3(0.2f, 0.1f, 0), {0.3f, 0}, press.normal);
        node->Transform(press.pos, {0, 0}, press.normal);
        node->FinishTransform(true);
        const std::vector<LPoint3> after = Surface(*node);
        for (size_t v = 0; v < before.size(); ++v)
            ASSERT_LT((after[v] - before[v]).Len(), 1e-6f) << "mode " << mode;
    }
}

TEST(DraggingModes, PullAndPushAreOppositeAndFollowTheDrag) {
    std::vector<LPoint3> pulled, pushed, start;
    for (const int mode : {2, 3}) {
        const auto node = OpenNode(Boulder(4));
        start = Surface(*node);
        const Press press{.mode = mode, .pos = start[2]};
        Stroke(*node, press, {press.pos + press.orth * 0.1f});
        (mode == 2 ? pulled : pushed) = Surface(*node);
    }
    // Outwards at the pole of the press for a drag to the right.
    EXPECT_GT((pulled[2] - start[2]) % start[2], 0.05f);
    for (size_t v = 0; v < start.size(); ++v)
        EXPECT_LT((pulled[v] + pushed[v] - start[v] - start[v]).Len(), 1e-6f);
}

TEST(DraggingModes, ShapeModesActOnADragToTheRightOnly) {
    for (const int mode : {5, 6, 7}) {
        const auto node = OpenNode(Boulder(4));
        const LPoint3 pos = Surface(*node)[30];
        Stroke(*node, {.mode = 8, .pos = pos}, Path(pos, {0.05f, 0, 0}, 3));
        const std::vector<LPoint3> before = Deltas(*node);
        const auto drag = [&](const LPoint2& screen) {
            node->settings().sculptMode = mode;
            node->InitTransform(pos, {0, 0, -1}, {1, 0, 0}, {0, 0, 1}, {0.5f, 0.5f}, 0.4f, mode,
                                false);
            node->Transform(pos + LPoint3(0.1f, 0, 0), screen, {0, 0, 1});
            node->FinishTransform(true);
            return Deltas(*node);
        };
        EXPECT_TRUE(SameBits(drag({0.3f, 0.5f}), before)) << "to the left";
        EXPECT_TRUE(SameBits(drag({0.5f, 0.9f}), before)) << "straight up";
        EXPECT_FALSE(SameBits(drag({0.6f, 0.5f}), before)) << "to the right";
    }
}

TEST(DraggingModes, InflateWithoutDragMovesNothing) {
    const auto node = OpenNode(Boulder(4));
    const std::vector<LPoint3> before = Surface(*node);
    const Press press{.mode = 4, .pos = before[2]};
    Stroke(*node, press, {press.pos + LPoint3(0, 0.2f, 0)});  // across the horizontal: s = 0
    EXPECT_TRUE(SameBits(Surface(*node), before));
    Stroke(*node, press, {press.pos - press.orth * 0.2f});  // to either side it grows
    for (size_t v = 0; v < before.size(); ++v)
        EXPECT_GE(Surface(*node)[v].Len(), before[v].Len() - 1e-6f);
}

TEST(DraggingModes, ASymmetricMoveIsItsOwnMirrorImage) {
    for (int axis = 0; axis < 3; ++axis) {
        const auto node = OpenNode(shapes::Sphere(5));  // exactly symmetric
        node->settings().symmetry = axis + 1;
        const std::vector<LPoint3> before = Surface(*node);
        // Near the plane of symmetry, so that both sides meet.
        Press press{.mode = 0, .pos = Normalized({0.4f, 0.5f, 0.6f})};
        (axis == 0 ? press.pos.x : axis == 1 ? press.pos.y : press.pos.z) = 0.1f;
        Stroke(*node, press, {press.pos + LPoint3(0.1f, 0.2f, 0.15f)});
        const std::vector<LPoint3> after = Surface(*node);
        int moved = 0;
        for (size_t v = 0; v < before.size(); ++v) {
            const LPoint3 mirror = Mirrored(before[v], axis);
            const auto other = std::find(before.begin(), before.end(), mirror) - before.begin();
            ASSERT_LT(other, static_cast<long>(before.size()));
            EXPECT_LT((after[other] - Mirrored(after[v], axis)).Len(), 1e-6f);
            moved += !(after[v] == before[v]);
        }
        EXPECT_GT(moved, 100);
    }
}

TEST(DraggingModes, OnlySelectedVerticesMoveWhenAsked) {
    const auto node = OpenNode(shapes::Grid(20, 20));
    for (int f = 0; f < node->lobject()->GetNumFaces() / 2; ++f)
        node->lobject()->SelectFace(f, true, false);
    node->lobject()->SelectFace(0, true, true);
    node->settings().useSelected = true;
    const std::vector<LPoint3> before = Surface(*node);
    Stroke(*node, {.mode = 0, .pos = {0, 0, 0}, .radius = 2}, {{0, 0, 0.5f}});
    const std::vector<LPoint3> after = Surface(*node);
    int moved = 0;
    for (size_t v = 0; v < before.size(); ++v) {
        const bool selected = node->lobject()->IsVertSelected(static_cast<int>(v));
        // The border to what is not selected stays with it.
        EXPECT_EQ(selected, before[v].y < -0.01f) << before[v].y;
        EXPECT_EQ(after[v] == before[v], !selected);
        moved += selected;
    }
    EXPECT_GT(moved, 100);
}
