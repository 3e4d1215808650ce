#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "core/math/LColor.h"
#include "core/morph/LJoint.h"
#include "core/morph/SparseValues.h"
#include "core/subdiv/LSubdivMesh.h"

namespace VantrelSDK {

class LBlindData;
class LMeshBases;
class LMeshBasesUV2;
class LNode;
class NodeCallback;
class SkinFrames;

/// The spaces that offsets are held in: axes of the object, or the frame of the surface there.
enum TargetSpace { kObjectSpace = 1, kTangentSpace = 2 };

/// One stored shape: offsets of some vertices, over all levels by their absolute numbers, in one of
/// the spaces.
///
/// A target keeps the surface that it was made on, its skin, since a tangent offset says something
/// only there. A target that was set has offsets, if only a zero one.
class LMorphTarget {
  public:
    enum Kind { kStandard = 0, kPose = 1, kFlexor = 2, kMix = 3 };

    /// `owner` is borrowed and may be null; `level0nv` is the number of vertices of level 0.
    LMorphTarget(LNode* owner, std::string name, int level0nv)
        : owner_(owner), name_(std::move(name)), level0nv_(level0nv) {}
    /// A deep copy.
    LMorphTarget(const LMorphTarget& other);
    LMorphTarget(LMorphTarget&&) = default;
    LMorphTarget& operator=(const LMorphTarget&) = delete;
    virtual ~LMorphTarget() = default;

    virtual int GetKind() const { return kStandard; }
    /// The TargetSpace that the offsets are in.
    virtual int GetSpace() const { return kTangentSpace; }
    LNode* owner() const { return owner_; }
    const std::string& GetName() const { return name_; }
    void SetName(std::string name) { name_ = std::move(name); }
    int GetLevel0Size() const { return level0nv_; }

    /// The background of the target's swatch.
    const LColor& GetBackColor() const { return backcolor_; }
    virtual void SetBackColor(const LColor& color) {
        backcolor_ = color;
        isdefback_ = false;
    }
    /// It was never set.
    bool IsDefBack() const { return isdefback_; }
    void SetIsDefBack(bool isDefault) { isdefback_ = isDefault; }
    /// The pixels of the swatch, as whoever draws it gave them; empty without one.
    virtual std::span<const uint8_t> getImageBytes() const { return image_; }
    virtual void setImageBytes(std::span<const uint8_t> bytes) {
        image_.assign(bytes.begin(), bytes.end());
    }

    /// A joint of the kind that this target keeps.
    virtual std::unique_ptr<LJoint> newJoint() const { return std::make_unique<LJoint>(); }
    void AddJoint(std::unique_ptr<LJoint> joint) { joints_.push_back(std::move(joint)); }
    int GetNumJoints() const { return static_cast<int>(joints_.size()); }
    /// Null out of range.
    LJoint* GetJoint(int i) const {
        return i >= 0 && i < GetNumJoints() ? joints_[i].get() : nullptr;
    }
    void ClearJoints() { joints_.clear(); }

    /// Set and not cleared since.
    bool HasXYZ() const { return !geom_.empty(); }
    /// How many vertices have an offset.
    size_t SizeGeom() const { return geom_.size(); }
    const SparseOffsets& geom() const { return geom_; }
    /// The target as level 0 shows it while the levels above are not used; see CreateProxyObj.
    const SparseOffsets& proxy() const { return proxy_; }
    /// Replaces both, as they came from elsewhere.
    void SetGeom(SparseOffsets geom, SparseOffsets proxy);
    /// The offset of a vertex, zero where there is none; or false there.
    LPoint3 MorphVector(int v) const;
    bool MorphVector(int v, LPoint3& offset) const;

    /// The same for colours.
    bool HasRGBA() const { return !colors_.empty(); }
    size_t SizeColor() const { return colors_.size(); }
    const SparseColors& colors() const { return colors_; }
    void SetColors(SparseColors colors) { colors_ = std::move(colors); }
    LAColor MorphColor(int v) const;
    bool MorphColor(int v, LAColor& color) const;
    void ClearColor() { colors_.Clear(); }

    /// Calls back for the vertices with a value, in vertex order: all of them, or with `limited`
    /// those below `limit` (-1: all). A proxy is walked whole.
    void Traverse(NodeCallback* callback, bool limited = false, int limit = -1);

    /// Takes the offsets of all levels of a delta mesh; without any, a zero one. False, and no
    /// change, for a mesh without vertices.
    bool CopyFromMesh(const LSubdivMesh* delta);
    /// Takes `count` offsets of vertices in order from 0 that are long enough to count: their
    /// square is at least cDeltaEpsilonSq.
    bool CopyFromMorph(const LPoint3* offsets, int count);
    void ClearGeom();
    /// Offsets and colours.
    void Clear();

    /// Through the owner: LNode::CopyFromDelta, and the object's input as skin; and
    /// LNode::CopyToDelta. False without an owner.
    bool CopyFromDelta(LMeshBasesUV2* bases);
    bool CopyToDelta();
    bool CopyToDelta(LMeshBasesUV2* bases);

    /// Level-0 positions of the mesh that the target was made on; empty when it has no skin.
    const std::vector<LPoint3>& skin() const { return skin_; }
    void CopySkin(const LPoint3* verts, int count) { skin_.assign(verts, verts + count); }

    /// mesh[v] += offset * weight, for all vertices of the active level or for those below `limit`.
    /// Returns how many vertices were touched. The form with two meshes writes base plus offset for
    /// the vertices with one.
    int ApllyMorph(LMesh* mesh, float weight = 1, int limit = -1) const;
    int ApllyMorph(const LMesh* base, LMesh* out, int limit = -1) const;
    /// The same over the levels of a mesh by absolute number, `levels` of them (-1: all). When one
    /// is asked for and the mesh has more, the proxy serves.
    int ApplyToLevels(LSubdivMesh* mesh, int levels, float weight);
    /// Replaces all levels of a mesh by the target.
    void CopyToLevels(LSubdivMesh* mesh);

    /// The target gains the top level of `mesh`, a working delta mesh with the levels of the node,
    /// by interpolation without smoothing in the space that it is held in. `mesh` is left with the
    /// target's offsets.
    bool AddSubdivLevel(LSubdivMesh* mesh);
    /// The same through object space on the target's own skin, for a target in tangent space.
    /// False without a skin. `below` and `above` have the levels without and with the new one; both
    /// null: the target is in object space.
    bool AddSubdivLevelOwnSkin(LSubdivMesh* mesh, SkinFrames* below, SkinFrames* above);
    /// Drops the vertices from `nverts` on: the top level's first.
    void DeleteTopLevel(int nverts);
    /// The twin of AddSubdivLevelOwnSkin: drops the vertices from `nverts` on, the top level's
    /// first. Without a skin or frames, DeleteTopLevel.
    void DeleteTopLevelOwnSkin(int nverts, SkinFrames* below, SkinFrames* above);

    /// Takes the offsets, of the levels that `frames` has, through those on the target's skin in a
    /// LMeshBases::Direction; the proxy is the offsets of level 0 then. Costs what has an offset.
    void Transform(SkinFrames& frames, int direction);
    /// Makes the proxy of a target in object space: its level 0.
    void CreateProxyObj();
    /// Of one in tangent space: through object space on the full surface and back on the low one,
    /// each by the frames of its top.
    void CreateProxyTang(LMeshBasesUV2* full, LMeshBasesUV2* low);

    /// The target as a record. Both return one of LBlindData's codes. With an owner that has an
    /// object, what is read must fit the object's vertices. A failed reading leaves a target with
    /// some of its parts.
    virtual int WriteTo(LBlindData* stream) const;
    virtual int ReadFrom(LBlindData* stream);

  private:
    LNode* owner_;
    std::string name_;
    LColor backcolor_;
    bool isdefback_ = true;
    std::vector<uint8_t> image_;
    std::vector<std::unique_ptr<LJoint>> joints_;
    int level0nv_;
    SparseOffsets geom_, proxy_;
    SparseColors colors_;
    std::vector<LPoint3> skin_;
};

/// The shortest offset that a shape read from elsewhere keeps, squared.
inline constexpr float cDeltaEpsilonSq = 1e-09f;

}  // namespace VantrelSDK
