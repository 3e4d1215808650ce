#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/io/StrokeJournal.h"
#include "core/io/StrokeLog.h"
#include "core/sculpt/StrokeListener.h"
#include "core/sculpt/StrokeTarget.h"

namespace VantrelSDK {

/// Writes what is done to a node into a journal, as a stroke log that StrokePlayer plays back to
/// the same bits on a node in the state that this one was in when the recording began. All settings
/// that count are written before the first stroke, later those that have changed.
///
/// A press waits until what came before it is on disk; a stroke is handed to the disk as a whole
/// when it is released.
class StrokeRecorder : public StrokeListener {
  public:
    /// Both are borrowed; from now on the node of `target` tells it. The journal is open.
    StrokeRecorder(StrokeTarget& target, StrokeJournal& journal);
    ~StrokeRecorder() override;
    StrokeRecorder(const StrokeRecorder&) = delete;
    StrokeRecorder& operator=(const StrokeRecorder&) = delete;

    /// A setting may have changed inside a stroke; a press looks anyway.
    void SettingsChanged() { settingsChanged_ = true; }
    /// Something was done that no log can tell: what was written no longer gives what there is.
    bool IsBroken() const { return broken_; }
    int NumStrokes() const { return strokes_; }

    void Pressed(const LPoint3& pos, const LPoint3& dir, const LPoint3& orth, const LPoint3& normal,
                 const LPoint2& screen, float radius, int mode) override;
    void Moved(const LPoint3& pos, const LPoint2& screen, const LPoint3& normal) override;
    void Released() override;
    void Undone() override;
    void Subdivided(bool quad) override;
    void LevelDeleted() override;
    void LevelSet(int level) override;
    void HiddenChanged() override;
    void SelectionChanged() override;
    void Painted(PaintEdit edit) override;
    void NeutralMade() override;
    void NeutralCleared() override;
    void SessionClosed() override;
    void Replaced() override;

  private:
    using Key = std::pair<std::string_view, int>;

    void Add(const StrokeOp& op);
    /// An operation outside a stroke, which goes to disk at once.
    void AddWhole(const StrokeOp& op);
    void AddSettings();
    void AddSetting(std::string_view name, int index);
    void AddSet(std::string_view name, int index, const SettingValue& value);
    void AddFalloff(int curve);
    void AddModifiers();
    void AddMask();
    std::vector<int> PolygonsWhere(bool hidden);

    StrokeTarget& target_;
    StrokeJournal& journal_;
    std::map<Key, SettingValue> written_;
    Ramp falloffs_[2];
    std::vector<int> hidden_, selected_;
    std::optional<ScreenMask> mask_;
    /// The running stroke has a pattern, whose picture no log has. One that has from the start is
    /// not written.
    bool patterned_ = false;
    bool shift_ = false, ctrl_ = false, inStroke_ = false, settingsChanged_ = false;
    bool broken_ = false;
    /// Strokes written that may be taken back.
    int undoable_ = 0;
    int mode_ = -1, strokes_ = 0;
};

}  // namespace VantrelSDK
