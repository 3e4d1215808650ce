#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "core/io/LProgressCallback.h"
#include "core/mesh/ZeroedArray.h"
#include "core/subdiv/LSubdivMesh.h"

namespace VantrelSDK {

class ILTopoCache;
class LBlindData;
class LMeshBasesUV2;
class LNode;
class LTopoCaches;
class LUVSubdivChannel;

/// The object around the geometry of one sculpted mesh: all levels, and for them selection,
/// visibility, material ids and the working weights of a stroke.
///
/// Selection, visibility and materials are held per base element and derived for the levels up to
/// the active one. Without geometry every operation does nothing and returns 0 or false. Arrays are
/// resized outside a stroke only, so that workers read them without locks.
class LMeshObject {
  public:
    explicit LMeshObject(LNode* owner);
    virtual ~LMeshObject();

    /// A new progress display, or null when nobody is watching.
    virtual std::unique_ptr<LProgressCallback> getProgressCallbck() = 0;

    LNode* owner() const { return owner_; }

    /// Geometry of the active level; an index out of range gives LPoint3::Zero or ZeroFace.
    int GetNumVerts() const { return geom_ ? geom_->GetNumVerts() : 0; }
    int GetNumFaces() const { return geom_ ? geom_->GetNumFaces() : 0; }
    LPoint3 GetGeomVert(int i) const { return geom_ ? geom_->GetVert(i) : LPoint3::Zero; }
    LFace GetGeomFace(int i) const { return geom_ ? geom_->GetFace(i) : ZeroFace; }
    LSubdivMeshI* GetSubdivGeom() const { return geom_.get(); }
    LSubdivMesh* GetOrigGeom() const { return geom_.get(); }
    void OffsetVert(int i, const LPoint3& d) {
        if (geom_) geom_->OffsetVert(i, d);
    }
    bool IsEmpty() const { return GetNumVerts() == 0 || GetNumFaces() == 0; }

    /// Selection and visibility of the active level, or of one given level.
    bool IsVertSelected(int i) const { return hasSelection_ && At(vselectionLvl_, i) != 0; }
    bool IsFaceSelected(int i) const { return IsFaceSelected(i, ActiveLevel()); }
    bool IsFaceSelected(int i, int level) const;
    bool IsVertVisible(int i) const { return InRange(vvisibilityLvl_, i) && !vvisibilityLvl_[i]; }
    bool IsFaceVisible(int i) const { return IsFaceVisible(i, ActiveLevel()); }
    bool IsFaceVisible(int i, int level) const;
    int GetFaceMtlId(int i) const { return GetFaceMtlId(i, ActiveLevel()); }
    /// The material of a face, -1 for none and while materials are not known.
    int GetFaceMtlId(int i, int level) const;
    bool HasSelection() const { return hasSelection_; }
    bool HasHidden() const { return hasHidden_; }
    /// Counts the times that what is selected or hidden may have changed on some level.
    unsigned NumFlagChanges() const { return flagChanges_; }
    bool HasVertsSelected() const { return hasSelection_ && vertsSelected_; }
    bool HasFacesSelected() const;
    /// The hidden flags of the active level's faces, one byte a face.
    std::span<const uint8_t> HiddenFaces() const;
    /// The selection flags of the active level's vertices, one byte a vertex.
    std::span<const uint8_t> SelectedVerts() const { return vselectionLvl_; }

    /// Edits by base face. HideFace and ShowFace change the base alone: call UpdateLevelVisibility
    /// when done; SelectFace brings the levels up to date when asked.
    void SelectFace(int i, bool state, bool updateLevels);
    /// Changes the base alone.
    void SelectAll(bool state);
    void HideFace(int i);
    void ShowFace(int i);
    void HideSelected();
    void InvertHidden();
    void HideAll();
    void ShowAll();
    /// Grows the selection by the edge neighbours of what is selected, polygons kept whole.
    void ExpandSelection();
    /// Shrinks it by the edge neighbours of what is not selected.
    void ReduceSelection();
    void ClearSelection();
    void UpdateSelectionFlag();
    void UpdateLevelSelction();
    void UpdateLevelVisibility();
    void UpdateLevelMtlIds();
    /// One material number a base face.
    void SetMtlIds(std::span<const int> ids);
    void ClearMtlIds();
    /// The listed materials count as none, on all levels that there are and will be, until another
    /// list comes.
    void SetVoidMtls(const std::vector<int>& list);
    bool HasMtlIds() const { return hasmtlids_; }

    /// Levels. The new level becomes active.
    bool SubdivideAll_Loop(bool smoothGeom, bool protectOpen);
    bool SubdivideAll_Loop(const LSubdivLevelTopo& topo, bool smoothGeom, bool protectOpen);
    bool SubdivideAll_Quad(bool smoothGeom, bool protectOpen);
    /// Removes the top level, and takes back what its smoothing did to the vertices below. With
    /// `keepArrays` the level's selection, visibility and material arrays stay.
    bool DeleteTopLevelSudiv(bool keepArrays);
    bool SetActiveSubdivLevel(int level);

    /// Rebuilds all levels from a new base shape (one position a base vertex; null: from the input
    /// as it is), each by the rule that it was made with. The levels become those of `delta` (null:
    /// those there are), or `numLevels` above the base when that is not -1. False without geometry.
    bool Update(const LPoint3* newBase, const LSubdivMesh* delta, int numLevels);
    /// One per level above 0, null for a triangle level.
    const LTopoCaches& GetTopoCaches() const { return *topocaches_; }
    /// Makes the caches of `numLevels` - 1 smooth quad levels over the base, on a scratch mesh.
    bool RebuildTopoCaches(int numLevels);

    /// UV channels, one per UV set; a level of the geometry is a level of each. Owned here; null
    /// out of range.
    int GetNumUVChannels() const { return static_cast<int>(uvs_.size()); }
    LUVSubdivChannel* GetUVChannel(int i) const;
    /// Grows whenever there are others.
    unsigned NumUVChanges() const { return uvChanges_; }
    /// Gives the channel the levels that there are. Without memory for them it isn't taken.
    void AddChannel(std::unique_ptr<LUVSubdivChannel> channel);
    void ClearUVChannels();
    /// The channel that the node's frames come from; null without one.
    LUVSubdivChannel* GetActiveUVChannel() const;
    /// The frames of the geometry as it is, by the active channel; null without a channel. Made at
    /// the first call, then kept until UpdateBases.
    LMeshBasesUV2* GetBases();
    /// After a change of the geometry or the channel.
    void UpdateBases();

    /// The base level as it came in, and after smoothing; `count` takes their length.
    const LPoint3* GetInput(int& count) const;
    const LPoint3* GetBlured(int& count) const;

    /// The working weights of a stroke, one per vertex of the active level.
    float GetWeight(int i) const { return weights_[i]; }
    void SetWeight(int i, float weight);
    const float* GetWeights() const { return weights_.data(); }
    float* _weights() { return weights_.data(); }
    /// Notes vertices whose weight was 0 and was written through _weights(), so that ClearWeights
    /// finds them.
    void JoinWeighted(std::span<const int> verts);
    /// Vertices with a weight, in the order of their first writing.
    std::span<const int> Weighted() const { return weighted_; }
    bool HasVertsWeights() const { return !weighted_.empty(); }
    /// Costs what has a weight.
    void ClearWeights();

    /// Normals of the active level; zero before CalcNormals and out of range.
    LPoint3 GetFaceNormal(int i) const;
    LPoint3 GetVertNormal(int i) const;
    bool HasFaceNormals() const { return !fNormals_.empty(); }
    bool HasVertNormals() const { return !vNormals_.empty(); }
    /// With the filters, what is not selected or has weight 0 keeps its normal.
    void CalcNormals(bool selectedOnly, bool weightedOnly);

    /// Gives the object an empty geometry of one level with these counts (both above 0).
    bool AllocateGeom(int nverts, int nfaces);
    void FreeAll();

    /// Geometry and caches as a record, without UV channels. Both return one of LBlindData's codes;
    /// a failed reading leaves the object as it was. What is read starts with nothing selected or
    /// hidden. It keeps channels of as many faces, and the input when it is of as many vertices;
    /// else Update gives one.
    virtual int WriteTo(LBlindData* stream) const;
    virtual int ReadFrom(LBlindData* stream);
    LTopoCaches* topocaches() const { return topocaches_.get(); }

  protected:
    /// Takes a base mesh as the input: one level, nothing selected or hidden.
    void InitGeom(const LMesh& base);

  private:
    using Bytes = std::vector<uint8_t>;
    /// A byte or material array per level, level 0 first.
    template <class T>
    using PerLevel = std::vector<std::vector<T>>;

    template <class T>
    static bool InRange(const std::vector<T>& v, int i) {
        return i >= 0 && i < static_cast<int>(v.size());
    }
    static uint8_t At(const Bytes& bytes, int i) { return InRange(bytes, i) ? bytes[i] : 0; }
    int ActiveLevel() const { return geom_ ? geom_->GetActiveLevel() : 0; }
    void SmoothInput();
    void ResetArrays();
    void SizeLevelArrays();
    /// Calls visit(level, face of it) for a base face and its sub-faces up to the active level.
    template <class Visit>
    void ForEachSubFace(int face, Visit visit) const;
    void SpreadSelection(uint8_t state);
    void SpreadToLevels();
    void AfterLevelChange();
    bool FollowLevels();
    std::unique_ptr<ILTopoCache> MakeTopoCache(const ISubdivLayer& layer) const;
    bool AfterSubdivision();
    bool HasAllCaches() const;
    void calcFaceNormals(bool selectedOnly, bool weightedOnly);
    void calcVertNormals(bool selectedOnly, bool weightedOnly);

    LNode* owner_;
    std::unique_ptr<LSubdivMesh> geom_;
    std::vector<LPoint3> fNormals_, vNormals_;
    Bytes vselection_, vvisibility_, fselection_, fvisibility_;
    std::vector<int> fmaterialids_, voidMtls_;
    Bytes vselectionLvl_, vvisibilityLvl_;
    PerLevel<uint8_t> fselectionLvls_, fvisibilityLvls_;
    PerLevel<int> fmaterialidsLvls_;
    ZeroedArray<float> weights_;
    std::vector<int> weighted_;
    unsigned flagChanges_ = 0;
    bool hasSelection_ = false, hasHidden_ = false, hasmtlids_ = false, vertsSelected_ = false;
    std::vector<LPoint3> input_, blured_;
    std::vector<std::unique_ptr<LUVSubdivChannel>> uvs_;
    unsigned uvChanges_ = 0;
    std::unique_ptr<LTopoCaches> topocaches_;
    std::unique_ptr<LMeshBasesUV2> bases_;
};

}  // namespace VantrelSDK
