#pragma once

#include <maya/MDataHandle.h>
#include <maya/MObject.h>
#include <maya/MPlugArray.h>
#include <maya/MTime.h>

#include <functional>

namespace VantrelSDK {

class KelmoMorphControl2;
class MLNode;

/// What a node answers the host: its surface for a time, and what it does when a plug is written or
/// connected. The two node classes forward to this.
class NodeEvaluation {
  public:
    /// Which of the outputs is asked for.
    enum class Output { kGeometry, kProxy, kDisplay };
    explicit NodeEvaluation(MLNode& node) : node_(node) {}

    /// Brings the node to the time and the input, and makes the output. The inputs are given as
    /// functions, since reading one evaluates what feeds it. kFailure without an input mesh.
    MStatus Compute(Output output, const std::function<MObject()>& input,
                    const std::function<bool(MTime&)>& time, MDataHandle& to);
    /// A plug was written, at once, or became stale. `affected` takes the plugs that become stale
    /// beyond those that depend on it anyway.
    void SetDependentsDirty(const MPlug& plug, MPlugArray& affected);
    void ConnectionMade(const MPlug& plug, const MPlug& other, bool asSrc);
    void ConnectionBroken(const MPlug& plug, const MPlug& other, bool asSrc);

  private:
    void InputBecameStale();
    int ChooseLevel(Output output);
    int LevelInUse(int level) const;
    bool IsInputDue(int level) const;
    bool HasLevels(int level) const;
    bool TakeInput(const MObject& input, Output output, int level);
    void TakeTime(const MTime& time, int level);
    MStatus Export(const MObject& input, int level, MDataHandle& to);
    void BeginStroke();
    void Step();
    void TimeChanged();
    void AppendOutputs(MPlugArray& affected) const;
    void PassSurface();
    void ShowColors();
    void RefreshPatterns();
    void UseStencil();
    KelmoMorphControl2* TrackOf(const MPlug& plug) const;

    MLNode& node_;
};

}  // namespace VantrelSDK
