#pragma once

#include <memory>
#include <vector>

#include "core/math/LPoint3.h"
#include "core/mesh/LMesh.h"

namespace VantrelSDK {

/// A mesh with levels, as the display and the brushes see it: one mesh, or a composition of
/// several.
///
/// Level 0 is the base; a level's vertices are the first GetNumLevelVerts of one numbering
/// ("absolute"), a level's faces a range of their own in it. Plain numbers are those of the active
/// level.
class LSubdivMeshI {
  public:
    virtual ~LSubdivMeshI() = default;

    virtual bool IsComposition() const = 0;
    virtual int GetNumVerts() const = 0;
    virtual int GetNumFaces() const = 0;
    virtual LPoint3 GetVert(int i) const = 0;
    virtual LFace GetFace(int i) const = 0;
    virtual void SetVert(int i, const LPoint3& p) = 0;
    virtual void SetFace(int i, const LFace& face) = 0;
    virtual void ClearVerts() = 0;
    virtual void ClearAllVerts() = 0;
    virtual void InverseAllVerts() = 0;
    virtual void OffsetVert(int i, const LPoint3& d) = 0;
    virtual void GetAdjFacesForVertex(int i, std::vector<LFace>& faces) const = 0;
    virtual LPoint3 GetFaceNormal(int i) const = 0;
    virtual LPoint3 GetVertNormal(int i) const = 0;
    virtual bool CalcBBox(LPoint3& min, LPoint3& max, const LMatrix3* tm = nullptr) const = 0;
    virtual std::unique_ptr<LMesh> GetActiveLevelCopy() const = 0;
    virtual std::unique_ptr<LMesh> GetTopLevelCopy() const = 0;
    virtual std::unique_ptr<LMesh> GetLevelCopy(unsigned level) const = 0;
    virtual int GetNumSubivLevels() const = 0;
    virtual int GetNumLevelVerts(unsigned level) const = 0;
    virtual int GetNumLevelFaces(unsigned level) const = 0;
    virtual LPoint3 GetLevelVert(unsigned i, unsigned level) const = 0;
    virtual LFace GetLevelFace(unsigned i, unsigned level) const = 0;
    virtual void OffsetLevelVert(int i, const LPoint3& d, int level) = 0;
    virtual int GetActiveLevel() const = 0;
    virtual bool SetActiveLevel(unsigned level) = 0;
    virtual int RemapVertFromGlobal(unsigned i) const = 0;
    virtual int RemapFaceFromGlobal(unsigned i) const = 0;
    virtual void SetLevelChangedFlag(bool changed) = 0;
    virtual bool HasLevelChanged() const = 0;
    virtual void SetVertByAbsIdx(unsigned i, const LPoint3& p) = 0;
    virtual LPoint3 GetVertByAbsIdx(unsigned i) const = 0;
    virtual void OffsetVertByAbsIdx(unsigned i, const LPoint3& d) = 0;
    virtual void ClearAllLevelsVerts() = 0;

    /// All vertices of all levels by absolute number, for loops over many; null in a composition.
    virtual LPoint3* GetAllVertsPtr() = 0;
    virtual const LPoint3* GetAllVertsPtr() const = 0;
    /// The topology of a level, shared by all that work on it; null for a level that isn't there
    /// and in a composition.
    virtual std::shared_ptr<const LMeshTopology> GetLevelTopology(unsigned level) const = 0;
};

}  // namespace VantrelSDK
