#include "core/mesh/LOctTree.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <numeric>

#include "core/io/HugePages.h"
#include "core/math/Geometry.h"

namespace VantrelSDK {

int LOctTree::prefLeafSize = 70;
bool LOctTree::prefIgnoreBackFace = true;

void LOctTree::SetLeafSizePref(int size) {
    prefLeafSize = std::max(size, 1);
}

void TreeHits::Clear() {
    faces.clear();
    verts.clear();
    weights.clear();
    border.clear();
}

LPrism::LPrism(const LPoint3& eye, const LPoint3& dir, const LPoint3& p0, const LPoint3& p1,
               float radius)
    : direction_(dir), eye_(eye) {
    std::array<LPoint3, 4> corners;
    if (p0 == p1) {
        const LPoint3 a = dir ^ LPoint3(1, 0, 0), b = dir ^ a;
        corners = {p0 + a * radius, p0 + b * radius, p0 - a * radius, p0 - b * radius};
    } else {
        const LPoint3 u = Normalized(p1 - p0);
        const LPoint3 s = p0 - u * radius, e = p1 + u * radius, w = Normalized(dir ^ u) * radius;
        corners = {s + w, s - w, e - w, e + w};
    }
    planes_[0] = LPlane(eye, dir);
    for (int i = 0; i < 4; ++i) planes_[i + 1] = LPlane(eye, corners[i], corners[(i + 1) % 4]);
}

bool LPrism::IsInside(const LPoint3& p) const {
    return std::all_of(planes_, planes_ + 5, [&](const LPlane& plane) { return plane.IsAbove(p); });
}

bool LPrism::IsInside(const LPoint3& centre, float radius) const {
    if (IsInside(centre)) return true;
    return std::none_of(planes_ + 1, planes_ + 5, [&](const LPlane& plane) {
        return !plane.IsAbove(centre) &&
               std::fabs((plane.normal % centre + plane.d) * plane.reciprocal) > radius;
    });
}

bool LPrism::IsFacing(const LPoint3& centroid, const LPoint3& normal) const {
    return !(direction_ % normal > 0) && !(Normalized(centroid - eye_) % normal > 0);
}

void LOctTree::Box::Clear() {
    lo = {FLT_MAX, FLT_MAX, FLT_MAX};
    hi = {-FLT_MAX, -FLT_MAX, -FLT_MAX};
}

void LOctTree::Box::Add(const LPoint3& p) {
    lo = {std::min(lo.x, p.x), std::min(lo.y, p.y), std::min(lo.z, p.z)};
    hi = {std::max(hi.x, p.x), std::max(hi.y, p.y), std::max(hi.z, p.z)};
}

void LOctTree::Box::Add(const Box& box) {
    Add(box.lo);
    Add(box.hi);
}

void LOctTree::Box::Enlarge2(float f) {
    LPoint3 d = (hi - lo) * f;
    const float largest = std::max({d.x, d.y, d.z});
    for (float* axis : {&d.x, &d.y, &d.z})
        if (*axis == 0) *axis = largest == 0 ? 0.001f : largest;
    lo -= d;
    hi += d;
}

void LOctTree::WideBox::Set(int lane, const Box& box) {
    lo[0][lane] = box.lo.x, lo[1][lane] = box.lo.y, lo[2][lane] = box.lo.z;
    hi[0][lane] = box.hi.x, hi[1][lane] = box.hi.y, hi[2][lane] = box.hi.z;
}

LOctTree::Box LOctTree::WideBox::Get(int lane) const {
    return {{lo[0][lane], lo[1][lane], lo[2][lane]}, {hi[0][lane], hi[1][lane], hi[2][lane]}};
}

LOctTree::LOctTree(std::shared_ptr<const LMeshTopology> topology, const LPoint3* verts,
                   std::span<const uint8_t> hiddenFaces, LThreadGroup* workers)
    : topology_(std::move(topology)), workers_(workers) {
    if (topology_) Build(verts, hiddenFaces);
}

LOctTree::LOctTree(const LMesh& mesh) : LOctTree(mesh.Topology(), mesh.GetVertsPtr()) {}

void LOctTree::Rebuild(const LPoint3* verts, std::span<const uint8_t> hiddenFaces) {
    if (topology_) Build(verts, hiddenFaces);
}

bool LOctTree::GetBBox(LPoint3& min, LPoint3& max) const {
    if (IsEmpty()) return false;
    min = rootMin_;
    max = rootMax_;
    return true;
}

size_t LOctTree::MemoryUse() const {
    const auto bytes = [](const auto& v) { return v.capacity() * sizeof(v[0]); };
    return bytes(splits_) + bytes(leaves_) + bytes(packetBoxes_) + bytes(packetLeaf_) +
           bytes(faces_) + bytes(facePacket_) + bytes(slotPos_) + bytes(slotVert_) +
           bytes(vertSlot_) + bytes(slotMarks_) + bytes(faceMarks_) + bytes(packetMarks_);
}

namespace {

/// Cells per axis that the keys tell apart: 2^16.
constexpr int kKeyBits = 16;

/// Spreads 16 bits to every third place.
uint64_t SpreadBits(uint64_t x) {
    x = (x | x << 32) & 0x00ff00000000ffff;
    x = (x | x << 16) & 0x00ff0000ff0000ff;
    x = (x | x << 8) & 0xf00f00f00f00f00f;
    x = (x | x << 4) & 0x30c30c30c30c30c3;
    x = (x | x << 2) & 0x9249249249249249;
    return x;
}

uint64_t Cell(float p, float lo, float scale) {
    const float cell = (p - lo) * scale;
    // Written so that a position that is not a number lands in cell 0.
    return cell > 0 ? static_cast<uint64_t>(std::min(cell, 65535.0f)) : 0;
}

}  // namespace

/// Visible faces with the Morton keys of their centroids, in order of the keys (and of the faces
/// where keys are equal).
std::vector<LOctTree::Keyed> LOctTree::SortFaces(const LPoint3* verts,
                                                 std::span<const uint8_t> hiddenFaces) const {
    const std::vector<LFace>& faces = topology_->Faces();
    const LPoint3 extent = rootMax_ - rootMin_;
    const float cells = 1 << kKeyBits;
    const LPoint3 scale(cells / extent.x, cells / extent.y, cells / extent.z);
    std::vector<Keyed> keyed;
    ReserveLarge(keyed, faces.size());
    for (size_t f = 0; f < faces.size(); ++f) {
        if (f < hiddenFaces.size() && hiddenFaces[f]) continue;
        const LFace& face = faces[f];
        const LPoint3 g = (verts[face.v[0]] + verts[face.v[1]] + verts[face.v[2]]) * 0.33333f;
        const uint64_t key = SpreadBits(Cell(g.x, rootMin_.x, scale.x)) |
                             SpreadBits(Cell(g.y, rootMin_.y, scale.y)) << 1 |
                             SpreadBits(Cell(g.z, rootMin_.z, scale.z)) << 2;
        keyed.push_back({key, static_cast<int>(f)});
    }
    // Radix sort: stable, four rounds of 12 bits.
    std::vector<Keyed> other;
    ResizeLarge(other, keyed.size());
    for (int shift = 0; shift < 3 * kKeyBits; shift += 12) {
        std::array<size_t, 4096> start{};
        for (const Keyed& k : keyed) ++start[k.key >> shift & 4095];
        std::exclusive_scan(start.begin(), start.end(), start.begin(), size_t{0});
        for (const Keyed& k : keyed) other[start[k.key >> shift & 4095]++] = k;
        keyed.swap(other);
    }
    return keyed;
}

void LOctTree::Build(const LPoint3* verts, std::span<const uint8_t> hiddenFaces) {
    splits_.clear();
    leaves_.clear();
    packetBoxes_.clear();
    packetLeaf_.clear();
    faces_.clear();
    const int nverts = topology_->GetNumVerts(), nfaces = topology_->GetNumFaces();
    ReserveLarge(facePacket_, nfaces);
    facePacket_.assign(nfaces, -1);
    ReserveLarge(vertSlot_, nverts);
    vertSlot_.assign(nverts, -1);
    rootMin_ = rootMax_ = LPoint3::Zero;
    if (nverts == 0 || nfaces == 0) return;

    Box box;
    box.Clear();
    for (int v = 0; v < nverts; ++v) box.Add(verts[v]);
    const LPoint3 size = box.hi - box.lo;
    const LPoint3 margin(size.x < 0.0001f ? 0.001f : 0, size.y < 0.0001f ? 0.001f : 0,
                         size.z < 0.0001f ? 0.001f : 0);
    box.lo -= margin;
    box.hi += margin;
    if (nfaces > prefLeafSize) box.Enlarge2(0.01f);
    rootMin_ = box.lo;
    rootMax_ = box.hi;

    const std::vector<Keyed> sorted = SortFaces(verts, hiddenFaces);
    if (sorted.empty()) return;
    ReserveLarge(faces_, sorted.size());
    BuildNode(sorted, 0, static_cast<int>(sorted.size()), 3 * (kKeyBits - 1), -1, 0);
    FillSlots(sorted);
    for (size_t s = 0; s < slotPos_.size(); ++s) slotPos_[s] = verts[slotVert_[s]];
    RefitAll();
    rootMin_ = box.lo;
    rootMax_ = box.hi;

    ReserveLarge(slotMarks_, slotPos_.size());
    slotMarks_.assign(slotPos_.size(), {});
    ReserveLarge(faceMarks_, faces_.size());
    faceMarks_.assign(faces_.size(), 0);
    packetMarks_.assign(packetBoxes_.size() * kWide, 0);
    vertChain_ = faceChain_ = query_ = refit_ = 0;
}

/// Makes the node of sorted[first, last), whose keys agree above bit + 2. Returns its number as a
/// child: a split's index or ~ a leaf's.
int LOctTree::BuildNode(const std::vector<Keyed>& sorted, int first, int last, int bit, int parent,
                        int lane) {
    // A level on which all faces fall into one octant makes no node.
    while (bit >= 0 && sorted[first].key >> bit == sorted[last - 1].key >> bit) bit -= 3;
    if (last - first <= prefLeafSize || bit < 0) {
        AddLeaf(sorted, first, last, parent, lane);
        return ~(static_cast<int>(leaves_.size()) - 1);
    }
    const int index = static_cast<int>(splits_.size());
    splits_.emplace_back();
    splits_[index].parent = parent;
    splits_[index].lane = lane;
    Box empty;
    empty.Clear();
    int begin = first;
    for (int octant = 0; octant < kWide; ++octant) {
        splits_[index].boxes.Set(octant, empty);
        splits_[index].child[octant] = kNone;
        const auto end = std::partition_point(
            sorted.begin() + begin, sorted.begin() + last,
            [&](const Keyed& k) { return static_cast<int>(k.key >> bit & 7) <= octant; });
        const int next = static_cast<int>(end - sorted.begin());
        if (next > begin) {
            const int child = BuildNode(sorted, begin, next, bit - 3, index, octant);
            splits_[index].child[octant] = child;
        }
        begin = next;
    }
    return index;
}

void LOctTree::AddLeaf(const std::vector<Keyed>& sorted, int first, int last, int parent,
                       int lane) {
    const int count = last - first;
    Leaf leaf{};
    leaf.parent = parent;
    leaf.lane = lane;
    leaf.firstFace = first;
    leaf.numFaces = count;
    leaf.packetFaces = std::clamp((count + kWide - 1) / kWide, 4, kMaxPacket);
    leaf.firstPacket = static_cast<int>(packetBoxes_.size()) * kWide;
    leaf.numPackets = (count + leaf.packetFaces - 1) / leaf.packetFaces;
    const int number = static_cast<int>(leaves_.size());
    Box empty;
    empty.Clear();
    for (int p = 0; p < leaf.numPackets; p += kWide) {
        packetBoxes_.emplace_back();
        for (int k = 0; k < kWide; ++k) packetBoxes_.back().Set(k, empty);
        packetLeaf_.push_back(number);
    }
    for (int i = 0; i < count; ++i)
        facePacket_[sorted[first + i].face] = leaf.firstPacket + i / leaf.packetFaces;
    leaves_.push_back(leaf);
}

/// Gives each vertex to the first leaf whose faces name it, in order of meeting.
void LOctTree::FillSlots(const std::vector<Keyed>& sorted) {
    const std::vector<LFace>& faces = topology_->Faces();
    slotVert_.clear();
    ReserveLarge(slotVert_, topology_->GetNumVerts());
    faces_.resize(sorted.size());
    for (Leaf& leaf : leaves_) {
        leaf.firstSlot = static_cast<int>(slotVert_.size());
        for (int i = leaf.firstFace; i < leaf.firstFace + leaf.numFaces; ++i) {
            faces_[i].face = sorted[i].face;
            for (int k = 0; k < 3; ++k) {
                int& slot = vertSlot_[faces[sorted[i].face].v[k]];
                if (slot < 0) {
                    slot = static_cast<int>(slotVert_.size());
                    slotVert_.push_back(faces[sorted[i].face].v[k]);
                }
                faces_[i].slot[k] = slot;
            }
        }
        leaf.numSlots = static_cast<int>(slotVert_.size()) - leaf.firstSlot;
    }
    ResizeLarge(slotPos_, slotVert_.size());
}

std::pair<int, int> LOctTree::PacketFaces(int packet) const {
    const Leaf& leaf = leaves_[packetLeaf_[packet / kWide]];
    const int begin = (packet - leaf.firstPacket) * leaf.packetFaces;
    return {leaf.firstFace + begin,
            leaf.firstFace + std::min(begin + leaf.packetFaces, leaf.numFaces)};
}

void LOctTree::RefitPacket(int packet) {
    Box box;
    box.Clear();
    const auto [first, last] = PacketFaces(packet);
    for (int i = first; i < last; ++i)
        for (const int slot : faces_[i].slot) box.Add(slotPos_[slot]);
    packetBoxes_[packet / kWide].Set(packet % kWide, box);
}

void LOctTree::RefitLeaf(int index) {
    Leaf& leaf = leaves_[index];
    leaf.box.Clear();
    for (int p = leaf.firstPacket; p < leaf.firstPacket + leaf.numPackets; ++p)
        leaf.box.Add(packetBoxes_[p / kWide].Get(p % kWide));
    leaf.box.Enlarge2(0.01f);
    SetParentBox(leaf.parent, leaf.lane, leaf.box);
}

LOctTree::Box LOctTree::SplitBox(const Split& split) const {
    Box box;
    box.Clear();
    for (int k = 0; k < kWide; ++k)
        if (split.child[k] != kNone) box.Add(split.boxes.Get(k));
    return box;
}

void LOctTree::SetParentBox(int parent, int lane, const Box& box) {
    if (parent >= 0) {
        splits_[parent].boxes.Set(lane, box);
    } else {
        rootMin_ = box.lo;
        rootMax_ = box.hi;
    }
}

void LOctTree::RefitAll() {
    const auto refit = [this](int first, int last, int) {
        for (int l = first; l < last; ++l) {
            const Leaf& leaf = leaves_[l];
            for (int p = leaf.firstPacket; p < leaf.firstPacket + leaf.numPackets; ++p)
                RefitPacket(p);
        }
    };
    if (workers_)
        workers_->ForSlices(static_cast<int>(leaves_.size()), 256, refit);
    else
        refit(0, static_cast<int>(leaves_.size()), 0);
    for (size_t l = 0; l < leaves_.size(); ++l) RefitLeaf(static_cast<int>(l));
    for (size_t s = splits_.size(); s-- > 0;)
        SetParentBox(splits_[s].parent, splits_[s].lane, SplitBox(splits_[s]));
}

void LOctTree::Recalc(const LPoint3* verts) {
    if (IsEmpty()) return;
    for (size_t s = 0; s < slotPos_.size(); ++s) slotPos_[s] = verts[slotVert_[s]];
    RefitAll();
}

void LOctTree::Recalc(const LPoint3* verts, std::span<const int> moved) {
    if (IsEmpty() || moved.empty()) return;
    const LAdjFaceList& around = topology_->AdjFaces();
    if (++refit_ == 0) {
        std::fill(packetMarks_.begin(), packetMarks_.end(), 0);
        refit_ = 1;
    }
    dirtyPackets_.clear();
    for (const int v : moved) {
        const int slot = vertSlot_[v];
        if (slot < 0) continue;
        slotPos_[slot] = verts[v];
        for (const int f : around.GetAdjFacesForVert(v)) {
            const int packet = facePacket_[f];
            if (packet < 0 || packetMarks_[packet] == refit_) continue;
            packetMarks_[packet] = refit_;
            dirtyPackets_.push_back(packet);
        }
    }
    // Packets of one leaf lie together, and a parent stands before its children: in descending
    // order every box is made of boxes that are done.
    std::sort(dirtyPackets_.begin(), dirtyPackets_.end());
    dirtyNodes_.clear();
    int lastLeaf = -1;
    for (size_t i = 0; i < dirtyPackets_.size(); ++i) {
        RefitPacket(dirtyPackets_[i]);
        const int leaf = packetLeaf_[dirtyPackets_[i] / kWide];
        if (leaf != lastLeaf && lastLeaf >= 0) FinishLeaf(lastLeaf);
        lastLeaf = leaf;
    }
    if (lastLeaf >= 0) FinishLeaf(lastLeaf);
    std::make_heap(dirtyNodes_.begin(), dirtyNodes_.end());
    while (!dirtyNodes_.empty()) {
        const int node = dirtyNodes_.front();
        while (!dirtyNodes_.empty() && dirtyNodes_.front() == node) {
            std::pop_heap(dirtyNodes_.begin(), dirtyNodes_.end());
            dirtyNodes_.pop_back();
        }
        const Split& split = splits_[node];
        SetParentBox(split.parent, split.lane, SplitBox(split));
        if (split.parent >= 0) {
            dirtyNodes_.push_back(split.parent);
            std::push_heap(dirtyNodes_.begin(), dirtyNodes_.end());
        }
    }
}

void LOctTree::FinishLeaf(int index) {
    RefitLeaf(index);
    if (leaves_[index].parent >= 0) dirtyNodes_.push_back(leaves_[index].parent);
}

bool LOctTree::HasSameBoxes(const LOctTree& other) const {
    const auto same = [](const Box& a, const Box& b) { return a.lo == b.lo && a.hi == b.hi; };
    if (leaves_.size() != other.leaves_.size() || splits_.size() != other.splits_.size() ||
        !same({rootMin_, rootMax_}, {other.rootMin_, other.rootMax_}))
        return false;
    for (size_t l = 0; l < leaves_.size(); ++l) {
        if (!same(leaves_[l].box, other.leaves_[l].box)) return false;
        for (int p = leaves_[l].firstPacket; p < leaves_[l].firstPacket + leaves_[l].numPackets;
             ++p)
            if (!same(packetBoxes_[p / kWide].Get(p % kWide),
                      other.packetBoxes_[p / kWide].Get(p % kWide)))
                return false;
    }
    for (size_t s = 0; s < splits_.size(); ++s)
        if (!same(SplitBox(splits_[s]), other.SplitBox(other.splits_[s]))) return false;
    return true;
}

std::string LOctTree::Validate() const {
    std::vector<int> seen(facePacket_.size(), 0);
    for (size_t l = 0; l < leaves_.size(); ++l) {
        const Leaf& leaf = leaves_[l];
        for (int i = leaf.firstFace; i < leaf.firstFace + leaf.numFaces; ++i) {
            const TreeFace& face = faces_[i];
            ++seen[face.face];
            const int packet = facePacket_[face.face];
            if (packet < leaf.firstPacket || packet >= leaf.firstPacket + leaf.numPackets)
                return "a face's packet lies in another leaf";
            const Box box = packetBoxes_[packet / kWide].Get(packet % kWide);
            for (int k = 0; k < 3; ++k) {
                if (slotVert_[face.slot[k]] != topology_->Faces()[face.face].v[k])
                    return "a face's slot holds another vertex";
                Box grown = box;
                grown.Add(slotPos_[face.slot[k]]);
                if (!(grown.lo == box.lo && grown.hi == box.hi))
                    return "a packet's box misses a corner";
            }
        }
        for (int s = leaf.firstSlot; s < leaf.firstSlot + leaf.numSlots; ++s)
            if (vertSlot_[slotVert_[s]] != s) return "a slot's vertex has another slot";
        const Box box = leaf.parent < 0 ? leaf.box : splits_[leaf.parent].boxes.Get(leaf.lane);
        if (!(box.lo == leaf.box.lo && box.hi == leaf.box.hi))
            return "a leaf's box is not what its parent holds";
    }
    for (size_t f = 0; f < seen.size(); ++f)
        if (seen[f] != (facePacket_[f] >= 0)) return "a face stands in no leaf or in several";
    for (size_t s = 1; s < splits_.size(); ++s) {
        const Box box = SplitBox(splits_[s]),
                  held = splits_[splits_[s].parent].boxes.Get(splits_[s].lane);
        if (splits_[s].parent >= static_cast<int>(s)) return "a parent stands behind its child";
        if (!(box.lo == held.lo && box.hi == held.hi))
            return "a split's box is not what its parent holds";
    }
    return {};
}

}  // namespace VantrelSDK
