#pragma once

#include "core/math/LPoint2.h"
#include "core/math/LPoint3.h"
#include "core/paint/PaintEdit.h"

namespace VantrelSDK {

/// Hears what is done to a node's surface, when it was done; a press and a move just before. What
/// did nothing is not told.
class StrokeListener {
  public:
    virtual ~StrokeListener() = default;

    /// As LNode::InitTransform and Transform were given them.
    virtual void Pressed(const LPoint3& pos, const LPoint3& dir, const LPoint3& orth,
                         const LPoint3& normal, const LPoint2& screen, float radius, int mode) = 0;
    virtual void Moved(const LPoint3& pos, const LPoint2& screen, const LPoint3& normal) = 0;
    virtual void Released() = 0;
    /// A stroke was taken back, also one that had changed nothing.
    virtual void Undone() = 0;
    virtual void Subdivided(bool quad) = 0;
    virtual void LevelDeleted() = 0;
    virtual void LevelSet(int level) = 0;
    virtual void HiddenChanged() = 0;
    virtual void SelectionChanged() = 0;
    virtual void Painted(PaintEdit edit) = 0;
    virtual void NeutralMade() = 0;
    virtual void NeutralCleared() = 0;
    virtual void SessionClosed() = 0;
    /// What was sculpted, or what it lies on, was replaced by something that none of these tells.
    virtual void Replaced() = 0;
};

}  // namespace VantrelSDK
