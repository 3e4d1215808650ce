#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/mesh/LFaceBarys.h"
#include "core/mesh/LMeshTopology.h"
#include "core/subdiv/LLevelRule.h"

namespace VantrelSDK {

class LBlindData;
class LSubdivCollection;

/// The absolute numbers of the faces of the next level that lie in a face; -1 where unused. A
/// triangle level uses the first four slots, a quad level four for a coupled triangle and six for a
/// single one.
struct LFaceSubs {
    int subs[6] = {-1, -1, -1, -1, -1, -1};
};

/// One level above the base: the ranges of the absolute numbering that it owns.
class ISubdivLayer {
  public:
    virtual ~ISubdivLayer() = default;

    /// 0 a triangle (Loop) level, 1 a quad level.
    virtual int GetType() const = 0;
    virtual std::string GetName() const = 0;
    /// Vertices and faces of this level.
    virtual int GetNumVerts() const = 0;
    virtual int GetNumFaces() const = 0;
    /// Faces and vertices of this level and those below it, without level 0.
    virtual int GetNumTotalExtFaces() const = 0;
    virtual int GetNumTotalExtVerts() const = 0;
    /// Vertices that this level added.
    virtual int GetNumExtVerts() const = 0;
    /// As GetNumTotalExtFaces, with level 0.
    virtual int GetNumTotalFaces() const = 0;
    virtual int RemapVertFromLocal(int i) const { return i; }
    virtual int RemapFaceFromLocal(int i) const = 0;
    virtual int RemapVertFromGlobal(int i) const { return i; }
    virtual int RemapFaceFromGlobal(int i) const = 0;
    virtual int GetFirstParentVert() const = 0;
    virtual int GetLastParentVert() const = 0;
    virtual int GetFirstParentFace() const = 0;
    virtual int GetLastParentFace() const = 0;
    virtual int GetFirstVert() const = 0;
    virtual int GetLastVert() const = 0;
    virtual int GetFirstFace() const = 0;
    virtual int GetLastFace() const = 0;
    virtual int GetParentFaceFromLocal(int i) const = 0;
    virtual int GetParentFaceFromGlobal(int i) const = 0;
    /// The children, on this level, of face `i` (local) of the level below.
    virtual LFaceSubs GetFaceSubs(int i) const = 0;
    /// Given the barycentrics of the corners of face `i` (local) of the level below, those of the
    /// corners of its children, in the order of GetFaceSubs.
    virtual void GetChildBarys(int i, const LFaceBarys& parent, LFaceBarys (&out)[6]) const = 0;
    virtual std::unique_ptr<ISubdivLayer> Clone(LSubdivCollection* owner) const = 0;

    /// The layer below, null for layer 1; the layer above, null for the top.
    ISubdivLayer* prew() const;
    ISubdivLayer* next() const;
    int index() const { return index_; }
    LSubdivCollection* owner() const { return owner_; }
    /// Null in the chain of a UV channel, as is rule().
    const std::shared_ptr<const LMeshTopology>& topology() const { return topology_; }
    const std::shared_ptr<const LLevelRule>& rule() const { return rule_; }
    void SetRule(std::shared_ptr<const LLevelRule> rule) { rule_ = std::move(rule); }

  protected:
    ISubdivLayer(LSubdivCollection* owner, std::shared_ptr<const LMeshTopology> topology,
                 std::shared_ptr<const LLevelRule> rule);

    LSubdivCollection* owner_;
    int index_;
    std::shared_ptr<const LMeshTopology> topology_;
    std::shared_ptr<const LLevelRule> rule_;
};

/// A layer that splits every face of the level below into four triangles.
class EntireSubdivLayer : public ISubdivLayer {
  public:
    /// Above the owner's top. Topology and rule may be null.
    EntireSubdivLayer(LSubdivCollection* owner, int nextVerts,
                      std::shared_ptr<const LMeshTopology> topology,
                      std::shared_ptr<const LLevelRule> rule);

    int GetType() const override { return 0; }
    std::string GetName() const override;
    int GetNumVerts() const override;
    int GetNumFaces() const override { return (faceEnd_ - faceStart_ + 1) * 4; }
    int GetNumTotalExtFaces() const override;
    int GetNumTotalExtVerts() const override;
    int GetNumExtVerts() const override { return nextVerts_; }
    int GetNumTotalFaces() const override;
    int RemapFaceFromLocal(int i) const override { return faceEnd_ + 1 + i; }
    int RemapFaceFromGlobal(int i) const override { return i - faceEnd_ - 1; }
    int GetFirstParentVert() const override { return vertStart_; }
    int GetLastParentVert() const override { return vertEnd_; }
    int GetFirstParentFace() const override { return faceStart_; }
    int GetLastParentFace() const override { return faceEnd_; }
    int GetFirstVert() const override { return vertEnd_ + 1; }
    int GetLastVert() const override { return vertEnd_ + nextVerts_; }
    int GetFirstFace() const override { return faceEnd_ + 1; }
    int GetLastFace() const override { return faceEnd_ + GetNumFaces(); }
    int GetParentFaceFromLocal(int i) const override { return faceStart_ + i / 4; }
    int GetParentFaceFromGlobal(int i) const override {
        return faceStart_ + (i - faceEnd_ - 1) / 4;
    }
    LFaceSubs GetFaceSubs(int i) const override;
    void GetChildBarys(int i, const LFaceBarys& parent, LFaceBarys (&out)[6]) const override;
    std::unique_ptr<ISubdivLayer> Clone(LSubdivCollection* owner) const override;

  private:
    int nextVerts_;
    /// First and last absolute face of the parent level, and vertex that the parent level added.
    int faceStart_, faceEnd_, vertStart_, vertEnd_;
};

/// A layer that cuts each pair of triangles of the level below into four quads and each single one
/// into three, every quad kept as two triangles: faces 2q and 2q + 1 of the layer are quad q. First
/// come the quads of the pairs, then those of the singles.
///
/// GetParentFaceFromLocal and its twin divide by four here too, which names the right pair but not
/// always the right triangle of it; GetFaceSubs is exact.
class EntireQuadSubdivLayer : public EntireSubdivLayer {
  public:
    /// `coupling` is that of the level below (shared).
    EntireQuadSubdivLayer(LSubdivCollection* owner, int nextVerts,
                          std::shared_ptr<const LTriCoupling> coupling,
                          std::shared_ptr<const LMeshTopology> topology,
                          std::shared_ptr<const LLevelRule> rule);

    int GetType() const override { return 1; }
    std::string GetName() const override;
    int GetNumFaces() const override { return numFaces_; }
    int GetLastFace() const override { return GetFirstFace() + numFaces_ - 1; }
    LFaceSubs GetFaceSubs(int i) const override;
    void GetChildBarys(int i, const LFaceBarys& parent, LFaceBarys (&out)[6]) const override;
    std::unique_ptr<ISubdivLayer> Clone(LSubdivCollection* owner) const override;

    int GetNumQuads() const { return numFaces_ / 2; }
    /// How the faces of the level below were paired.
    const std::shared_ptr<const LTriCoupling>& coupling() const { return coupling_; }

  private:
    int numFaces_;
    std::shared_ptr<const LTriCoupling> coupling_;
};

/// The levels of a mesh above its base.
class LSubdivCollection {
  public:
    /// The counts are those of level 0.
    LSubdivCollection(int noVerts, int noFaces) : noVerts_(noVerts), noFaces_(noFaces) {}
    LSubdivCollection(const LSubdivCollection& other);
    LSubdivCollection& operator=(const LSubdivCollection&) = delete;

    int noVerts() const { return noVerts_; }
    int noFaces() const { return noFaces_; }
    /// Counts level 0 too.
    int GetNumLayers() const { return static_cast<int>(layers_.size()) + 1; }
    /// Null for level 0 and for levels that don't exist.
    ISubdivLayer* GetLayer(int level) const;
    /// Null stands for level 0.
    ISubdivLayer* GetActive() const { return GetLayer(active_); }
    ISubdivLayer* GetTop() const { return GetLayer(GetNumLayers() - 1); }
    int GetActiveIndex() const { return active_; }
    int GetNumExtFaces() const;
    int GetNumExtVerts() const;

    /// False, and no change, for a level that doesn't exist.
    bool Activate(int level);
    bool ActivateUp() { return Activate(active_ + 1); }
    bool ActivateDown() { return Activate(active_ - 1); }

    /// Each adds a level, which becomes active. `topology` is that of the level; in the chain of a
    /// UV channel it is null, as is the rule.
    ISubdivLayer* AddEntireLevel(int nextVerts, std::shared_ptr<const LMeshTopology> topology,
                                 std::shared_ptr<const LLevelRule> rule);
    ISubdivLayer* AddEntireQuadLevel(int nextVerts, std::shared_ptr<const LTriCoupling> coupling,
                                     std::shared_ptr<const LMeshTopology> topology,
                                     std::shared_ptr<const LLevelRule> rule);
    /// Adds a copy of a layer of another collection over the same base, which becomes active.
    ISubdivLayer* AddClone(const ISubdivLayer& layer);
    /// Removes the top; when it was active, the level below becomes active.
    bool DeleteTop();

    /// The levels as a record, without their faces; see LevelsRecord for the reading.
    int WriteTo(LBlindData* stream) const;

  private:
    ISubdivLayer* Add(std::unique_ptr<ISubdivLayer> layer);

    int noVerts_, noFaces_;
    int active_ = 0;
    std::vector<std::unique_ptr<ISubdivLayer>> layers_;
};

}  // namespace VantrelSDK
