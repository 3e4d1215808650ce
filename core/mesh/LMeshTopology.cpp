#include "core/mesh/LMeshTopology.h"

#include <algorithm>

namespace VantrelSDK {

LMeshTopology::LMeshTopology(int nverts, std::vector<LFace> faces)
    : nverts_(nverts), faces_(std::move(faces)) {}

std::shared_ptr<const LMeshTopology> LMeshTopology::OfQuads(int nverts, std::vector<LFace> faces) {
    auto topology = std::make_shared<LMeshTopology>(nverts, std::move(faces));
    topology->coupling_ =
        std::make_shared<LTriCoupling>(LTriCoupling::Sequential(topology->GetNumFaces() / 2));
    return topology;
}

LFace* LMeshTopology::EditFaces() {
    coupling_.reset();
    adjFaces_.reset();
    adjVerts_.reset();
    return faces_.data();
}

const LAdjFaceList& LMeshTopology::AdjFaces() const {
    if (!adjFaces_) adjFaces_ = std::make_unique<LAdjFaceList>(faces_, nverts_);
    return *adjFaces_;
}

const LAdjVertList& LMeshTopology::AdjVerts() const {
    if (!adjVerts_) adjVerts_ = std::make_unique<LAdjVertList>(AdjFaces(), faces_);
    return *adjVerts_;
}

const std::shared_ptr<const LTriCoupling>& LMeshTopology::Coupling() const {
    if (!coupling_) coupling_ = std::make_shared<LTriCoupling>(faces_, nverts_);
    return coupling_;
}

bool LMeshTopology::IsValid() const {
    return std::all_of(faces_.begin(), faces_.end(), [this](const LFace& face) {
        return std::all_of(face.v, face.v + 3, [this](int v) { return v >= 0 && v < nverts_; });
    });
}

}  // namespace VantrelSDK
