#pragma once

#include <memory>
#include <span>
#include <vector>

#include "core/subdiv/LSubdivCollection.h"
#include "core/subdiv/LUVChannel.h"

namespace VantrelSDK {

class LQuadLevelTopoCache;
class LSubdivMesh;

/// A UV set on all levels: a small mesh of its own in 2D, with the faces of the geometry's levels,
/// number by number, but with its own points, since a vertex on a seam has several.
///
/// Points are numbered as vertices are (see LSubdivMesh). A level only ever interpolates: no point
/// moves, whatever the geometry does. A point that can't be made, for want of a corner's point, is
/// (0, 0).
class LUVSubdivChannel : public LUVChannel {
  public:
    explicit LUVSubdivChannel(int channel = 0);
    LUVSubdivChannel(const LUVSubdivChannel& other);
    LUVSubdivChannel& operator=(const LUVSubdivChannel&) = delete;

    bool Init(std::vector<LPoint2> verts, std::vector<MFace> faces, size_t meshFaces,
              std::string& error) override;

    const LSubdivCollection& GetSubdivs() const { return *subdivs_; }
    LSubdivCollection& _GetSubdivs() { return *subdivs_; }
    /// Counts level 0 too.
    int GetNumSubdivLevels() const { return subdivs_->GetNumLayers(); }
    /// Of the active level, as all that follow without a level. Out of range reads as zero, or as
    /// a face without points.
    int GetNumVerts() const { return GetNumLevelVerts(subdivs_->GetActiveIndex()); }
    int GetNumFaces() const { return GetNumLevelFaces(subdivs_->GetActiveIndex()); }
    LPoint2 GetVert(int i) const { return GetLevelVert(i, subdivs_->GetActiveIndex()); }
    MFace GetFace(int i) const { return GetLevelFace(i, subdivs_->GetActiveIndex()); }
    void SetVert(int i, const LPoint2& uv);
    void SetFace(int i, const MFace& face);
    /// The points of a face's corners; false when a corner has none.
    bool GetFaceUVs(int face, int level, LPoint2 (&uvs)[3]) const;
    int GetNumLevelVerts(int level) const;
    int GetNumLevelFaces(int level) const;
    LPoint2 GetLevelVert(int i, int level) const;
    MFace GetLevelFace(int i, int level) const;
    LPoint2 GetVertByAbsIdx(unsigned i) const;
    void SetVertByAbsIdx(unsigned i, const LPoint2& uv);
    /// A channel of one level.
    std::unique_ptr<LUVChannel> GetLevelCopy(int level) const;
    std::unique_ptr<LUVChannel> GetTopLevelCopy() const {
        return GetLevelCopy(GetNumSubdivLevels() - 1);
    }
    /// All points of all levels, and the faces of one, by number. Empty for a level that doesn't
    /// exist.
    std::span<const LPoint2> AllVerts() const { return verts_; }
    std::span<const MFace> LevelFaces(int level) const;

    /// Adds the level that the geometry gains by a triangle step. False, and no change, for an
    /// empty channel or without memory. `smooth` has no effect.
    bool SubdivideAll_Loop(bool smooth);
    /// Adds the level that the geometry gains by a step to quads from `level`, its present top:
    /// triangles that are coupled there are coupled here.
    bool SubdivideAll_Quad(const LMeshTopology& level, bool smooth);
    /// The same from the cache of the geometry's step; nothing for a cache that nobody filled.
    bool RedivideAll_Quad(const LQuadLevelTopoCache* cache, bool smooth);
    bool DeleteTopLevel();

    int WriteTo(LBlindData* stream) const override;
    /// Levels that are read must be those of `geom`, as far as they go, and share its pairs. A
    /// failed reading leaves the channel as it was.
    virtual int ReadFrom(LBlindData* stream, const LSubdivMesh& geom);

  private:
    bool AddQuadLevel(std::shared_ptr<const LTriCoupling> coupling);
    std::vector<MFace>& FacesOf(int level) { return level == 0 ? faces_ : extfaces_[level - 1]; }

    std::unique_ptr<LSubdivCollection> subdivs_;
    /// One list a level above 0.
    std::vector<std::vector<MFace>> extfaces_;
};

}  // namespace VantrelSDK
