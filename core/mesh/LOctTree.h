#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "core/math/LPlane.h"
#include "core/math/LPoint2.h"
#include "core/math/LPoint3.h"
#include "core/mesh/LMesh.h"
#include "core/sculpt/LThreadGroup.h"

namespace VantrelSDK {

class LFalloffCache;
struct TreeRay;

/// The screen-aligned volume that a brush sweeps from p0 to p1, as seen from an eye.
class LPrism {
  public:
    /// `dir` is the view direction, `radius` the brush radius in object units.
    LPrism(const LPoint3& eye, const LPoint3& dir, const LPoint3& p0, const LPoint3& p1,
           float radius);

    bool IsInside(const LPoint3& p) const;
    /// False when a sphere lies wholly outside one of the four side planes.
    bool IsInside(const LPoint3& centre, float radius) const;
    /// True when a face with this centroid and this normal ((c - a) ^ (b - a), unit) faces the eye.
    bool IsFacing(const LPoint3& centroid, const LPoint3& normal) const;

  private:
    LPlane planes_[5];
    LPoint3 direction_, eye_;
};

/// What a query found. Numbers are those of the tree's mesh; every face and vertex stands once.
struct TreeHits {
    std::vector<int> faces;
    std::vector<int> verts;
    /// Of a search into an empty list: the first so many of `verts` lie inside, the rest are other
    /// corners of `faces`.
    size_t numInside = 0;
    /// One per entry of `verts`; filled by the swept query alone.
    std::vector<float> weights;
    /// Corners of `faces` that are not in `verts`: the ring around what was found, whose normals
    /// change with it. Filled by the swept query alone (the others put all corners into `verts`).
    std::vector<int> border;

    void Clear();
};

/// Spatial queries over one level's triangles: which faces and vertices lie under a brush, where a
/// ray hits, which surface point is nearest.
///
/// An octree over the faces' centroids (each visible face in one leaf of at most prefLeafSize
/// faces), laid out flat: a split holds the boxes of its eight children side by side; a leaf holds
/// its faces in packets of up to nine with a box each, and the positions of the vertices that it
/// owns (those met first in its faces) in a row, so that a brush reads memory in a line. After a
/// change of positions the boxes are refitted and the assignment stays.
///
/// Queries find what a search of all faces would find, always: boxes hold all corners of their
/// faces, and a box is tested with the very arithmetic of the vertices in it. Hidden faces are not
/// in the tree. A tree serves one query at a time; with a worker group set, a large brush query
/// runs on it, with the same result in the same order.
class LOctTree {
  public:
    /// Faces a leaf holds at most, unless they can't be told apart. Read by the next build.
    static int prefLeafSize;
    /// A ray passes through faces that look away from it.
    static bool prefIgnoreBackFace;
    static void SetLeafSizePref(int size);
    static void SetIgnoreBackFacePref(bool ignore) { prefIgnoreBackFace = ignore; }

    /// A sphere; radial tests are strict.
    struct Sphere {
        LPoint3 centre;
        float radius = 0;
    };

    /// A step of a brush from p0 to p1 as a line with a radius, ends open: a vertex is in it when
    /// it is nearer than `radius` to the line through p0 and p1, and in `bounds`.
    struct Line {
        Sphere bounds;
        LPoint3 p0, p1;
        float radius = 0;
    };

    /// A step of a brush from p0 to p1 with the weight it gives. p0 and p1 differ.
    struct Sweep {
        LPoint3 p0, p1;
        /// The start of the step before; equal to p0 when there is none.
        LPoint3 prev;
        float radius = 0;
        /// Take off what the step before gave.
        bool accumulate = false;
        /// Null: weight 1 wherever the brush reaches.
        const LFalloffCache* falloff = nullptr;
    };

    struct RayHit {
        int face = -1;
        float t = 0;
        LPoint3 point, bary;
    };

    struct ClosestHit {
        int face = -1;
        LPoint3 point;
        float distance = 0;
    };

    /// `verts` has one position a vertex of the topology; `hiddenFaces` one byte a face (non-zero:
    /// left out), or nothing. `workers` (may be null) is borrowed for the tree's life.
    LOctTree(std::shared_ptr<const LMeshTopology> topology, const LPoint3* verts,
             std::span<const uint8_t> hiddenFaces = {}, LThreadGroup* workers = nullptr);
    explicit LOctTree(const LMesh& mesh);

    /// Makes the tree anew over these positions.
    void Rebuild(const LPoint3* verts, std::span<const uint8_t> hiddenFaces);
    /// Refits all boxes to new positions.
    void Recalc(const LPoint3* verts);
    /// Refits what the listed vertices changed; the boxes are those of a whole refit. `verts` has
    /// all positions, of which only the listed ones differ from the tree's.
    void Recalc(const LPoint3* verts, std::span<const int> moved);

    bool IsEmpty() const { return leaves_.empty(); }
    /// The root's box: after a build that of the mesh with a margin, after a refit that of the
    /// leaves.
    bool GetBBox(LPoint3& min, LPoint3& max) const;
    /// The root box's diagonal.
    LPoint3 GetExtent() const { return rootMax_ - rootMin_; }
    const std::shared_ptr<const LMeshTopology>& Topology() const { return topology_; }
    /// Bytes of the tree, without the topology that it shares.
    size_t MemoryUse() const;

    /// The queries take one volume, or two (the halves of a symmetric brush) and join the results.
    /// They append to `hits` and find only what its lists (from the calls before) don't hold: a
    /// list that is empty starts anew. True when anything is found.

    /// Vertices strictly within a sphere, into hits.verts.
    bool FindVerts(std::span<const Sphere> spheres, TreeHits& hits);
    /// Faces with a corner strictly within a sphere, and their three corners.
    bool FindFaces(std::span<const Sphere> spheres, TreeHits& hits);
    /// Faces with a corner in a line, and their three corners.
    bool FindFaces(std::span<const Line> lines, TreeHits& hits);
    /// Vertices that a sweep gives a weight above 0, the greater of several; faces with such a
    /// corner.
    bool FindFaces(std::span<const Sweep> sweeps, TreeHits& hits);
    /// Faces with a corner strictly within the sphere, or whose ball around the centroid through
    /// corner 0 meets it; into `faces`.
    bool FindFacesNear(const Sphere& sphere, std::vector<int>& faces) const;
    /// Faces inside the prism that face its eye; into `faces`.
    bool FindFaces(const LPrism& prism, std::vector<int>& faces) const;

    /// The surface point nearest p within r: of each face the foot of p when it falls inside the
    /// face, else the nearest corner.
    bool FindClosetPoint(const LPoint3& p, float r, ClosestHit& hit) const;

    /// The nearest hit along the ray (or, with firstHit, any). t counts in lengths of dir.
    bool TraceRay(const LPoint3& origin, const LPoint3& dir, RayHit& hit,
                  bool firstHit = false) const;

    /// The weight that a sweep gives a position; 0 outside it.
    static float SweepWeight(const Sweep& sweep, const LPoint3& v);

    /// Checks every promise of the layout; empty when all hold, else what is broken.
    std::string Validate() const;
    /// The boxes of all nodes are those of another tree of the same build.
    bool HasSameBoxes(const LOctTree& other) const;

  private:
    static constexpr int kWide = 8;
    static constexpr int kMaxPacket = 9;
    static constexpr int kNone = INT32_MIN;

    struct Box {
        LPoint3 lo, hi;
        void Clear();
        void Add(const LPoint3& p);
        void Add(const Box& box);
        /// Moves each side out by f of the box's size; a flat axis takes the larger of the others.
        void Enlarge2(float f);
    };

    /// Eight boxes side by side, for tests of four lanes at a time. An unused lane is inside out.
    struct alignas(32) WideBox {
        float lo[3][kWide], hi[3][kWide];
        void Set(int lane, const Box& box);
        Box Get(int lane) const;
    };

    struct Split {
        WideBox boxes;
        /// A split's index, ~ a leaf's index, or kNone.
        int child[kWide];
        int parent;
        int lane;
    };

    struct Leaf {
        Box box;
        /// The first packet is lane 0 of a WideBox; each holds packetFaces faces, the last one
        /// fewer.
        int firstPacket, numPackets, packetFaces;
        int firstFace, numFaces;
        int firstSlot, numSlots;
        int parent;
        int lane;
    };

    /// A face by the slots of its corners.
    struct TreeFace {
        int slot[3];
        int face;
    };

    /// Marks of a slot: in which chain of queries it was listed, in which query it was inside.
    struct SlotMark {
        uint32_t listed = 0, inside = 0;
    };

    /// What one worker finds; kept between queries.
    struct Scratch {
        TreeHits hits;
        std::vector<int> ring;
    };

    struct Keyed {
        uint64_t key;
        int face;
    };

    void Build(const LPoint3* verts, std::span<const uint8_t> hiddenFaces);
    std::vector<Keyed> SortFaces(const LPoint3* verts, std::span<const uint8_t> hiddenFaces) const;
    int BuildNode(const std::vector<Keyed>& sorted, int first, int last, int bit, int parent,
                  int lane);
    void AddLeaf(const std::vector<Keyed>& sorted, int first, int last, int parent, int lane);
    void FillSlots(const std::vector<Keyed>& sorted);
    void RefitPacket(int packet);
    void RefitLeaf(int leaf);
    Box SplitBox(const Split& split) const;
    void RefitAll();
    void SetParentBox(int parent, int lane, const Box& box);
    void FinishLeaf(int leaf);
    /// The places in faces_ of a packet's faces, as first and end.
    std::pair<int, int> PacketFaces(int packet) const;

    template <class Volume>
    struct Volumes;
    bool BeginQuery(const TreeHits& hits, int numVolumes);
    template <class Touches, class Visit>
    void WalkLeaves(const Touches& touches, Visit visit) const;
    template <class Scan>
    void ScanLeaves(const Scan& scan);
    template <class Volume>
    bool Collect(const Volumes<Volume>& volumes, TreeHits& hits, bool wantFaces,
                 std::vector<int>& ring, bool weighted);
    template <class Volume>
    void ScanVerts(const Volumes<Volume>& volumes, int first, int last, TreeHits& hits,
                   bool weighted);
    void ScanFaces(int first, int last, TreeHits& hits, std::vector<int>& ring);
    /// Calls visit(face, a, b, c) with the corners of each face of a leaf.
    template <class Visit>
    void ForEachFace(int leaf, Visit visit) const {
        const Leaf& l = leaves_[leaf];
        for (int i = l.firstFace; i < l.firstFace + l.numFaces; ++i)
            visit(faces_[i].face, slotPos_[faces_[i].slot[0]], slotPos_[faces_[i].slot[1]],
                  slotPos_[faces_[i].slot[2]]);
    }
    void PrefetchNode(int node) const;
    void IntersectLeaf(const Leaf& leaf, const TreeRay& ray, RayHit& best) const;

    std::shared_ptr<const LMeshTopology> topology_;
    LThreadGroup* workers_ = nullptr;
    LPoint3 rootMin_, rootMax_;
    /// Index 0 is the root, unless the root is leaf 0. A parent stands before its children.
    std::vector<Split> splits_;
    std::vector<Leaf> leaves_;
    std::vector<WideBox> packetBoxes_;
    /// Per WideBox of packets: its leaf.
    std::vector<int> packetLeaf_;
    std::vector<TreeFace> faces_;
    /// Per face of the mesh: its packet, or -1 when hidden.
    std::vector<int> facePacket_;
    std::vector<LPoint3> slotPos_;
    std::vector<int> slotVert_;
    /// Per vertex of the mesh: its slot, or -1 without a visible face.
    std::vector<int> vertSlot_;

    std::vector<SlotMark> slotMarks_;
    std::vector<uint32_t> faceMarks_;
    std::vector<uint32_t> packetMarks_;
    uint32_t vertChain_ = 0, faceChain_ = 0, query_ = 0, refit_ = 0;
    std::vector<int> leafList_;
    std::vector<int> dirtyPackets_;
    std::vector<int> dirtyNodes_;
    std::vector<Scratch> scratch_;
};

}  // namespace VantrelSDK
