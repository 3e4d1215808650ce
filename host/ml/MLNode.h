#pragma once

#include <maya/MMatrix.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MPoint.h>
#include <maya/MString.h>
#include <maya/MTime.h>
#include <maya/MVector.h>

#include "core/sculpt/LNode.h"
#include "host/nodes/NodeAttributes.h"

class MPxNode;

namespace VantrelSDK {

class LBlindData;
class MLColorDelta;
class MLDynMask;
class MLMaterialSet;
class MLMeshObject;
class MLPatternCollection;
class NodeJournal;

/// What the pointer's tool knows of a stroke beyond the plugs, in world space.
struct BrushView {
    /// From the eye into the scene, and the view's horizontal, which points to its left.
    MVector view{0, 0, -1}, orth{-1, 0, 0};
    double radius = 0;
};

/// The core's node on the host's: settings are attributes, geometry is the host's meshes, time and
/// messages are the host's. What evaluates it is in NodeEvaluation, what it is told to do in
/// NodeCommands.
class MLNode : public LNode {
  public:
    ~MLNode() override;

    /// The object of ours that a host's node is; null for another's node.
    static MLNode* FromObject(const MObject& node);
    /// The name of a phoneme target that nobody has named: the standard ones have names of their
    /// own, from 17 on they are counted.
    static MString GetDefMorphName(unsigned index);
    /// Reads the preferences from the host's interface; see LNode's.
    static void LoadPreferences();

    virtual MObject getThisMObject() const = 0;
    virtual NodeClass nodeClass() const = 0;
    virtual const NodeAttributes& attributes() const = 0;
    MPlug plug(NodeAttributes::Member attribute) const {
        return MPlug(getThisMObject(), attributes().*attribute);
    }
    /// The class's name before a message, as the host shows errors.
    void Error(const MString& text) const;
    /// Where the geometry comes in; null on a node that is not connected.
    virtual MPlug inputPlug() const = 0;
    /// Where the present level's surface goes out.
    virtual MPlug outputPlug() const = 0;

    MLMeshObject* meshObject() const;
    /// Takes the host's mesh as geometry: of a new node, or of one whose state was read, which then
    /// only gets its shape. Makes the delta. False for a mesh that has nothing to sculpt, or that
    /// has another number of vertices than the state.
    bool Init(const MObject& mesh, bool restored);
    using LNode::Init;
    bool CreateColorDelta() override;
    MLColorDelta* colorDelta() const;
    /// Gives the geometry and the frame all the levels that the delta has: what shows fewer leaves
    /// them with fewer.
    void RaiseLevels();

    // The stroke, as the host's numbers. Positions and directions in object space.

    bool InitTransform(const MPoint& pos, const MVector& view, const MVector& orth,
                       const MVector& normal, float sx, float sy, float radius, int mode,
                       bool force);
    bool Transform(const MPoint& pos, float sx, float sy, const MVector& normal);
    using LNode::InitTransform;
    using LNode::Transform;
    /// Restricts the brushes to what the host's selection holds of the mesh that the node feeds:
    /// polygons, and those around vertices.
    void UpdateComponentSelection();
    bool InitSculpt() override;
    std::unique_ptr<LDisplayCache> MakeDisplayCache() override;
    std::unique_ptr<LControlCollection> MakeAnimControls() override;
    void FinishSculpt(bool keep) override;
    /// The first surface point along a ray. `normal` is the surface's there. False in no session.
    bool IntersectRay(const MPoint& origin, const MVector& dir, MPoint& point, MVector& normal);
    /// The tool was left because time moved on, and the mode that it had.
    static bool offontimechange;
    static int offbrushmode;
    /// Of the tool, while it begins a stroke; null when others do.
    static const BrushView* brushView;

    /// World and object space: in a session as they were when it began, unless `fresh`.
    void GetObjToWorld(MMatrix& matrix, bool fresh) const;
    void GetWorldToObj(MMatrix& matrix, bool fresh) const;
    void TakeWorldMatrices();

    /// The node's patterns; null until somebody has needed them.
    MLPatternCollection* patterns() const;
    /// Reads the lists of patterns, the user's or else those that come with the module, the first
    /// time. Always true: without a list, which is told, there are none.
    bool loadPatterns();
    bool patternsLoded() const { return patternsLoded_; }

    /// A tweak node on the input moves a vertex.
    bool hasTweaks() const;
    /// Takes what the tweaks of the input do into the delta, and clears them. False without any.
    bool mergeTweaks();

    // The record. Both return one of LBlindData's codes and tell failures.

    int WriteTo(LBlindData* stream);
    int ReadFrom(LBlindData* stream);

    void UpdateFalloffs();

    // Materials: in a session, while textures are shown or painted, the node has a set of them.

    /// Makes the set anew, or lets go of it. Where textures are shown and none can be, nothing is
    /// shown any more, as the attribute then says.
    void UpdateMaterials();
    /// Finds the faces' materials, where they could not be found before; before each drawing.
    void FindMaterials();
    MLMaterialSet* materials() const;
    /// The images of painted maps go to their files. A map without one gets a texture of its own.
    /// False where one could not be written, which is told.
    bool writeMtlSet();
    int getTexChannel() const { return Int(&NodeAttributes::m_moTexChannel); }

    // Settings, from the attributes.

    std::unique_ptr<LProgressCallback> getProgressCallbck() override;
    int getTransformMode(bool modifiers) const override;
    float getBrushPaintPressure(bool tablet) const override;
    float getToolSize() const;
    int getPushPullMode() const override { return Int(&NodeAttributes::m_moPushPullMode); }
    bool getDoAccumulate() const override { return Bool(&NodeAttributes::m_moAccumulate); }
    int getSymetryMode() const override { return Int(&NodeAttributes::m_moSymmetry); }
    bool getSymmetrySnaping() const override {
        return Bool(&NodeAttributes::m_moDoSymmetrySnapping);
    }
    float getSymmetrySnapRadius() const override {
        return Float(&NodeAttributes::m_moSymmetrySnapRadius);
    }
    bool useSoftFalloff() const override { return Bool(&NodeAttributes::m_moUseFalloff); }
    bool useSoftFalloff2() const override { return Bool(&NodeAttributes::m_moUseFalloff2); }
    /// The host's curves are always ramps.
    bool useBicubFalloff() const override { return true; }
    bool useBicubFalloff2() const override { return true; }
    float getFalloffMin() const override { return 0; }
    float getFalloffMax() const override { return 1; }
    float getFalloffMin2() const override { return 0; }
    float getFalloffMax2() const override { return 1; }
    int getNumBrushSmoothIterations() const override {
        return Count(&NodeAttributes::m_moBrushSmoothIterations);
    }
    int getNumBrushSharpenIterations() const override {
        return Count(&NodeAttributes::m_moBrushSharpenIterations);
    }
    int getNumSculptSmoothIterations() const override {
        return Count(&NodeAttributes::m_moSculptSmoothIterations);
    }
    int getNumSculptSharpenIterations() const override {
        return Count(&NodeAttributes::m_moSculptSharpenIterations);
    }
    int getPatternMode() const override { return Int(&NodeAttributes::m_moPatternMode); }
    int getPatternUVchannel() const override { return Int(&NodeAttributes::m_moPatternUVchannel); }
    float getPatternUVopacity() const override {
        return Float(&NodeAttributes::m_moUvsetpatternOpac);
    }
    bool getUseColorAsAlpha() const override { return Bool(&NodeAttributes::m_moColorAsAlpha); }
    bool getAffectGeometry() const override { return Bool(&NodeAttributes::m_moAffectGeometry); }
    bool getAffectVertexColor() const override {
        return Bool(&NodeAttributes::m_moAffectVertColor);
    }
    bool getAffectStencil() const override { return Bool(&NodeAttributes::m_moAffectStencil); }
    bool getAffectTexture(bool withMap) const override {
        return Bool(&NodeAttributes::m_moAffectTexture) && (!withMap || HasMaps());
    }
    bool getAffectTexStencil(bool withMap) const override {
        return Bool(&NodeAttributes::m_moAffectTexStencil) && (!withMap || HasMaps());
    }
    float getVertColorStrength(bool tablet) const override;
    LColor getVertexPaintColor() const override;
    void setVertexPaintColor(LColor color) override;
    bool getUseStencil() const override { return Bool(&NodeAttributes::m_moUseStencil); }
    bool getDoInvertStencil() const override { return Bool(&NodeAttributes::m_moInvertStencil); }
    bool getUseRandomPatternRotation() const override {
        return Bool(&NodeAttributes::m_moRandPatternRotation);
    }
    bool getUseRandomPatternOffset() const override {
        return Bool(&NodeAttributes::m_moRandPatternOffset);
    }
    bool getUseRandomPatternScale() const override {
        return Bool(&NodeAttributes::m_moRandPatternScale);
    }
    int getMaxPatternRotation() const override {
        return Int(&NodeAttributes::m_moMaxPatternRotation);
    }
    float getMaxPatternOffset() const override {
        return Float(&NodeAttributes::m_moMaxPatternOffset);
    }
    float getMinPatternScale() const override {
        return Float(&NodeAttributes::m_moMinPatternScale);
    }
    float getMaxPatternScale() const override {
        return Float(&NodeAttributes::m_moMaxPatternScale);
    }
    bool getUseChainPatternStamps() const override {
        return Bool(&NodeAttributes::m_moUseChainPatterns);
    }
    bool getDoSmoothGeomSubdivision() const override {
        return Bool(&NodeAttributes::m_moDoSmoothGeomSubdivs);
    }
    bool getDoProtectOpenEdgesSmoothing() const override {
        return Bool(&NodeAttributes::m_moDoSmoothProtectOpenEdges);
    }
    bool getUseMasks() const override { return Int(&NodeAttributes::m_moDynMasksOn) != 0; }
    int getActiveMask() const override { return Int(&NodeAttributes::m_moDynMaskActive); }
    int getObjSmoothIt() const override { return Count(&NodeAttributes::m_moObjSmIt); }
    int getUVchannel() const override { return Int(&NodeAttributes::m_moUVchannel); }
    int getBlendSpace() const override { return Int(&NodeAttributes::m_moBlendSpace); }
    int getCsSpace() const override { return Space(&NodeAttributes::m_moCsSpace); }
    int getPsdSpace() const override { return Space(&NodeAttributes::m_moPsdSpace); }
    bool getFullEvalForRecord() const override { return Bool(&NodeAttributes::m_moFullRecEval); }
    int getNumRenderSubdivisionLevels() const override {
        return Int(&NodeAttributes::m_moNumRenderSubdivLvls);
    }
    bool getDoNeutralize() const { return Bool(&NodeAttributes::m_moNeutralize); }
    bool getForceRenderTopLevel() const { return Bool(&NodeAttributes::m_moForceRenderTopLevel); }

    /// Sums the frame of a time for so many levels (-1: all) where something plays; else the delta
    /// stays what was sculpted, as it does when neither the time nor what plays has changed since
    /// the last frame. True when the frame was summed.
    bool EvaluateFrame(float seconds, int levels);
    /// Somebody edited the keys: what shows the node is stale.
    void TracksChanged();

    /// The stylus's, where it counts, 0 to 1; 1 without one.
    float penPressure() const;
    /// The one that a log is played with; -1 while none is.
    float playedPressure = -1;
    /// Where what is done to this node is kept; null for nowhere.
    std::unique_ptr<NodeJournal> journal;

    /// The mask of a number is drawn anew.
    void UpdateMask(int index);

    // What evaluation and commands share.

    /// The node has taken a mesh; its state came from a scene and waits for one.
    bool lnodeinited = false, postload = false;
    /// The input is to be read again.
    bool inputChanged = false;
    /// What the display must make anew.
    bool displyDirtied = false, displayGeomChanged = false;
    /// A surface stands in the place of the mesh, which is hidden for it.
    bool hidMesh = false;
    /// A change of level has been handled already; the next evaluation leaves the time alone.
    bool keepLevel = false, skipTime = false;
    MTime lastEvalTime = MTime(-1e6, MTime::kFilm), sculptTime;
    int lastComputeLvl = 0;
    /// Makes the next evaluation run although its time is the same.
    void ForceEvaluation(double by = 1000) { lastEvalTime += MTime(by); }

  protected:
    explicit MLNode(int workers = 0);

  private:
    bool Bool(NodeAttributes::Member attribute) const { return plug(attribute).asBool(); }
    int Int(NodeAttributes::Member attribute) const { return plug(attribute).asInt(); }
    float Float(NodeAttributes::Member attribute) const { return plug(attribute).asFloat(); }
    /// A number of rounds: 0 to 1000. 0 on a class that lacks the attribute.
    int Count(NodeAttributes::Member attribute) const;
    /// 1 or 2, whatever the plug says.
    int Space(NodeAttributes::Member attribute) const { return Int(attribute) == 2 ? 2 : 1; }

    bool WantsMaterials() const;
    mtlMode WantedMtlMode() const;
    bool HoldsPaint() const;
    std::unique_ptr<MLMaterialSet> createMtlSet();
    void AimMask();
    int FrameTicks(float seconds) const;
    void TellFrame();

    bool patternsLoded_ = false;
    /// The delta is a frame; so many levels of it are (INT_MAX: all).
    bool framePlayed_ = false;
    int frameLevels_ = 0;
    /// Frames that no journal knows of were summed since the last session.
    bool frameUntold_ = false;
    MMatrix objToWorld_, worldToObj_;
    /// The mesh had other polygons when its materials were asked for.
    bool materialsDue_ = false;
    std::vector<std::unique_ptr<MLDynMask>> masks_;
};

}  // namespace VantrelSDK
