#pragma once

#include <climits>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "core/math/LColor.h"
#include "core/mesh/LFace.h"
#include "core/mesh/LIndexCache.h"
#include "core/mesh/LMeshTopology.h"
#include "core/mesh/ZeroedArray.h"
#include "core/morph/UndoStack.h"
#include "core/paint/PaintMix.h"
#include "core/subdiv/LSubdivCollection.h"

namespace VantrelSDK {

class LBlindData;
class LNode;
class LSubdivMesh;

/// The paint layer of one sculpted mesh. Each vertex of every level has four things: the colour
/// that came in with the mesh, paint (a colour multiplied by its coverage, see PaintMix.h), the
/// coverage (alpha), and a stencil value. What a vertex shows is made of these whenever somebody
/// asks: incoming * (1 - alpha) + paint.
///
/// A stroke works on the active level. As in the geometry, a vertex keeps its number on all levels
/// from its own up, so the number on a level and the number through all levels are the same, and a
/// level is the front part of the arrays. Levels above the active one follow when the level
/// changes: paint by the difference, so that what was painted there stays, and a stencil by its
/// value.
///
/// Unpainted vertices cost no memory that counts: paint and stencils lie in pages that come when
/// they are first written, incoming colours are one colour until they differ.
///
/// Not to be changed by two threads at a time, but for the workers of a step (see Kept).
class LColorDelta {
  public:
    /// What a mesh without colours comes in with.
    static constexpr LColor cBare{0.75f, 0.65f, 0.64f};

    /// The state of one vertex before a stroke.
    struct UndoVert {
        uint32_t index;
        LColor color;
        float alpha, stencil;
    };
    static_assert(sizeof(UndoVert) == 24);
    /// Everything, of all levels, before an edit of everything.
    struct Whole;
    struct UndoData {
        UndoData();
        UndoData(UndoData&&) noexcept;
        UndoData& operator=(UndoData&&) noexcept;
        ~UndoData();

        std::vector<UndoVert> undos;
        /// Null in the record of a stroke.
        std::unique_ptr<Whole> whole;
    };

    /// Empty. The owner is borrowed and may be null in all of these.
    explicit LColorDelta(LNode* owner) : owner_(owner) {}
    /// One level of these counts without faces, nothing painted.
    LColorDelta(LNode* owner, int nverts, int nfaces, const LColor& incom = LColor::cBlack);
    /// The levels of a mesh, whose topology it shares, nothing painted.
    LColorDelta(LNode* owner, const LSubdivMesh& geom, const LColor& incom = cBare);
    /// A deep copy, without undo records.
    LColorDelta(LNode* owner, const LColorDelta& other);
    LColorDelta& operator=(const LColorDelta&) = delete;
    virtual ~LColorDelta() = default;

    /// Starts anew with one level of these counts, unpainted over black.
    void init(int nverts, int nfaces);
    /// Takes the faces of all levels from a mesh with the same counts; false for others.
    bool CopyTopo(const LSubdivMesh* mesh);

    LNode* owner() const { return owner_; }
    /// No paint at all; no stencil at all.
    bool IsZero() const { return zero_; }
    bool IsZeroStencil() const { return zeroStencil_; }
    /// The incoming colours are not one colour.
    bool HasIncomingColors() const { return !incoms_.empty(); }

    /// Of level 0 for 0, the active level for -1, the top for -2, else of that level (of level 0
    /// when there is none).
    int GetNumVerts(int level) const;
    int GetNumFaces(int level) const;
    /// Counts level 0.
    int GetNumSubdivLevels() const { return subdivs_->GetNumLayers(); }
    int GetActiveLevel() const { return subdivs_->GetActiveIndex(); }
    const LSubdivCollection& GetSubdivs() const { return *subdivs_; }
    /// A face of the active level; ZeroFace without one.
    LFace GetFace(int i) const;

    // Vertices of the active level. Past its end the getters give black or 0 and nothing is
    // written. What writes colours ends IsZero, what writes stencils ends IsZeroStencil, and both
    // set the mark that levels above have to follow.

    LColor GetDelta(int i) const { return ColorOf(PaintAt(i, -1)); }
    float GetAlpha(int i) const { return PaintAt(i, -1).a; }
    /// The incoming colour.
    LColor GetColor(int i) const { return GetLevelColor(i, GetActiveLevel()); }
    float GetStencil(int i) const { return GetLevelStencil(i, GetActiveLevel()); }
    LColor GetResColor(int i) const { return GetResLevelColor(i, GetActiveLevel()); }

    void SetDelta(int i, const LAColor& paint);
    void SetDelta(int i, const LColor& color);
    void SetAlpha(int i, float a);
    /// The incoming colour.
    void SetColor(int i, const LColor& color);
    void SetStencil(int i, float s);
    /// A coat of `color` with coverage a; with an LAColor its alpha is the coverage, or takes part
    /// in it.
    void MixColor(int i, float a, const LColor& color);
    void MixColor(int i, const LAColor& color) { MixColor(i, color.a, ColorOf(color)); }
    void MixColor(int i, float a, const LAColor& color) {
        MixColor(i, a * color.a, ColorOf(color));
    }
    /// Takes the share `a` off.
    void DifColor(int i, float a);
    void MixStencil(int i, float s);
    void DifStencil(int i, float s);
    /// Add, and hold the result to 0 to 1.
    void OffsetDelta(int i, const LColor& d);
    void OffsetAlpha(int i, float a);
    void OffsetStencil(int i, float s);
    void ClampDeltaMinMax(int i);

    // By number through all levels. The setters leave the marks alone.

    LColor GetDeltaByAbsIdx(int i) const { return ColorOf(PaintAt(i, -2)); }
    LColor GetResColorByAbsIdx(int i) const { return GetResLevelColor(i, -2); }
    void SetDeltaByAbsIdx(int i, const LAColor& paint);
    void MixColorByAbsIdx(int i, const LAColor& color);

    // Of one level, told as for GetNumVerts.

    LColor GetLevelDelta(int i, int level) const { return ColorOf(PaintAt(i, level)); }
    LColor GetLevelColor(int i, int level) const {
        return Has(i, level) ? IncomAt(i) : LColor::cBlack;
    }
    float GetLevelStencil(int i, int level) const { return Has(i, level) ? stencils_[i] : 0; }
    LColor GetResLevelColor(int i, int level) const {
        return Has(i, level) ? ResAt(i) : LColor::cBlack;
    }
    void SetLevelDelta(int i, int level, const LColor& color);
    void SetLevelColor(int i, int level, const LColor& color);
    void SetLevelStencil(int i, int level, float s);

    // Copies of a level from malloc, the caller's to free; `count` takes their length. Null without
    // memory or entries.

    LColor* GetLevelInputsCopy(int level, int& count) const;
    LColor* GetLevelDeltasCopy(int level, int& count) const;
    float* GetLevelAlphasCopy(int level, int& count) const;
    float* GetLevelStencilsCopy(int level, int& count) const;
    LFace* GetLevelFacesCopy(int level, int& count) const;
    LColor* GetTopLevelInputsCopy(int& count) const { return GetLevelInputsCopy(-2, count); }
    LColor* GetTopLevelDeltasCopy(int& count) const { return GetLevelDeltasCopy(-2, count); }
    float* GetTopLevelAlphasCopy(int& count) const { return GetLevelAlphasCopy(-2, count); }
    float* GetTopLevelStencilsCopy(int& count) const { return GetLevelStencilsCopy(-2, count); }

    // The whole object, all levels. Those that change colours make the frame range empty.

    /// Takes the incoming colours of level 0, one a vertex, held to 0 to 1; levels above are
    /// interpolated. Colours that are all black count as none: every vertex then has cBare. False,
    /// and no change, for another number of them or without memory.
    bool SetIncomingColors(std::span<const LColor> colors);
    void ClearDelta();
    void ClearStencil();
    void FillDelta(const LColor& color);
    void InvertDelta();
    void FillStencil(float s);
    void InvertStencil();
    /// The stencil becomes the mean of the paint's three channels and its coverage.
    void ColorToStencil();
    void StencilToColor();

    // Evaluation.

    /// The colours of a frame up to a level (-1: all): those of the owner's neutral and what its
    /// tracks add. Nothing when the neutral has none, so that paint stays. Unless `fullEval`,
    /// tracks hold between keys, and are left out while `time` (in ticks) is between valid0 and
    /// valid1. Groups have no keys, whatever is asked of them.
    void EvalDelta(int time, int level, bool skipGroups, bool fullEval);
    /// The time for which the last evaluation stays right, ends included; nothing when valid0 is
    /// above valid1.
    int valid0() const { return valid0_; }
    int valid1() const { return valid1_; }
    void Invalidate() {
        valid0_ = INT_MAX;
        valid1_ = INT_MIN;
    }

    // Strokes and their undo.

    /// Makes room for the kept values of the active level. Costs nothing when it is there.
    void AllockBack();
    /// Keeps a vertex of the active level before its first change in a stroke.
    void DirtyVert(int v);
    /// Makes the record of the stroke (with `full`, one of everything as it is, of all levels) and
    /// starts anew. Returns how many vertices the stroke changed.
    int CacheUndo(bool full);
    /// An empty record, which keeps the stack in step with that of the geometry.
    void FakeUndo() { undos_.Push({}); }
    /// Gives back the values before the newest stroke. False when there is nothing to undo, or the
    /// record is empty. `restored`, when given, takes the vertices.
    bool Undo(std::vector<int>* restored = nullptr);
    void FlushUndo() { undos_.Clear(); }
    size_t GetNumUndos() const { return undos_.GetSize(); }
    std::span<const int> DirtyVerts() const { return dirty_.Items(); }

    /// What workers that each have vertices of their own write through, after AllockBack: arrays by
    /// vertex of the active level. A worker sets the mark of a vertex that has none and keeps its
    /// values first; Join, called by one thread afterwards, takes those that were new.
    struct Kept {
        LAColor paint;
        float stencil;
    };
    LAColor* Paints() { return paints_.data(); }
    const LAColor* Paints() const { return paints_.data(); }
    float* Stencils() { return stencils_.data(); }
    const float* Stencils() const { return stencils_.data(); }
    Kept* Back() { return back_.data(); }
    uint8_t* DirtyMarks() { return dirty_.Marks(); }
    void Join(std::span<const int> kept, bool painted, bool stencilled);
    /// GetColor and GetResColor of a vertex that is there.
    const LColor& IncomAt(size_t i) const { return incoms_.empty() ? plain_ : incoms_[i]; }
    LColor ResAt(size_t i) const { return PaintedColor(IncomAt(i), paints_[i]); }

    // Levels. Each flushes the undo stack.

    /// Levels above the former active one first follow; when the new one is above it, what changed
    /// is smoothed by three rounds on each level from the former on. False, and no change, without
    /// levels and for one that doesn't exist.
    bool SetActiveSubdivLevel(int level);
    /// Levels above the active one follow, smoothed, which itself keeps its bits and its records.
    bool UpdateUpperLayers();
    /// Add a level of triangles, or of quads, above the top: new vertices are interpolated, never
    /// smoothed. It becomes active. False, and no change, without faces or memory.
    bool SubdivideAll_Loop();
    bool SubdivideAll_Quad();
    /// Adds the next level of `geom`, sharing its topology.
    bool SubdivideLike(const LSubdivMesh& geom);
    /// False without a level above level 0.
    bool DeleteTopLevelSubdiv();

    /// The layer as a record. Both return one of LBlindData's codes. What is read must have the
    /// levels of the owner's object, when there is one, whose topology it shares; it forgets undo
    /// records. A failed reading leaves the layer as it was.
    virtual int WriteTo(LBlindData* stream) const;
    virtual int ReadFrom(LBlindData* stream);

  private:
    /// The vertices whose paint, or stencil, levels above have to follow, and those that followed.
    struct Changes {
        ZeroedArray<char> paint, stencil;
        bool hasPaint = false, hasStencil = false;
    };

    static LColor ColorOf(const LAColor& c) { return {c.r, c.g, c.b}; }
    bool Has(int i, int level) const { return i >= 0 && i < GetNumVerts(level); }
    LAColor PaintAt(int i, int level) const { return Has(i, level) ? paints_[i] : LAColor(); }
    const LMeshTopology* LevelTables(int level) const;
    int ResolvedLevel(int level) const;
    void WritePaint(int i, const LAColor& paint);
    void WriteStencil(int i, float s);
    void WriteIncom(int i, const LColor& color);
    bool Allocate(size_t count);
    /// After a change of all colours.
    void ColorsReplaced(bool zero);
    void AddTracks(int time, bool smooth, int count);
    void Remember();
    void RememberStencils();
    Changes CarryUp();
    void SmoothChanged(const Changes& changes, int fromLevel, int firstVert);
    bool AddLevel(bool quad);
    bool FillTop();
    UndoData StrokeRecord() const;
    UndoData WholeRecord() const;
    void Restore(Whole& whole);

    LNode* owner_;
    bool zero_ = true, zeroStencil_ = true, levelchanged_ = false;
    int nverts_ = 0, nfaces_ = 0;
    std::shared_ptr<const LMeshTopology> topology_;
    std::unique_ptr<LSubdivCollection> subdivs_ = std::make_unique<LSubdivCollection>(0, 0);
    /// By vertex through all levels.
    ZeroedArray<LAColor> paints_;
    ZeroedArray<float> stencils_;
    /// The same, or empty while all vertices have plain_.
    std::vector<LColor> incoms_;
    LColor plain_;
    /// The active level as the levels above know it; empty at the top.
    ZeroedArray<LAColor> origs_;
    ZeroedArray<float> stencilOrigs_;
    int valid0_ = INT_MAX, valid1_ = INT_MIN;
    StrokeUndoStack<UndoData> undos_;
    LIndexCache dirty_;
    /// Values before the stroke, by vertex; only those of dirty_ hold something.
    ZeroedArray<Kept> back_;
};

}  // namespace VantrelSDK
