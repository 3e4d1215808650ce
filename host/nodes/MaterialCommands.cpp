#include "host/gl/MLTexture.h"
#include "host/ml/MLMaterialSet.h"
#include "host/ml/MLNode.h"
#include "host/nodes/NodeCommands.h"

namespace VantrelSDK {

std::span<const NodeCommands::Row> NodeCommands::MaterialRows() {
    using C = NodeCommands;
    static constexpr Row rows[] = {
        {215, &C::UpdateDisplayMaps}, {238, &C::UpdateMaterials}, {239, &C::WriteMaterials},
        {240, &C::HasMaterials},      {241, &C::CanWriteMaps},
    };
    return rows;
}

void NodeCommands::UpdateDisplayMaps() {
    const MLMaterialSet* set = node_.materials();
    for (unsigned m = 0; set && m < set->GetNumMaterials(); ++m)
        for (unsigned i = 0; i < set->GetMLMaterial(m)->GetNumMaps(); ++i)
            set->GetMLMaterial(m)->GetMLMap(i)->DropDisplayMap();
    node_.displyDirtied = true;
}

void NodeCommands::UpdateMaterials() {
    node_.UpdateMaterials();
}

void NodeCommands::WriteMaterials() {
    node_.writeMtlSet();
}

void NodeCommands::HasMaterials() {
    Answer(node_.materials() ? 1 : 0);
}

void NodeCommands::CanWriteMaps() {
    Answer(node_.materials() && node_.materials()->CheckWritePermissions() ? 1 : 0);
}

}  // namespace VantrelSDK
