#include "host/ml/MLMaterial.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MIntArray.h>
#include <maya/MRenderUtil.h>
#include <maya/MStringArray.h>

#include <algorithm>

#include "core/mesh/LMeshObject.h"
#include "core/sculpt/LNode.h"
#include "core/subdiv/LUVSubdivChannel.h"
#include "host/gl/MLTexture.h"
#include "host/ml/ShaderChannel.h"

namespace VantrelSDK {

namespace {

constexpr int kShownSize = 640, kBlankSize = 4, kMostSize = 16384;

/// Names that have been complained about.
class Complaints {
  public:
    bool Has(const MString& name) const {
        return std::ranges::any_of(names_, [&name](const MString& n) { return n == name; });
    }
    void Add(const MString& name) {
        if (!Has(name)) names_.append(name);
    }

  private:
    MStringArray names_;
};
Complaints& Errors() {
    static Complaints names;
    return names;
}
Complaints& Warnings() {
    static Complaints names;
    return names;
}

bool checkErrTexture(const MString& name) {
    return !Errors().Has(name);
}
void addErrTexture(const MString& name) {
    Errors().Add(name);
}
bool checkWrnTexture(const MString& name) {
    return !Warnings().Has(name);
}
void addWrnTexture(const MString& name) {
    Warnings().Add(name);
}

void Warn(const MString& file, const MString& text) {
    if (checkErrTexture(file)) MGlobal::displayWarning(text);
}

/// The colours of a texture over the unit square; null where it has none.
std::unique_ptr<MLTexture> Sampled(const MObject& texture, int width, int height, int uvChannel) {
    const auto count = static_cast<unsigned>(width) * static_cast<unsigned>(height);
    MFloatArray us(count), vs(count);
    for (unsigned i = 0; i < count; ++i) {
        us[i] = static_cast<float>(i % static_cast<unsigned>(width)) / static_cast<float>(width);
        vs[i] = static_cast<float>(i / static_cast<unsigned>(width)) / static_cast<float>(height);
    }
    MFloatMatrix camera;
    MFloatVectorArray colors, clear;
    if (!MRenderUtil::sampleShadingNetwork(
            MFnDependencyNode(texture).name() + ".outColor", static_cast<int>(count), false, false,
            camera, nullptr, &us, &vs, nullptr, nullptr, nullptr, nullptr, nullptr, colors, clear))
        return nullptr;
    return std::make_unique<MLTexture>(colors, width, height, uvChannel);
}

int UVChannel(const LMeshObject* object, const MString& uvSet) {
    if (!object || uvSet.length() == 0) return 0;
    for (int i = 0; i < object->GetNumUVChannels(); ++i)
        if (object->GetUVChannel(i)->name() == uvSet.asChar()) return i;
    return 0;
}

}  // namespace

void MLMaterial::ReadMapSize() {
    MString known;
    if (!MGlobal::executeCommand("whatIs KelmoGetTextureSize", known) || known == "Unknown") return;
    MIntArray size;
    if (!MGlobal::executeCommand("KelmoGetTextureSizeRes", size) || size.length() == 0) return;
    defW = std::clamp(size[0], 1, kMostSize);
    defH = std::clamp(size[size.length() > 1 ? 1 : 0], 1, kMostSize);
}

MLMaterial::MLMaterial(mtlMode mode, int channel, const LMeshObject* object, int index,
                       const MObjectArray& shaders)
    : LMaterial(mode, index) {
    const ShaderChannel* place = ShaderChannel::Find(channel);
    if (index < 0 || static_cast<unsigned>(index) >= shaders.length() || !place) return;
    mtlObj = shaders[static_cast<unsigned>(index)];
    if (!place->Has(mtlObj)) return;
    MObject texture;
    MString file, uvSet;
    const bool hasFile =
        place->GetTexture(mtlObj, texture) && place->GetTextureFileAndUVSet(mtlObj, file, uvSet);
    if (hasFile) {
        TakeTexture(channel, texture, file, UVChannel(object, uvSet));
        return;
    }
    // What is only seen looks the same in any size.
    const bool paints = mode == mtlMode::kPaint;
    maps.push_back(std::make_unique<MLTexture>(channel, paints ? defW : kBlankSize,
                                               paints ? defH : kBlankSize, 0));
    if (!maps.back()->GetPixels()) maps.clear();
}

MLTexture* MLMaterial::GetMLMap(unsigned i) const {
    return static_cast<MLTexture*>(GetMap(i));
}

void MLMaterial::TakeTexture(int channel, const MObject& texture, const MString& file,
                             int uvChannel) {
    std::unique_ptr<MLTexture> map;
    if (mode == mtlMode::kPaint) {
        map = Painted(texture, file, uvChannel);
    } else {
        map = Sampled(texture, kShownSize, kShownSize, uvChannel);
        if (!map) {
            Warn(file, "MLMaterial: can not load texture " + file);
            addErrTexture(file);
        }
    }
    loadError_ = !map;
    if (!map || !map->GetPixels()) return;
    map->SetChannel(channel);
    maps.push_back(std::move(map));
}

/// The image from its file, from its node, or sampled.
std::unique_ptr<MLTexture> MLMaterial::Painted(const MObject& texture, const MString& file,
                                               int uvChannel) {
    const MString node = MFnDependencyNode(texture).name();
    const bool moved = IsTextureXformed(texture);
    const auto whole = [](std::unique_ptr<MLTexture> map) {
        return map->GetPixels() ? std::move(map) : nullptr;
    };
    auto map = whole(std::make_unique<MLTexture>(file, uvChannel));
    if (!map) {
        Warn(file, "MLMaterial: can not load texture " + file);
        map = whole(std::make_unique<MLTexture>(texture, uvChannel));
        Warn(file, map ? "MLMaterial: texture was loaded from node " + node +
                             ". You will not be able to save it."
                       : "MLMaterial: can not load texture from node " + node);
    }
    if (moved) {
        map = nullptr;
        if (checkWrnTexture(file)) {
            MGlobal::displayWarning("Vantrel: Some transformation is applied to file texture " +
                                    node + ", probably by place2dTexture node.");
            MGlobal::displayWarning(
                "Can't paint it correctly. Read only sampled texture will be created.");
            MGlobal::displayWarning(
                "If you want to paint this texture clear these transformation and try again.");
            addWrnTexture(file);
        }
    }
    if (!map && (LNode::prefTrySampleMaps || moved)) {
        map = Sampled(texture, defW, defH, uvChannel);
        Warn(file, map ? "MLMaterial: texture was created by sampling the node " + node +
                             ". You will not be able to save it."
                       : "MLMaterial: can not sample texture " + node);
        addErrTexture(file);
    }
    return map;
}

}  // namespace VantrelSDK
