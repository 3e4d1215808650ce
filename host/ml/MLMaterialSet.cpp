#include "host/ml/MLMaterialSet.h"

#include "host/ml/EnumShaders.h"
#include "host/ml/MLMeshObject.h"
#include "host/ml/MLNode.h"
#include "host/ml/ShaderChannel.h"

namespace VantrelSDK {

MLMaterialSet::MLMaterialSet(mtlMode mode, int channel, const MLNode& node) {
    texLoadErrors = false;
    MObject mesh;
    MObjectArray shaders;
    MIntArray indices;
    if (EnumShaders(node.getThisMObject(), mesh, shaders, indices) == 0) return;
    MLMaterial::ReadMapSize();
    for (int i = 0; i < static_cast<int>(shaders.length()); ++i) {
        if (i >= kMaxShaders || GetNumMaterials() >= kMaxDrawn) {
            Add(i, nullptr);
            continue;
        }
        auto material = std::make_unique<MLMaterial>(mode, channel, node.lobject(), i, shaders);
        texLoadErrors |= material->hasLoadError();
        Add(i, std::move(material));
    }
}

bool MLMaterialSet::HasAllMaps(int channel, const MObject& node) {
    const ShaderChannel* place = ShaderChannel::Find(channel);
    MObject mesh, texture;
    MObjectArray shaders;
    MIntArray indices;
    EnumShaders(node, mesh, shaders, indices);
    for (unsigned i = 0; place && i < shaders.length(); ++i)
        if (place->Has(shaders[i]) && !place->GetTexture(shaders[i], texture)) return false;
    return place != nullptr;
}

}  // namespace VantrelSDK
