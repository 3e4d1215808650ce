#pragma once

#include <maya/MPlug.h>
#include <maya/MPlugArray.h>
#include <maya/MString.h>
#include <maya/MTime.h>

#include <span>

#include "core/paint/PaintEdit.h"

namespace VantrelSDK {

class LControlCollection;
class LMorphControl2;
class LMorphTarget;
class MLNode;
class MLPattern;
class MLPatternCollection;

/// What a node is told to do: a number in `commnad`, what it needs in `param0` to `param3`, and any
/// value written to `execute` or `execute0` runs it; answers are left in the parameters. Tools,
/// commands and scripts know no other way in.
class NodeCommands {
  public:
    using Command = void (NodeCommands::*)();
    struct Row {
        int number;
        Command command;
    };

    explicit NodeCommands(MLNode& node) : node_(node) {}

    /// Runs what `commnad` names; nothing for a number that is none. `affected` takes the plugs
    /// that become stale.
    void Run(MPlugArray& affected);

    static std::span<const Row> SessionRows();
    static std::span<const Row> TargetRows();
    static std::span<const Row> TrackRows();
    static std::span<const Row> StateRows();
    static std::span<const Row> LevelRows();
    static std::span<const Row> NeutralRows();
    static std::span<const Row> PaintRows();
    static std::span<const Row> MaterialRows();
    static std::span<const Row> PatternRows();

  private:
    // Parameters.
    int Index() const;
    float Number() const;
    MString Text() const;
    MObject Given() const;
    void Answer(int value);
    void Answer(float value);
    void Answer(const MString& text);
    void Error(const char* text) const;

    /// The target of `param0`; null, which is told, for a wrong number.
    LMorphTarget* Target() const;
    LMorphTarget* Neutral() const;
    /// The surface is another: outputs become stale and the next evaluation runs.
    void OutputChanged();
    /// The node has a mesh to work on, which it takes now where it has not yet.
    bool HasGeometry();

    // Session, ray, undo.
    void BeginSculpt();
    void EndSculpt();
    void ExportMesh();
    void PickByRay();
    void UndoStroke();
    void MergeTweaks();
    void EvaluateAgain();
    void UpdateFalloffs();
    void PreRender();
    void PostRender();
    void ForceCache();
    void ZeroWork();
    void RebuildOctree();
    void ClearShots();

    // Stored shapes.
    void TargetName();
    void SetTargetName();
    void LoadTarget();
    void TargetToDelta();
    void ImportTarget();
    void ImportTargetObj();
    void ExportTarget();
    void TotalTargets();
    void StandardTargets();
    void ExtendedTargets();
    void AddTarget();
    void DeleteTarget();
    void IsTargetZero();
    void ClearTarget();
    void AddProxies();

    // Tracks.
    LControlCollection* Tracks();
    LMorphControl2* Track();
    LMorphControl2* TrackInUse();
    void AddKey(int target, bool phonemesOnly);
    void ShowNewKey(const MTime& time, int target);
    bool HasPhonemeTrack();
    int NewTrack(int type);
    void KeyTarget();
    void KeyNeutral();
    void JointsOn();
    void SetJointsOn();
    void IsPhonemeTrack();
    void TrackCount();
    void TrackName();
    void TrackType();
    void RenameTrack();
    void AddTrack();
    void DeleteTrack();
    void ActivateTrack();
    void ActiveTrack();
    void EnableTrack();
    void IsTrackOn();
    void HideKeys();
    void ShowKeys();

    // State.
    void PreSave();
    void Restore();
    void PostSave();
    void ImportRecord();
    void ExportRecord();
    void WorkVectors();
    void PassStencil();
    void PassRefImage();

    // Levels, selection, UV sets.
    void BeginSelect();
    void LevelCount();
    void ActiveLevel();
    void SetActiveLevel();
    void LevelType();
    void LevelVerts();
    void LevelFaces();
    void LevelName();
    void Subdivide();
    void DeleteLevel();
    void ClearSelection();
    void ExpandSelection();
    void ReduceSelection();
    void HideSelected();
    void ShowAll();
    void InvertHidden();
    void UVSetCount();
    void UVSetName();
    void SetUVSet();
    void SetSmoothing();
    void UpdateUVSets();

    // Vertex colours and stencils.
    void ClearPaint();
    void InvertPaint();
    void FillPaint();
    void ColorToStencil();
    void StencilToColor();
    void CountMasks();
    void MaskName();
    void UpdateMask();
    void EditPaint(PaintEdit edit);

    // Materials and their maps.
    void UpdateDisplayMaps();
    void UpdateMaterials();
    void WriteMaterials();
    void HasMaterials();
    void CanWriteMaps();
    // Patterns.
    void PatternCount();
    void AddPattern();
    void DeletePattern();
    void LoadPattern();
    void SelectPattern();
    void HitPattern();
    void ActivePattern();
    void PatternName();
    void SetPatternName();
    void WriteSwatches();
    void PatternSwatchName();
    void WriteSwatch();
    void Select(int index);
    void PatternChanged();
    MLPatternCollection& Patterns();
    /// That of `param0`; null, which is told, for a wrong number.
    MLPattern* Pattern();

    // The neutral.
    void SetNeutralize();
    void LoadNeutral();
    void LoadNeutralWhenEmpty();
    void NeutralToDelta();
    void ClearNeutral();
    void ImportNeutral();
    void ImportNeutralObj();
    void ExportNeutral();
    void IsNeutralZero();

    MLNode& node_;
    MPlugArray* affected_ = nullptr;
};

}  // namespace VantrelSDK
