#include "core/subdiv/LSubdivCollection.h"

namespace VantrelSDK {

ISubdivLayer* ISubdivLayer::prew() const {
    return owner_->GetLayer(index_ - 1);
}

ISubdivLayer* ISubdivLayer::next() const {
    return owner_->GetLayer(index_ + 1);
}

EntireSubdivLayer::EntireSubdivLayer(LSubdivCollection* owner,
                                     std::shared_ptr<const LMeshTopology> topology,
                                     std::shared_ptr<const LLevelRule> rule)
    : ISubdivLayer(owner, owner->GetNumLayers(), std::move(topology), std::move(rule)) {
    const ISubdivLayer* below = owner->GetTop();
    faceStart_ = below ? below->GetFirstFace() : 0;
    faceEnd_ = below ? below->GetLastFace() : owner->noFaces() - 1;
    vertStart_ = below ? below->GetFirstVert() : 0;
    vertEnd_ = below ? below->GetLastVert() : owner->noVerts() - 1;
    nextVerts_ = topology_->GetNumVerts() - vertEnd_ - 1;
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

std::unique_ptr<ISubdivLayer> EntireSubdivLayer::Clone(LSubdivCollection* owner) const {
    return std::make_unique<EntireSubdivLayer>(owner, topology_, rule_);
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

ISubdivLayer* LSubdivCollection::AddEntireLevel(std::shared_ptr<const LMeshTopology> topology,
                                                std::shared_ptr<const LLevelRule> rule) {
    layers_.push_back(
        std::make_unique<EntireSubdivLayer>(this, std::move(topology), std::move(rule)));
    active_ = GetNumLayers() - 1;
    return layers_.back().get();
}

ISubdivLayer* LSubdivCollection::AddClone(const ISubdivLayer& layer) {
    layers_.push_back(layer.Clone(this));
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
