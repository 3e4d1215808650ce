#pragma once

#include <string>
#include <vector>

#include "core/io/StrokeLog.h"
#include "core/sculpt/LNode.h"
#include "core/sculpt/StrokeTarget.h"

namespace VantrelSDK {

/// Plays the operations of a stroke log on a node.
class StrokePlayer {
  public:
    /// Borrowed; it has a mesh. Lets go of the modifier keys: a log begins so.
    explicit StrokePlayer(StrokeTarget& target);
    /// Lets go of the modifier keys and of a mask.
    ~StrokePlayer();

    /// Opens the sculpt session that strokes need, when it is not open. False, with the reason,
    /// when it can't be opened. The first press does it too.
    bool OpenSession(std::string& error);
    /// Does one operation. False, with what is wrong, for a level or a polygon that does not exist
    /// and for a level that can't be made; the node is then as it was.
    bool Play(const StrokeOp& op, std::string& error);

    /// Vertices that the strokes changed, added up.
    long long VerticesTouched() const { return touched_; }

  private:
    bool Do(const SetOp& op, std::string& error);
    bool Do(const FalloffOp& op, std::string& error);
    bool Do(const SubdivideOp& op, std::string& error);
    bool Do(const DeleteLevelOp& op, std::string& error);
    bool Do(const LevelOp& op, std::string& error);
    bool Do(const PressOp& op, std::string& error);
    bool Do(const MoveOp& op, std::string& error);
    bool Do(const ReleaseOp& op, std::string& error);
    bool Do(const UndoOp& op, std::string& error);
    bool Do(const ModifiersOp& op, std::string& error);
    bool Do(const SelectOp& op, std::string& error);
    bool Do(const HideOp& op, std::string& error);
    bool Do(const ShowOp& op, std::string& error);
    bool Do(const StoreOp& op, std::string& error);
    bool Do(const LoadOp& op, std::string& error);
    bool Do(const ApplyOp& op, std::string& error);
    bool Do(const NeutralOp& op, std::string& error);
    bool Do(const ClearNeutralOp& op, std::string& error);
    bool Do(const PaintOp& op, std::string& error);
    bool Do(const MaskOp& op, std::string& error);
    bool Do(const UnmaskOp& op, std::string& error);
    bool Do(const FinishOp& op, std::string& error);
    LMorphTarget* Find(const std::string& target, std::string& error) const;
    bool CheckPolygons(const std::vector<int>& polygons, std::string& error) const;
    template <class Edit>
    void ForFaces(const std::vector<int>& polygons, Edit edit);

    StrokeTarget& target_;
    LNode& node_;
    long long touched_ = 0;
};

}  // namespace VantrelSDK
