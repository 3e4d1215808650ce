#include "host/gl/MLTexture.h"
#include "host/ml/MLMaterialSet.h"
#include "host/ml/MLMeshObject.h"
#include "host/ml/MLNode.h"
#include "host/ml/ShaderChannel.h"

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

/// Gives a map that has no file yet a texture behind its shader, with a file of its own. One that
/// something else feeds, such as a texture that could only be sampled, stays without.
void GiveFile(const MLMaterial& material, MLTexture& map, int channel) {
    const ShaderChannel* place = ShaderChannel::Find(channel);
    MObject texture;
    MString file, uvSet;
    if (place && place->Has(material.GetObject()) &&
        place->CreateTexture(material.GetObject(), texture, static_cast<unsigned>(map.GetWidth()),
                             static_cast<unsigned>(map.GetHeight())) &&
        place->GetTextureFileAndUVSet(material.GetObject(), file, uvSet))
        map.SetFileName(file.asChar());
}

}  // namespace

bool MLNode::WantsMaterials() const {
    return IsSculpting() && meshObject() &&
           (plug(&N::m_moShowTextures).asBool() || getAffectTexture(false) ||
            getAffectTexStencil(false));
}

MLMaterialSet* MLNode::materials() const {
    return static_cast<MLMaterialSet*>(GetMtlSet());
}

mtlMode MLNode::WantedMtlMode() const {
    return getAffectTexture(false) || getAffectTexStencil(false) ? mtlMode::kPaint
                                                                 : mtlMode::kDisplay;
}

/// The set that there is has what nobody has saved, and serves still.
bool MLNode::HoldsPaint() const {
    for (unsigned m = 0; materials() && m < materials()->GetNumMaterials(); ++m) {
        const MLMaterial& material = *materials()->GetMLMaterial(m);
        const LTexture* map = material.GetMap(0);
        if (map->IsPainted() && map->GetChannel() == getTexChannel() &&
            material.GetMode() == WantedMtlMode())
            return true;
    }
    return false;
}

std::unique_ptr<MLMaterialSet> MLNode::createMtlSet() {
    auto set = std::make_unique<MLMaterialSet>(WantedMtlMode(), getTexChannel(), *this);
    if (set->GetNumMaterials() > 0 || !MLMaterialSet::texLoadErrors) return set;
    // Whoever writes the plug comes back here.
    if (plug(&N::m_moShowTextures).asBool()) plug(&N::m_moShowTextures).setValue(false);
    return nullptr;
}

void MLNode::UpdateMaterials() {
    displyDirtied = true;
    materialsDue_ = false;
    if (!WantsMaterials()) {
        if (GetMtlSet()) SetMtlSet(nullptr);
        return;
    }
    if (HoldsPaint()) return;
    meshObject()->ClearMtlIds();
    meshObject()->UpdateMtlIds(getThisMObject());
    materialsDue_ = !meshObject()->HasMtlIds();
    auto set = createMtlSet();
    if (set) meshObject()->SetVoidMtls(set->GetVoid());
    SetMtlSet(std::move(set));
}

void MLNode::FindMaterials() {
    if (!materialsDue_ || !GetMtlSet()) return;
    materialsDue_ = false;
    meshObject()->UpdateMtlIds(getThisMObject());
    meshObject()->SetVoidMtls(GetMtlSet()->GetVoid());
    MaterialsFound();
}

bool MLNode::writeMtlSet() {
    bool all = true;
    for (unsigned m = 0; materials() && m < materials()->GetNumMaterials(); ++m) {
        const MLMaterial& material = *materials()->GetMLMaterial(m);
        for (unsigned i = 0; material.GetMode() == mtlMode::kPaint && i < material.GetNumMaps();
             ++i) {
            MLTexture& map = *material.GetMLMap(i);
            if (!map.IsPainted()) continue;
            if (map.GetFileName().empty()) GiveFile(material, map, getTexChannel());
            all &= map.Save();
        }
    }
    return all;
}

}  // namespace VantrelSDK
