#include "core/subdiv/LSubdivCollection.h"

namespace VantrelSDK {

ISubdivLayer* ISubdivLayer::prew() const {
    return owner_->GetLayer(index_ - 1);
}

ISubdivLayer* ISubdivLayer::next() const {
    return owner_->GetLayer(index_ + 1);
}

ISubdivLayer::ISubdivLayer(LSubdivCollection* owner, std::shared_ptr<const LMeshTopology> topology,
                           std::shared_ptr<const LLevelRule> rule)
    : owner_(owner),
      index_(owner->GetNumLayers()),
      topology_(std::move(topology)),
      rule_(std::move(rule)) {}

EntireSubdivLayer::EntireSubdivLayer(LSubdivCollection* owner, int nextVerts,
                                     std::shared_ptr<const LMeshTopology> topology,
                                     std::shared_ptr<const LLevelRule> rule)
    : ISubdivLayer(owner, std::move(topology), std::move(rule)), nextVerts_(nextVerts) {
    const ISubdivLayer* below = owner->GetTop();
    faceStart_ = below ? below->GetFirstFace() : 0;
    faceEnd_ = below ? below->GetLastFace() : owner->noFaces() - 1;
    vertStart_ = below ? below->GetFirstVert() : 0;
    vertEnd_ = below ? below->GetLastVert() : owner->noVerts() - 1;
}

std::string EntireSubdivLayer::GetName() const {
    return std::to_string(index_) + " Tri [f" + std::to_string(GetNumFaces()) + " v" +
           std::to_string(GetNumVerts()) + "]";
}

int EntireSubdivLayer::GetNumVerts() const {
    return nextVerts_ + (prew() ? prew()->GetNumVerts() : owner_->noVerts());
}

int EntireSubdivLayer::GetNumTotalExtFaces() const {
    return GetNumFaces() + (prew() ? prew()->GetNumTotalExtFaces() : 0);
}

int EntireSubdivLayer::GetNumTotalExtVerts() const {
    return nextVerts_ + (prew() ? prew()->GetNumTotalExtVerts() : 0);
}

int EntireSubdivLayer::GetNumTotalFaces() const {
    return GetNumTotalExtFaces() + owner_->noFaces();
}

LFaceSubs EntireSubdivLayer::GetFaceSubs(int i) const {
    LFaceSubs subs;
    for (int k = 0; k < 4; ++k) subs.subs[k] = GetFirstFace() + 4 * i + k;
    return subs;
}

namespace {

LPoint3 Middle(const LPoint3& a, const LPoint3& b) {
    return (a + b) * 0.5f;
}

/// Barycentrics in the children of a face: by its corners, counted on from any number, and the
/// middles of the edges from one corner to the next.
struct FaceBarysAt {
    const LFaceBarys& face;
    LPoint3 Corner(int k) const { return face.v[k % 3]; }
    LPoint3 Mid(int k) const { return Middle(face.v[k % 3], face.v[(k + 1) % 3]); }
};

}  // namespace

void EntireSubdivLayer::GetChildBarys(int, const LFaceBarys& parent, LFaceBarys (&out)[6]) const {
    const FaceBarysAt at{parent};
    for (int k = 0; k < 3; ++k) out[k] = {{at.Corner(k), at.Mid(k), at.Mid(k + 2)}};
    out[3] = {{at.Mid(0), at.Mid(1), at.Mid(2)}};
}

std::unique_ptr<ISubdivLayer> EntireSubdivLayer::Clone(LSubdivCollection* owner) const {
    return std::make_unique<EntireSubdivLayer>(owner, nextVerts_, topology_, rule_);
}

EntireQuadSubdivLayer::EntireQuadSubdivLayer(LSubdivCollection* owner, int nextVerts,
                                             std::shared_ptr<const LTriCoupling> coupling,
                                             std::shared_ptr<const LMeshTopology> topology,
                                             std::shared_ptr<const LLevelRule> rule)
    : EntireSubdivLayer(owner, nextVerts, std::move(topology), std::move(rule)),
      numFaces_(8 * coupling->NumPairs() + 6 * coupling->NumSingles()),
      coupling_(std::move(coupling)) {}

std::string EntireQuadSubdivLayer::GetName() const {
    return std::to_string(index_) + " Quad [f" + std::to_string(GetNumFaces()) + " v" +
           std::to_string(GetNumVerts()) + "]";
}

LFaceSubs EntireQuadSubdivLayer::GetFaceSubs(int i) const {
    // The triangles of a pair's four quads that lie in its first and in its second face.
    static constexpr int kInFirst[4] = {0, 1, 3, 6}, kInSecond[4] = {2, 4, 5, 7};
    LFaceSubs subs;
    const int place = coupling_->couplingLookup(i);
    if (place >= 0) {
        const int first = GetFirstFace() + 8 * (place / 2);
        for (int k = 0; k < 4; ++k)
            subs.subs[k] = first + (place % 2 == 0 ? kInFirst : kInSecond)[k];
        return subs;
    }
    const int first =
        GetFirstFace() + 8 * coupling_->NumPairs() + 6 * coupling_->ncouplingLookup(i);
    for (int k = 0; k < 6; ++k) subs.subs[k] = first + k;
    return subs;
}

void EntireQuadSubdivLayer::GetChildBarys(int i, const LFaceBarys& parent,
                                          LFaceBarys (&out)[6]) const {
    const FaceBarysAt at{parent};
    const int place = coupling_->couplingLookup(i);
    if (place < 0) {
        const int single = coupling_->ncouplingLookup(i);
        const LPoint3 centre = (parent.v[0] + parent.v[1] + parent.v[2]) / 3.0f;
        for (int j = 0; j < 3; ++j) {
            const int k = (4 * coupling_->NumPairs() + 3 * single + j) % 3;
            out[2 * j] = {{at.Corner(k), at.Mid(k), centre}};
            out[2 * j + 1] = {{centre, at.Mid(k + 2), at.Corner(k)}};
        }
        return;
    }
    // The middle of the shared edge is the centre of all four quads.
    const auto [s, r] = coupling_->Shared(place / 2);
    if (place % 2 == 0) {
        out[0] = {{at.Corner(s + 2), at.Mid(s + 2), at.Mid(s)}};
        out[1] = {{at.Mid(s), at.Mid(s + 1), at.Corner(s + 2)}};
        out[2] = {{at.Mid(s), at.Mid(s + 2), at.Corner(s)}};
        out[3] = {{at.Corner(s + 1), at.Mid(s + 1), at.Mid(s)}};
    } else {
        out[0] = {{at.Corner(r + 1), at.Mid(r + 1), at.Mid(r)}};
        out[1] = {{at.Corner(r + 2), at.Mid(r + 2), at.Mid(r)}};
        out[2] = {{at.Mid(r), at.Mid(r + 1), at.Corner(r + 2)}};
        out[3] = {{at.Mid(r), at.Mid(r + 2), at.Corner(r)}};
    }
}

std::unique_ptr<ISubdivLayer> EntireQuadSubdivLayer::Clone(LSubdivCollection* owner) const {
    return std::make_unique<EntireQuadSubdivLayer>(owner, GetNumExtVerts(), coupling_, topology_,
                                                   rule_);
}

LSubdivCollection::LSubdivCollection(const LSubdivCollection& other)
    : noVerts_(other.noVerts_), noFaces_(other.noFaces_) {
    for (const auto& layer : other.layers_) layers_.push_back(layer->Clone(this));
    active_ = other.active_;
}

ISubdivLayer* LSubdivCollection::GetLayer(int level) const {
    return level >= 1 && level < GetNumLayers() ? layers_[level - 1].get() : nullptr;
}

int LSubdivCollection::GetNumExtFaces() const {
    return GetTop() ? GetTop()->GetNumTotalExtFaces() : 0;
}

int LSubdivCollection::GetNumExtVerts() const {
    return GetTop() ? GetTop()->GetNumTotalExtVerts() : 0;
}

bool LSubdivCollection::Activate(int level) {
    if (level < 0 || level >= GetNumLayers()) return false;
    active_ = level;
    return true;
}

ISubdivLayer* LSubdivCollection::AddEntireLevel(int nextVerts,
                                                std::shared_ptr<const LMeshTopology> topology,
                                                std::shared_ptr<const LLevelRule> rule) {
    return Add(
        std::make_unique<EntireSubdivLayer>(this, nextVerts, std::move(topology), std::move(rule)));
}

ISubdivLayer* LSubdivCollection::AddEntireQuadLevel(int nextVerts,
                                                    std::shared_ptr<const LTriCoupling> coupling,
                                                    std::shared_ptr<const LMeshTopology> topology,
                                                    std::shared_ptr<const LLevelRule> rule) {
    return Add(std::make_unique<EntireQuadSubdivLayer>(this, nextVerts, std::move(coupling),
                                                       std::move(topology), std::move(rule)));
}

ISubdivLayer* LSubdivCollection::AddClone(const ISubdivLayer& layer) {
    return Add(layer.Clone(this));
}

ISubdivLayer* LSubdivCollection::Add(std::unique_ptr<ISubdivLayer> layer) {
    layers_.push_back(std::move(layer));
    active_ = GetNumLayers() - 1;
    return layers_.back().get();
}

bool LSubdivCollection::DeleteTop() {
    if (layers_.empty()) return false;
    layers_.pop_back();
    active_ = std::min(active_, GetNumLayers() - 1);
    return true;
}

}  // namespace VantrelSDK
