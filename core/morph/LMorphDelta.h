#pragma once

#include <climits>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "core/mesh/LIndexCache.h"
#include "core/mesh/ZeroedArray.h"
#include "core/morph/UndoStack.h"
#include "core/subdiv/LSubdivMesh.h"

namespace VantrelSDK {

class LBlindData;
class LMeshBasesUV2;
class LNode;

/// What one stroke changed: the values that its vertices had before it.
struct UndoData {
    struct Entry {
        int vert;
        LPoint3 value;
    };
    std::vector<Entry> undos;
};

using UndoStack = StrokeUndoStack<UndoData>;

/// The working delta of a node: an offset from the base shape for each vertex of all levels, in
/// object space during a sculpt session and in the frames of the surface between sessions. The
/// brushes write here, and so does the evaluation of a frame.
///
/// A stroke pays for the vertices that it touches: before a vertex is first written its value is
/// kept, and the undo record is made of what was kept.
///
/// All levels lie in one array, so a stroke on a lower level writes only its first part. The levels
/// above follow when the level changes. A level above splits into a coarse part, the interpolation
/// of the active level, and details on it, which are held in the frames of the surface that they
/// lie on: they stay in place when that moves and turn with it (the object's active UV channel
/// gives the frames; without one details stay in object space). Where nothing moved the bits stay.
class LMorphDelta {
  public:
    /// All zero, with the topology of `geom`. `owner` is borrowed and may be null.
    LMorphDelta(LNode* owner, const LSubdivMesh& geom);
    virtual ~LMorphDelta() = default;

    LNode* owner() const { return owner_; }

    /// Vertices of the active level, or of `level`.
    void SetVert(int i, const LPoint3& d) { mesh_->SetVert(i, d); }
    void OffsetVert(int i, const LPoint3& d) { mesh_->OffsetVert(i, d); }
    void OffsetVert(int i, const LPoint3& d, int level) { mesh_->OffsetLevelVert(i, d, level); }
    void ClearVerts() { mesh_->ClearVerts(); }
    void ClearAllLevelsVerts() { mesh_->ClearAllLevelsVerts(); }
    LPoint3 MorphVector(int i) const { return mesh_->GetVert(i); }
    LPoint3 MorphVector(int i, int level) const { return mesh_->GetLevelVert(i, level); }
    LSubdivMeshI* GetMesh() { return mesh_.get(); }
    LSubdivMesh* GetOrigMesh() { return mesh_.get(); }
    const LSubdivMesh* GetOrigMesh() const { return mesh_.get(); }
    void SetLevelChangedFlag(bool changed) { mesh_->SetLevelChangedFlag(changed); }
    /// The longest offset of the active level.
    float GetMaxDelta() const;
    /// Some vertex of some level has an offset.
    bool HasOffsets() const;
    /// Clears all levels for other offsets to come in: no backup, undo or detail applies to them.
    LSubdivMesh* ReplaceAll();

    /// The sum of a frame, in tangent space, in place of what there is: the owner's neutral and
    /// then its terms, of the vertices of `levels` levels. Without `interpolate` the terms are left
    /// out while `time` (in ticks) is between valid0 and valid1.
    void EvalDelta(int time, int skipGroup, bool interpolate, int levels);
    /// Marks the vertices that the frame of a time would move: one byte for each of `count`.
    void EvalTags(int time, char* tags, int count) const;
    /// The time for which the last sum stays right, ends included; nothing after Invalidate.
    int valid0() const { return valid0_; }
    int valid1() const { return valid1_; }
    void Invalidate() {
        valid0_ = INT_MAX;
        valid1_ = INT_MIN;
    }

    /// Makes room for the kept values of the active level. Costs nothing when it is there.
    void AllockBack();
    /// Keeps the value of a vertex of the active level before its first change in a stroke.
    void DirtyVert(int v);
    /// DirtyVert in parts, for workers that each have vertices of their own: a worker sets the mark
    /// of a vertex that has none and keeps its value in Back (both by vertex); Join, called by one
    /// thread afterwards, takes those that were new. Call AllockBack first.
    uint8_t* DirtyMarks() { return dirty_.Marks(); }
    LPoint3* Back() { return back_.data(); }
    void Join(std::span<const int> kept) { dirty_.Join(kept); }
    /// The vertices of the stroke so far, each once.
    std::span<const int> DirtyVerts() const { return dirty_.Items(); }
    /// Makes the undo record of the stroke (with `full`, one of the whole level before it) and
    /// starts anew. Returns the number of vertices that the stroke changed.
    int CacheUndo(bool full);
    /// Pushes an empty record, which keeps the stacks of several deltas in step.
    void FakeUndo() { undos_.Push({}); }
    /// Gives back the values before the newest stroke. False when there is nothing to undo, or the
    /// record is empty. `restored`, when given, takes the vertices.
    bool Undo(std::vector<int>* restored = nullptr);
    void FlushUndo() { undos_.Clear(); }
    size_t GetNumUndos() const { return undos_.GetSize(); }

    /// Levels. Each of these flushes the undo stack.
    /// With `keep`, levels above the former active one first follow what was sculpted on it;
    /// `reach`, which may be empty, is told how far that is, from 0 to 1.
    bool SetActiveSubdivLevel(unsigned level, bool keep,
                              const std::function<void(float)>& reach = {});
    bool SubdivideAll_Loop(bool smooth, bool protectopen);
    bool SubdivideAll_Quad(bool smooth, bool protectopen, const LEdgeListFlagged* edges = nullptr);
    /// Adds the next level of `geom`, sharing its topology, by plain interpolation.
    bool SubdivideLike(const LSubdivMesh& geom);
    bool DeleteTopLevelSudiv();

    /// Remembers the active level as the upper levels know it. Nothing at the top unless `force`.
    void CacheDetails(bool force);
    /// Carries what changed on the active level since CacheDetails up to the top. False when there
    /// was nothing to do.
    bool UpdateFullRes(const std::function<void(float)>& reach = {});
    void UpdateUpperLayers() {
        UpdateFullRes();
        CacheDetails(false);
    }
    /// The active level has been changed by other means than strokes: nothing is carried up.
    void ForgetDetails();
    void SetDetailsDirty(bool dirty) { detailsDirty_ = dirty; }
    bool detailsDirty() const { return detailsDirty_; }

    /// Keeps a copy of all levels, in tangent space when bases are given, so that it can be read
    /// back in the frames of another pose.
    void MakeBackup(LMeshBasesUV2* bases);
    /// Reads the copy back, through the bases as they are now, and drops it; its upper levels have
    /// followed already. False without one.
    bool RestoreBackup(LMeshBasesUV2* bases);
    /// The delta changed since the backup, or none applies.
    void SetBackupDirty(bool dirty) { backupDirty_ = dirty; }
    bool GetBackupDirty() const { return backupDirty_; }
    const LSubdivMesh* GetBackup() const { return backup_.get(); }
    void DropBackup() {
        backup_.reset();
        backupDirty_ = true;
    }

    /// The offsets of all levels as a record; upper levels must have followed. Both return one of
    /// LBlindData's codes. What is read must have the levels of the owner's object, when there is
    /// one, whose topology it shares; it forgets undo records and backup. A failed reading leaves
    /// the delta as it was.
    virtual int WriteTo(LBlindData* stream) const;
    virtual int ReadFrom(LBlindData* stream);

  private:
    bool HasMovedSince(std::span<const LPoint3> known) const;
    std::vector<LPoint3> CoarsePart(std::span<const LPoint3> active) const;

    LNode* owner_;
    std::unique_ptr<LSubdivMesh> mesh_;
    UndoStack undos_;
    LIndexCache dirty_;
    /// Values before the stroke, by vertex; only those of dirty_ hold something.
    ZeroedArray<LPoint3> back_;
    /// The active level's values at the last CacheDetails; empty at the top.
    std::vector<LPoint3> known_;
    bool detailsDirty_ = true;
    std::unique_ptr<LSubdivMesh> backup_;
    bool backupDirty_ = true;
    int valid0_ = INT_MAX, valid1_ = INT_MIN;
};

}  // namespace VantrelSDK
