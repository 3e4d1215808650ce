#pragma once

#include <array>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "core/display/LDisplayCache.h"
#include "core/io/LProgressCallback.h"
#include "core/math/LRandom.h"
#include "core/mesh/LMeshObject.h"
#include "core/mesh/LOctTree.h"
#include "core/mesh/LSmoothCache.h"
#include "core/morph/LMorphDelta.h"
#include "core/morph/LTargetLists.h"
#include "core/paint/LColorDelta.h"
#include "core/paint/LMaterialSet.h"
#include "core/paint/PaintEdit.h"
#include "core/sculpt/LFalloffCache.h"
#include "core/sculpt/LThreadGroup.h"
#include "core/sculpt/NormalSmoother.h"
#include "core/sculpt/PatternUVs.h"
#include "core/sculpt/StrokePattern.h"
#include "core/sculpt/theThData.h"

namespace VantrelSDK {

class LControlCollection;
class LDynMask;
class LFrameTerm;
class LMeshBasesUV2;
class LPattern;
class LPatternCollection;
class StrokeListener;
struct StrokeStep;

/// Which modes drag what the press has weighted, and which are brushes whose steps add up.
constexpr bool IsSculptTransformMode(int mode) {
    return mode >= 0 && mode <= 7;
}
constexpr bool IsPaintTransformMode(int mode) {
    return mode >= 8 && mode <= 19;
}

/// The mode that Shift, or Ctrl, turns a mode into.
int GetShiftMode(int mode);
int GetCtrlMode(int mode);

/// The modifier keys of the moment, set by whoever reads the keyboard.
bool IsShiftPressed();
void SetShiftPressed(bool pressed);
bool IsCtrlPressed();
void SetCtrlPressed(bool pressed);

/// The mode of the tool that is on, for what draws it.
int GetGlobMode();
void SetGlobMode(int mode);

/// The scene object of one sculpted mesh: its geometry, its delta, its stored shapes, and the cycle
/// of session, stroke and step in which the brushes change it.
///
/// A session (InitSculpt to FinishSculpt) holds a search tree and a display cache for the active
/// level, and the delta in object space; between sessions the delta rides on the surface, in its
/// frames, so that it survives a change of the input's pose. A stroke is a press (InitTransform),
/// moves (Transform) and a release (FinishTransform), and makes one undo record. Its cost follows
/// what is under the brush, not the mesh: whole-mesh work happens when a session opens or a level
/// changes. Positions are in object space.
///
/// Settings are read through the get... family, which a host node answers from its attributes and
/// LHeadlessNode from plain values. All entry points run on one thread; steps fan out to the worker
/// group and join it before they return.
class LNode : public LTargetLists {
  public:
    /// Preferences.
    /// Below 2, a fast stroke is not filled in between its samples; otherwise how finely.
    static int prefNumInterpolationSteps;
    /// The search tree follows the surface after a stroke.
    static bool prefGlidingTool;
    /// How: 2 by refitting it, 3 by building it anew.
    static int prefTreeUpdateOnStrokeEnd;
    /// How a mesh without levels would be subdivided: 1 to quads, 0 to triangles.
    static int prefSubdivisionMethod;
    /// What the iterations of a new node's smooth and sharpen brushes are offered as.
    static int prefNumSmoothIterations, prefNumSharpenIterations;
    /// Whether smoothing may use the workers.
    static int prefMutltiThreadSmooth;
    /// From so many faces on the display falls back to a simpler one.
    static int prefNumFacesDisplayFallback;
    /// How maps are sampled when they are baked and painted.
    static int prefDoSampleTexEdges, prefTrySampleMaps, prefDoPix;
    /// The tablet's pressure counts.
    static int prefDoUseTablet;
    /// Materials are looked at anew when groups of faces change.
    static int prefRehashMtlBeforeRender;
    /// A diagnostic log is written; see Profile.h.
    static int prefDumpDiagnostics;

    /// `workers` 0 means one per processor.
    explicit LNode(int workers = 0);
    ~LNode() override;
    LNode(const LNode&) = delete;
    LNode& operator=(const LNode&) = delete;

    void Lock() { lock_.lock(); }
    void UnLock() { lock_.unlock(); }

    // The object and its delta.

    /// Takes a mesh object. 0 done; 1 it is null or empty; 2 the node has an object and a delta,
    /// and the new mesh differs in both counts: nothing is taken. A node without targets gets the
    /// standard ones, which are empty, and an empty neutral.
    virtual int Init(std::unique_ptr<LMeshObject> object);
    virtual void Reset();
    /// Makes the delta and the colour delta. False without an object.
    virtual bool CreateDelta();
    /// The object's levels, unpainted.
    virtual bool CreateColorDelta();
    LColorDelta* lcolorDelta() const { return lcolorDelta_.get(); }
    std::unique_ptr<LColorDelta>& _lcolorDelta() { return lcolorDelta_; }
    /// Takes all paint off; covers everything with the paint colour. Not in a stroke.
    void ClearVertColor();
    void FloodVertColor();
    /// In a session, makes what painting needs of the whole level; to be called when colours or
    /// stencils become affected, so that no press has to.
    void PrepareColours();
    /// Edits everywhere what brushes would paint on, colours before stencils. False, and nothing
    /// happens, in a stroke.
    bool EditPaint(PaintEdit edit);
    /// The materials whose maps are shown and painted; null while none are.
    LMaterialSet* GetMtlSet() const { return mtlset_.get(); }
    void SetMtlSet(std::unique_ptr<LMaterialSet> set);
    /// The faces of the mesh have other materials than before.
    void MaterialsFound() { ++mtlSets_; }
    /// Counts the times that what faces show may have changed.
    unsigned NumMtlSets() const { return mtlSets_; }
    LMorphDelta* GetDelta() const { return lcurMorph_.get(); }
    LSubdivMesh* GetDeltaMesh() const { return lcurMorph_ ? lcurMorph_->GetOrigMesh() : nullptr; }
    /// The longest delta vector, 0 without a delta.
    float GetMaxDelta() const { return lcurMorph_ ? lcurMorph_->GetMaxDelta() : 0; }

    // The session.

    /// Opens a session at the active level. False, and no session, without an object and a delta,
    /// or when the user stops it. Changes no surface.
    virtual bool InitSculpt();
    /// Leaves it. What was sculpted is kept in the frames of the surface, and read back through
    /// those that there are when the next session opens. Undo ends here.
    virtual void FinishSculpt(bool keep);
    bool IsSculpting() const { return lsculpt_; }
    bool IsStroking() const { return lstroke_; }

    // The stroke.

    /// The press. `dir` is the view direction, `orth` the screen's horizontal and `normal` the
    /// surface normal, all in object space; `radius` in object units. Unless `force`, weights that
    /// the object has already are kept. False, and no stroke, without an object and a delta.
    virtual bool InitTransform(const LPoint3& pos, const LPoint3& dir, const LPoint3& orth,
                               const LPoint3& normal, const LPoint2& screen, float radius, int mode,
                               bool force);
    /// A move. False, and nothing happens, when there is no stroke or the position is the same.
    virtual bool Transform(const LPoint3& pos, const LPoint2& screen, const LPoint3& normal);
    /// The release.
    virtual void FinishTransform(bool clearWeights);
    /// Takes back the newest stroke. False when there is none.
    bool UndoStroke();
    /// Hears from now on what is done to the surface; borrowed, null for nobody.
    void SetListener(StrokeListener* listener) { listener_ = listener; }
    /// Tells it that something else than strokes made the surface what it is now.
    void SurfaceReplaced();
    /// Passes on that the object has another selection.
    void SelectionChanged();
    /// Vertices that the last stroke changed.
    int GetNumTouched() const { return touched_; }

    // Levels. Each flushes the undo stack, and in a session brings tree and caches to the level.

    /// True when a level of this kind above the top has room in the numbering and in memory; else
    /// `error` tells the numbers.
    bool CanSubdivide(bool quad, std::string& error) const;
    /// Adds a triangle level, or a level of quads, above the top; it becomes active.
    virtual bool SubdivideAll_Loop();
    virtual bool SubdivideAll_Quad();
    virtual bool SetActiveSubdivLevel(unsigned level);
    virtual bool DeleteTopLevelSudiv();
    /// Levels above the active one follow what was sculpted on it.
    virtual void UpdateSubdivLevels();
    /// After a change of the hidden faces: the tree leaves them out.
    void UpdateHidden();
    /// Makes the base shape anew from the input, after a change of its smoothing. False in a
    /// stroke.
    bool UpdateBase();
    /// Takes everything out of the delta. False in a stroke.
    bool ZeroDelta();
    /// Takes offsets shorter than `length` out of it. False in a stroke.
    bool ZeroShortOffsets(float length);
    /// Adds an offset in object space to the delta of each vertex of level 0; upper levels follow.
    /// False, and nothing happens, in a stroke and for another number of them.
    bool AddToLevel0(std::span<const LPoint3> offsets);

    // Frames: what the delta is at a time. Ticks are 4000 a second.

    /// Replaces the delta by the sum of a time, of `levels` levels (-1: all). An open session goes
    /// on with it. False when a group blend owns the delta.
    bool SetTime(int ticks, int levels);
    int ltime() const { return ltime_; }
    /// What a frame adds up over the neutral, in this order; borrowed.
    const std::vector<LFrameTerm*>& frameTerms() const { return frameTerms_; }
    void AddFrameTerm(LFrameTerm* term) { frameTerms_.push_back(term); }
    /// Some term may add something at some time; else frames leave the delta as it was sculpted.
    bool PlaysFrames() const;
    /// The tracks, which are the first of the terms; null on a node that never had any.
    LControlCollection* GetAnimControls() const { return lcontrols_.get(); }
    /// The same, made when there are none.
    LControlCollection& NeedAnimControls();
    /// What the delta and the colours show of a time is right no more.
    void Invalidate();
    /// Bracket the blending of a group, which then owns the delta.
    void InitGroupBlend();
    void FinishGroupBlend();
    /// The delta of a vertex of the active level, zero without one. The number has no effect, as in
    /// GetDeformation.
    void calcMorph(int vertex, int, LPoint3& out) const;
    /// calcMorph of all vertices, from malloc, the caller's to free; `count` takes their number.
    /// Null without an object or targets.
    LPoint3* GetDeformation(int time, int& count) const;
    /// out = the geometry of the active level plus a target. False, and nothing written, for null
    /// or another number of vertices.
    bool EvalMorph(const LMorphTarget* target, LMesh* out) const;
    bool EvalMorph(int index, LMesh* out) const;
    /// The delta as it looks in object space; the caller's.
    std::unique_ptr<LSubdivMesh> GetObjectDelta() const;

    // Between targets and the delta. False for a null target; without a delta nothing happens.

    /// The delta becomes the neutral and the target, by the frames of the surface as it is, or with
    /// `bases` as they lie on the target's own skin.
    bool CopyToDelta(LMorphTarget* target);
    bool CopyToDelta(LMorphTarget* target, LMeshBasesUV2* bases);
    /// The target takes the delta without the neutral, in the space that targets of its kind are
    /// held in. `bases` are the frames of the surface; null: the spaces are one.
    bool CopyFromDelta(LMorphTarget* target, LMeshBasesUV2* bases);
    /// The same by the frames of the moment, the target taking the input as its skin.
    bool StoreTarget(LMorphTarget* target);
    bool LoadTarget(LMorphTarget* target);
    /// The target takes what was done since the session's beginning at its weight `weight`, which
    /// isn't 0, on top of what it holds.
    bool MixWithDelta(LMixTarget* mix, LMeshBasesUV2* bases, float weight);
    /// Makes a target of positions: of the active level's vertices in object space, or of a posed
    /// mesh of the top level. False for another number of them.
    bool MakeMorph(std::span<const float> xs, std::span<const float> ys, std::span<const float> zs,
                   LMorphTarget* target) const;
    bool MakeMorphFromMesh(const LMesh* mesh, LMorphTarget* target);
    /// The shape of a target for the blend brushes, at the active level: of the standard, extra,
    /// pose and mix targets, counted through. In tangent space the target over the neutral, in
    /// object space its skin. Past the last the geometry; null without an object and for another
    /// space.
    std::unique_ptr<LMesh> GetBlendTarg(int index, int space) const;
    bool setBlendCache(int index);

    // The neutral.

    /// The delta becomes the neutral; every target keeps the shape that it has with the neutral.
    bool createNeutral();
    /// Empties it, targets keeping their shapes. False when it is empty.
    bool clearNeutral();
    /// From now on the base shape is the neutral's skin, or the input again. False, with the
    /// reason, when it can't be, and in a stroke.
    bool Neutralize(bool on, std::string& why);
    bool IsNeutralizing() const { return neutralbases_ != nullptr; }
    /// What the delta is over: the object's geometry, or the neutral's skin on all levels.
    LSubdivMesh& BaseShape() const;
    /// The frames of that; null without UVs.
    LMeshBasesUV2* GetDeltaBases() const;

    // Spaces. Tangent space are the frames of a surface by a UV channel: of the present one for the
    // delta, of its own skin, smoothed so many times, for each target that has one.

    /// Takes the delta (unless a session has it) and all targets in object space to tangent space:
    /// the neutral, standard targets and those of groups, and where they are held there poses,
    /// flexors and mix targets. The neutral keeps its shape when the smoothing goes from
    /// `oldIterations` to `newIterations`. False, and nothing happens, without such a channel.
    bool ConvertObj2Tang(int channel, int oldIterations, int newIterations);
    bool ConvertTang2Obj(int channel, int iterations);
    /// After a change of the active channel from `former`: the delta, unless a session has it, and
    /// all targets go by way of object space to the frames of the new one.
    void MoveToChannel(int former);
    /// The neutral alone, by the active channel.
    bool ConvertObj2TangNeutral(int oldIterations, int newIterations);
    bool ConvertTang2ObjNeutral(int iterations);
    /// Neutral, poses and flexors keep their shapes when the smoothing of the input changes; what
    /// else there is follows the surface. False when nothing changes.
    bool ConvertSmoothing3(int oldIterations, int newIterations);
    /// The skin of a target, smoothed, on `levels` levels (-1: all).
    std::unique_ptr<LSubdivMesh> getDivSkin(const LMorphTarget* target, int iterations,
                                            int levels) const;
    /// The first smoothing of it less the second.
    std::unique_ptr<LSubdivMesh> diffSkin(const LMorphTarget* target, int oldIterations,
                                          int newIterations) const;
    /// Keeps the shape of a target in object space when its base is smoothed otherwise.
    void rcalcTarget(LMorphTarget* target, int oldIterations, int newIterations) const;
    /// What level 0 shows of a target: in tangent space read on the neutral's skin.
    void addProxy2target(LMorphTarget* target, bool tangent);
    void addProxies2targets();
    /// Makes the frames of the neutral's skin anew, over `mesh` (null: the geometry's levels).
    /// Nothing without a skin.
    void updateNeutralLimit(const LSubdivMesh* mesh);
    LMeshBasesUV2* lneutralLimit() const { return lneutralLimit_.get(); }
    LMeshBasesUV2* lneutralLimit0() const { return lneutralLimit0_.get(); }
    std::unique_ptr<LMeshBasesUV2>& _lneutralLimit() { return lneutralLimit_; }
    std::unique_ptr<LMeshBasesUV2>& _lneutralLimit0() { return lneutralLimit0_; }
    /// A matrix for each face of level 0 from the shape `pre` (null: the geometry) to `post`: the
    /// inverse of the frame before; with the first target set, its frame on `post` undone first.
    /// From malloc, the caller's to free; null without memory or for another number of vertices.
    LMatrix3* calcSkinTMs(const LMesh* post, const LMesh* pre) const;
    /// A level-0 copy of the neutral that is kept with it; null without one.
    std::unique_ptr<LMesh>& _lneutralBackup() { return lneutralBackup_; }

    // Trees and caches of the active level.

    /// Makes, or brings up to date, the tree of the active level.
    bool setLevelOctTree();
    /// Refits the tree of the active level to the surface.
    bool recalcOctTree();
    /// Builds it anew.
    bool buildOctTree();
    void deleteAllLevelTrees();
    void setLevelDisplayCache();
    /// A display cache for a level of this node. A node that is drawn makes one that draws.
    virtual std::unique_ptr<LDisplayCache> MakeDisplayCache();
    /// A collection for the tracks of this node. A host's node makes one that knows the host.
    virtual std::unique_ptr<LControlCollection> MakeAnimControls();
    /// lmeshCache = the surface of the active level as it is.
    void fillSculptCache();
    /// The same for what the running stroke has touched.
    void updateSculptCache();

    // Searches of a brush, with its mirror image in a symmetric stroke. False without a tree.

    bool findFaces(const LOctTree::Sphere& sphere, TreeHits& hits);
    bool findFaces(const LOctTree::Line& line, TreeHits& hits);
    bool findFaces(const LOctTree::Sweep& sweep, TreeHits& hits);
    bool findVerts(const LOctTree::Sphere& sphere, TreeHits& hits);
    /// The surface point nearest p within the symmetry snap radius; remembers its last answer.
    bool findSnapPoint(const LPoint3& p, LPoint3& out);
    /// The mirror image of p by the symmetry of the moment, snapped to the surface when that is on;
    /// p itself without symmetry.
    LPoint3 MirrorPosition(const LPoint3& p);

    // Weights: falloff times pattern, see BrushWeights.

    /// The weight of position p under a brush at c by the curve of the dragging modes.
    float calcWeight(int i, const LPoint3& p, const LPoint3& c);
    /// The same by the curve of the stroke modes.
    float calcWeight2(int i, const LPoint3& p, const LPoint3& c);
    /// The same for colours: of a pattern counts the alpha.
    float calcWeight3(const LPoint3& p, const LPoint3& c);
    /// As calcWeight2 without a pattern.
    float calcWeight2tex(const LPoint3& p, const LPoint3& c);
    /// As calcWeight, calcWeight2 and calcWeight3 with a pattern that lies on the surface, at point
    /// `uvIndex` of its channel; without one for another mode, channel or point.
    float calcWeightUV(const LPoint3& p, const LPoint3& c, int uvIndex);
    float calcWeightUV2(const LPoint3& p, const LPoint3& c, int uvIndex);
    float calcWeightUV3(const LPoint3& p, const LPoint3& c, int uvIndex);
    /// The colour at p of the active pattern under a brush at c: black outside it and without one.
    LAColor getPatternColor(const LPoint3& p, const LPoint3& c);
    /// Turns the pattern's frame along the stroke and jitters it. True when a stamp is due in this
    /// step; savedRadius then takes the radius to restore, unless it is left alone.
    bool adjustBrushPattern(float& savedRadius);

    /// Masks in use; null is none.
    const LDynMask* GetMask() const;
    void AddMask(LDynMask* mask) { ldynmasks_.push_back(mask); }
    const std::vector<LDynMask*>& ldynmasks() const { return ldynmasks_; }
    /// In the place of all others until it is null: the one that a log was recorded with.
    void PlayMask(std::unique_ptr<LDynMask> mask);
    /// The node's patterns; null until somebody needs them.
    LPatternCollection* lpatterns() const { return lpatterns_.get(); }
    std::unique_ptr<LPatternCollection>& _lpatterns() { return lpatterns_; }
    /// The one in use; null is none.
    LPattern* GetActivePattern() const;
    /// The same, and how it lies in a step. In a session alone, for patterns by UVs.
    StrokePattern GetStrokePattern();
    const LUVSubdivChannel* GetPatternChannel() const;
    /// In a session, makes what the active pattern needs of the whole surface; to be called when it
    /// or the way it lies is another, so that no press has to.
    void PreparePattern();

    // Settings.

    virtual std::unique_ptr<LProgressCallback> getProgressCallbck() = 0;
    /// The tool's mode with Shift applied, and with Ctrl when `modifiers`.
    virtual int getTransformMode(bool modifiers) const = 0;
    virtual int getPushPullMode() const = 0;
    /// The mode's pressure multiplier, times the tablet's pressure when `tablet`, times 0.1.
    virtual float getBrushPaintPressure(bool tablet) const = 0;
    virtual bool getDoAccumulate() const = 0;
    /// 1, 2, 3 mirror x, y, z; 4 none.
    virtual int getSymetryMode() const = 0;
    virtual bool getSymmetrySnaping() const = 0;
    virtual float getSymmetrySnapRadius() const = 0;
    virtual bool useSoftFalloff() const = 0;
    virtual bool useSoftFalloff2() const = 0;
    virtual bool useBicubFalloff() const = 0;
    virtual bool useBicubFalloff2() const = 0;
    virtual float getFalloffMin() const = 0;
    virtual float getFalloffMax() const = 0;
    virtual float getFalloffMin2() const = 0;
    virtual float getFalloffMax2() const = 0;
    virtual int getNumBrushSmoothIterations() const = 0;
    virtual int getNumBrushSharpenIterations() const = 0;
    virtual int getNumSculptSmoothIterations() const = 0;
    virtual int getNumSculptSharpenIterations() const = 0;
    virtual int getPatternMode() const = 0;
    /// The UV channel that patterns lie on the surface by, and how far they are seen there.
    virtual int getPatternUVchannel() const = 0;
    virtual float getPatternUVopacity() const = 0;
    /// A pattern's brightness is its alpha.
    virtual bool getUseColorAsAlpha() const = 0;
    virtual bool getAffectGeometry() const = 0;
    virtual bool getAffectVertexColor() const = 0;
    virtual bool getAffectStencil() const = 0;
    /// Brushes change the maps of materials, or the stencils over them; with `withMap` only where
    /// there is a map.
    virtual bool getAffectTexture(bool withMap) const = 0;
    virtual bool getAffectTexStencil(bool withMap) const = 0;
    /// As getBrushPaintPressure, of the strength of vertex colours and stencils.
    virtual float getVertColorStrength(bool tablet) const = 0;
    virtual LColor getVertexPaintColor() const = 0;
    virtual void setVertexPaintColor(LColor color) = 0;
    /// Geometry is held where the stencil is.
    virtual bool getUseStencil() const = 0;
    /// The display shows the stencil inverted.
    virtual bool getDoInvertStencil() const = 0;
    virtual bool getUseRandomPatternRotation() const = 0;
    virtual bool getUseRandomPatternOffset() const = 0;
    virtual bool getUseRandomPatternScale() const = 0;
    /// Whole degrees.
    virtual int getMaxPatternRotation() const = 0;
    virtual float getMaxPatternOffset() const = 0;
    virtual float getMinPatternScale() const = 0;
    virtual float getMaxPatternScale() const = 0;
    virtual bool getUseChainPatternStamps() const = 0;
    virtual bool getDoSmoothGeomSubdivision() const = 0;
    virtual bool getDoProtectOpenEdgesSmoothing() const = 0;
    virtual bool getUseMasks() const = 0;
    virtual int getActiveMask() const = 0;
    virtual int getObjSmoothIt() const = 0;
    /// The UV channel that frames come from.
    virtual int getUVchannel() const = 0;
    /// The space that blend targets are shown in, and those that flexors and poses are held in.
    virtual int getBlendSpace() const = 0;
    virtual int getCsSpace() const = 0;
    virtual int getPsdSpace() const = 0;
    /// Frames are evaluated while a group is blended.
    virtual bool getFullEvalForRecord() const = 0;
    virtual int getNumRenderSubdivisionLevels() const = 0;
    int GetObjSmoothIt() const { return getObjSmoothIt(); }
    LColor GetVertexPaintColor() const { return getVertexPaintColor(); }
    bool HasMaps() const { return mtlset_ && mtlset_->HasMaps(); }
    bool SculptTransformMode() const { return IsSculptTransformMode(getTransformMode(false)); }
    bool PaintTransformMode() const { return IsPaintTransformMode(getTransformMode(false)); }

    /// The delta is in tangent space while this lives, in a session too. What was in object space
    /// comes back bit for bit.
    class InTangentSpace {
      public:
        explicit InTangentSpace(LNode& node) : node_(node.lsculpt_ ? &node : nullptr) {
            if (node_) node_->DeltaToTangent();
        }
        ~InTangentSpace() {
            if (node_) node_->DeltaToObject();
        }
        InTangentSpace(const InTangentSpace&) = delete;
        InTangentSpace& operator=(const InTangentSpace&) = delete;

      private:
        LNode* node_;
    };

    // What the brushes work with.

    LMeshObject* lobject() const { return lobject_.get(); }
    LOctTree* loctTree() const { return loctTree_; }
    LDisplayCache* ldisplayCache() const { return ldisplayCache_; }
    LMesh* lmeshCache() const { return lmeshCache_.get(); }
    LSubdivMesh* lentryCache() const { return lentryCache_.get(); }
    /// The shape that the blend modes pull to; null: the geometry without its delta.
    LMesh* lblendCache() const { return lblendCache_.get(); }
    void SetBlendCache(std::unique_ptr<LMesh> mesh) { lblendCache_ = std::move(mesh); }
    LThreadGroup* lthGrp() const { return lthGrp_.get(); }
    /// The falloff curves of the dragging and of the stroke modes.
    LFalloffCache* lfalloff1() const { return lfalloff1_.get(); }
    LFalloffCache* lfalloff2() const { return lfalloff2_.get(); }
    /// The curve of the stroke modes as it counts: the ramp, or the linear one.
    const LFalloffCache* PaintCurve();
    std::unique_ptr<LFalloffCache>& _lfalloff1() { return lfalloff1_; }
    std::unique_ptr<LFalloffCache>& _lfalloff2() { return lfalloff2_; }
    /// The smoothing buffer, of the active level's size; made at the first call.
    LSmoothCache& lsmoothCache();
    /// The same for paint, for its colours alone and for stencils.
    LAColorSmoothCache2& lsmoothCache2() { return ColourBuffer(lsmoothCache2_); }
    LColorSmoothCache& lsmoothCache3() { return ColourBuffer(lsmoothCache3_); }
    LFloatSmoothCache& lsmoothCacheF() { return ColourBuffer(lsmoothCacheF_); }
    std::vector<theThData>& theThDts() { return theThDts_; }
    ILRandGenerator& rgen() { return *rgen_; }

    // The stroke's state.

    /// Positions: 0 press, 1 previous, 2 current, 3 the one before previous.
    const LPoint3& ltrans(int i) const { return ltrans_[i]; }
    LPoint3& _ltrans(int i) { return ltrans_[i]; }
    /// Screen coordinates: 0 press, 1 previous, 2 current.
    const LPoint2& lscreen(int i) const { return lscreen_[i]; }
    const LPoint3& ldir() const { return ldir_; }
    const LPoint3& lorth() const { return lorth_; }
    const LPoint3& laxial() const { return laxial_; }
    const LPoint3& lnormal() const { return lnormal_; }
    const LPoint3& lnormHist(int i) const { return lnormHist_[i]; }
    float lradius() const { return lradius_; }
    float& _lradius() { return lradius_; }
    int lmode() const { return lmode_; }
    bool firststep() const { return firststep_; }
    bool luseSelected() const { return luseSelected_; }
    bool& _luseSelected() { return luseSelected_; }
    const LPoint3& pullPushDir() const { return pullPushDir_; }
    LPoint3& _pullPushDir() { return pullPushDir_; }
    /// The flatten plane, and its mirror image.
    const LPoint3& lflattenc(int i) const { return lflattenc_[i]; }
    LPoint3& _lflattenc(int i) { return lflattenc_[i]; }
    const LPoint3& lflattend(int i) const { return lflattend_[i]; }
    LPoint3& _lflattend(int i) { return lflattend_[i]; }
    /// What the press found, in the dragging modes; what the running step found, in the others.
    TreeHits& hits() { return hits_; }
    /// The vertices that a dragging mode has weighted, ascending.
    std::vector<int>& dragged() { return dragged_; }
    /// Working arrays of a step, kept between steps: one entry per vertex of the active level;
    /// lists.
    ZeroedArray<LPoint3>& vertexNormals() { return vertexNormals_; }
    NormalSmoother& normalSmoother() { return normalSmoother_; }
    std::vector<LPoint3>& tempNormals() { return tempNormals_; }
    std::vector<LPoint3>& samplePoints(int i) { return samplePoints_[i]; }

  private:
    /// What belongs to one level of a session; both may be null.
    struct LevelCaches {
        std::unique_ptr<LOctTree> tree;
        std::unique_ptr<LDisplayCache> display;
        /// The surface_ that they show.
        unsigned shown = 0;
    };

    struct Stage {
        std::string name;
        std::vector<LMorphTarget*> targets;
    };
    struct SmoothingPass;
    class InObjectSpace;
    /// The delta as it was in object space, and on which surface: where that is the same still, the
    /// bits come back.
    struct KeptDelta {
        std::vector<LPoint3> verts;
        size_t surface = 0;
    };

    template <class Cache>
    Cache& ColourBuffer(std::unique_ptr<Cache>& cache) {
        if (!cache)
            cache = std::make_unique<Cache>(lmeshCache_->GetNumVerts(), lmeshCache_->Faces());
        return *cache;
    }
    StrokePattern FramePattern() const;
    float UVWeight(bool sculpt, bool alpha, const LPoint3& p, const LPoint3& c, int point);
    bool AffectsColours() const;
    bool EditMaps(PaintEdit edit);
    int CacheColourUndo();
    void KeepUndosInStep();
    LColorDelta* StrokeColours() const;
    const float* StrokeStencil() const;
    bool HasColours() const;
    bool AddLevel(bool quad);
    size_t SurfaceMark() const;
    bool IsDeltaKept() const;
    /// To object space, and to the frames of the surface for between sessions; by other frames than
    /// the delta's where they are given.
    void DeltaToObject();
    void DeltaToTangent();
    void DeltaToObject(LMeshBasesUV2* bases);
    void DeltaToTangent(LMeshBasesUV2* bases);
    void ReopenSession();
    void RenewProxies();
    void ShiftTargets(const LSubdivMesh& shift);
    bool CanNeutralize(std::string& why) const;
    void UpdateNeutralShape();
    std::vector<Stage> ConversionStages() const;
    const LUVSubdivChannel* ConversionChannel(const std::string& what, int channel) const;
    void ConvertStages(const std::string& what, const std::vector<Stage>& stages,
                       const LUVSubdivChannel* uv, int iterations, int direction);
    void SmoothTarget(SmoothingPass& pass, LMorphTarget* target, bool tangent);
    int WantedSpace(const LMorphTarget& target) const;
    LMorphTarget* BlendTarget(int index) const;
    void AddInObjectSpace(LMorphTarget& target, LSubdivMesh& vectors) const;
    bool OpenLevel(const std::function<bool(float)>& reach);
    size_t NumSides() const;
    LevelCaches& ActiveCaches();
    void GoToLevel(unsigned level, ProgressScope& progress, float share);
    void RestartLevel(ProgressScope& progress, float from);
    void SurfaceChanged(std::span<const int> verts);
    StrokeStep MakeStep(int mode);
    void EndStroke(bool clearWeights);
    void Prepare(int mode, bool atPress, bool force);
    bool HasStroke() const { return lmode_ != -1 && lobject_ && lcurMorph_; }

    std::mutex lock_;
    std::unique_ptr<LThreadGroup> lthGrp_;
    std::unique_ptr<LMeshObject> lobject_;
    std::unique_ptr<LMorphDelta> lcurMorph_;
    std::unique_ptr<LColorDelta> lcolorDelta_;
    std::unique_ptr<LMaterialSet> mtlset_;
    unsigned mtlSets_ = 0;
    std::unique_ptr<LMesh> lmeshCache_, lblendCache_;
    std::unique_ptr<LSubdivMesh> lentryCache_;
    std::unique_ptr<LSmoothCache> lsmoothCache_;
    std::unique_ptr<LAColorSmoothCache2> lsmoothCache2_;
    std::unique_ptr<LColorSmoothCache> lsmoothCache3_;
    std::unique_ptr<LFloatSmoothCache> lsmoothCacheF_;
    /// Frames of the neutral's skin, on all levels and on level 0; made when a proxy needs them.
    std::unique_ptr<LMeshBasesUV2> lneutralLimit_, lneutralLimit0_;
    /// Those that take the place of the object's while neutralizing, and its shape.
    std::unique_ptr<LMeshBasesUV2> neutralbases_;
    std::unique_ptr<LMesh> lneutralBackup_;
    KeptDelta keptDelta_;
    std::unique_ptr<LControlCollection> lcontrols_;
    std::vector<LFrameTerm*> frameTerms_;
    int ltime_ = 0, blendIndex_ = 0;
    bool lblend_ = false;
    std::vector<LevelCaches> levelCaches_;
    LOctTree* loctTree_ = nullptr;
    LDisplayCache* ldisplayCache_ = nullptr;
    std::unique_ptr<LFalloffCache> lfalloff1_, lfalloff2_;
    LinearFalloff linearFalloff2_;
    std::unique_ptr<ILRandGenerator> rgen_;
    std::vector<LDynMask*> ldynmasks_;
    std::unique_ptr<LDynMask> playedMask_;
    std::unique_ptr<LPatternCollection> lpatterns_;
    PatternUVs lgeomidx2uv_;
    StrokeListener* listener_ = nullptr;
    /// Counts changes of the surface, so that a level's caches know whether they show it.
    unsigned surface_ = 1;

    std::array<LPoint3, 4> ltrans_;
    std::array<LPoint2, 3> lscreen_;
    std::array<LPoint3, 2> lflattenc_, lflattend_;
    LPoint3 ldir_, lorth_, laxial_, lnormal_;
    std::array<LPoint3, 5> lnormHist_;
    float lradius_ = 0;
    bool lsculpt_ = false, lstroke_ = false, firststep_ = false;
    int lmode_ = -1;
    /// The mode whose preparation the stroke has seen.
    int preparedMode_ = -1;
    bool luseSelected_ = false;
    bool stampChainStarted_ = false;
    LPoint3 stampPos_;
    LPoint3 lsnapC_, lsymmC_;
    bool lsnapOK_ = false;
    LPoint3 pullPushDir_;
    int touched_ = 0;
    TreeHits hits_;
    std::vector<int> dragged_;
    ZeroedArray<LPoint3> vertexNormals_;
    NormalSmoother normalSmoother_;
    std::vector<LPoint3> tempNormals_;
    std::array<std::vector<LPoint3>, 2> samplePoints_;
    std::vector<theThData> theThDts_;
};

}  // namespace VantrelSDK
