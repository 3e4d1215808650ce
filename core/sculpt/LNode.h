#pragma once

#include <array>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "core/display/LDisplayCache.h"
#include "core/io/LProgressCallback.h"
#include "core/math/LRandom.h"
#include "core/mesh/LMeshObject.h"
#include "core/mesh/LOctTree.h"
#include "core/mesh/LSmoothCache.h"
#include "core/morph/LMorphDelta.h"
#include "core/sculpt/LFalloffCache.h"
#include "core/sculpt/LThreadGroup.h"
#include "core/sculpt/NormalSmoother.h"
#include "core/sculpt/theThData.h"

namespace VantrelSDK {

class LDynMask;
class LPattern;
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

/// The scene object of one sculpted mesh: its geometry, its delta, and the cycle of session, stroke
/// and step in which the brushes change it.
///
/// A session (InitSculpt to FinishSculpt) holds a search tree and a display cache for the active
/// level. A stroke is a press (InitTransform), moves (Transform) and a release (FinishTransform),
/// and makes one undo record. Its cost follows what is under the brush, not the mesh: whole-mesh
/// work happens when a session opens or a level changes. Positions are in object space.
///
/// Settings are read through the get... family, which a host node answers from its attributes and
/// LHeadlessNode from plain values. All entry points run on one thread; steps fan out to the worker
/// group and join it before they return.
class LNode {
  public:
    /// Preferences.
    /// Below 2, a fast stroke is not filled in between its samples; otherwise how finely.
    static int prefNumInterpolationSteps;
    /// The search tree follows the surface after a stroke.
    static bool prefGlidingTool;
    /// How: 2 by refitting it, 3 by building it anew.
    static int prefTreeUpdateOnStrokeEnd;

    /// `workers` 0 means one per processor.
    explicit LNode(int workers = 0);
    virtual ~LNode();
    LNode(const LNode&) = delete;
    LNode& operator=(const LNode&) = delete;

    void Lock() { lock_.lock(); }
    void UnLock() { lock_.unlock(); }

    // The object and its delta.

    /// Takes a mesh object. 0 done; 1 it is null or empty; 2 the node has an object and a delta,
    /// and the new mesh differs in both counts: nothing is taken.
    virtual int Init(std::unique_ptr<LMeshObject> object);
    virtual void Reset();
    /// False without an object.
    virtual bool CreateDelta();
    LMorphDelta* GetDelta() const { return lcurMorph_.get(); }
    /// The longest delta vector, 0 without a delta.
    float GetMaxDelta() const { return lcurMorph_ ? lcurMorph_->GetMaxDelta() : 0; }

    // The session.

    /// Opens a session at the active level. False, and no session, without an object and a delta,
    /// or when the user stops it. Changes no surface.
    virtual bool InitSculpt();
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

    // Trees and caches of the active level.

    /// Makes, or brings up to date, the tree of the active level.
    bool setLevelOctTree();
    /// Refits the tree of the active level to the surface.
    bool recalcOctTree();
    /// Builds it anew.
    bool buildOctTree();
    void deleteAllLevelTrees();
    void setLevelDisplayCache();
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
    /// As calcWeight2 without a pattern.
    float calcWeight2tex(const LPoint3& p, const LPoint3& c);
    /// Turns the pattern's frame along the stroke and jitters it. True when a stamp is due in this
    /// step; savedRadius then takes the radius to restore, unless it is left alone.
    bool adjustBrushPattern(float& savedRadius);

    /// Masks in use; null is none.
    const LDynMask* GetMask() const;
    void AddMask(LDynMask* mask) { ldynmasks_.push_back(mask); }
    /// The stamp in use (borrowed); null is none.
    const LPattern* GetActivePattern() const { return activePattern_; }
    void SetActivePattern(const LPattern* pattern) { activePattern_ = pattern; }

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
    virtual bool getAffectGeometry() const = 0;
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
    int GetObjSmoothIt() const { return getObjSmoothIt(); }
    bool SculptTransformMode() const { return IsSculptTransformMode(getTransformMode(false)); }
    bool PaintTransformMode() const { return IsPaintTransformMode(getTransformMode(false)); }

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

    bool AddLevel(bool quad);
    bool OpenLevel(const std::function<bool(float)>& reach);
    size_t NumSides() const;
    LevelCaches& ActiveCaches();
    void GoToLevel(unsigned level, ProgressScope& progress, float share);
    void RestartLevel(ProgressScope& progress, float from);
    void SurfaceChanged(std::span<const int> verts);
    StrokeStep MakeStep(int mode);
    void Prepare(int mode, bool atPress, bool force);
    bool HasStroke() const { return lmode_ != -1 && lobject_ && lcurMorph_; }

    std::mutex lock_;
    std::unique_ptr<LThreadGroup> lthGrp_;
    std::unique_ptr<LMeshObject> lobject_;
    std::unique_ptr<LMorphDelta> lcurMorph_;
    std::unique_ptr<LMesh> lmeshCache_, lblendCache_;
    std::unique_ptr<LSubdivMesh> lentryCache_;
    std::unique_ptr<LSmoothCache> lsmoothCache_;
    std::vector<LevelCaches> levelCaches_;
    LOctTree* loctTree_ = nullptr;
    LDisplayCache* ldisplayCache_ = nullptr;
    std::unique_ptr<LFalloffCache> lfalloff1_, lfalloff2_;
    LinearFalloff linearFalloff2_;
    std::unique_ptr<ILRandGenerator> rgen_;
    std::vector<LDynMask*> ldynmasks_;
    const LPattern* activePattern_ = nullptr;
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
