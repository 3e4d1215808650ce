#include "host/ml/ShaderChannel.h"

#include <maya/MDGModifier.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MImage.h>
#include <maya/MItDependencyGraph.h>
#include <maya/MPlugArray.h>
#include <maya/MTypeId.h>

#include <algorithm>

namespace VantrelSDK {

struct ShaderChannel::Row {
    /// As messages name it; the shader's plug; the end of a new image's name.
    const char *name, *plug, *suffix;
};

namespace {

constexpr unsigned kFileTextureId = 0x52544654;
constexpr const char* kAnyOutput = "outColor";

constexpr ShaderChannel::Row kRows[] = {
    {"Diffuse", "color", "_outColor."},
    {"SpecularColor", "specularColor", "_outSpecColor."},
    {"Transparency", "transparency", "_outTransp."},
    {"AmbientColor", "ambientColor", "_outAmbientColor."},
};

/// A plug and what it is where nobody has moved the image.
struct Placement {
    const char* plug;
    double untouched;
};
constexpr Placement kPlacement[] = {
    {"coverage", 1},    {"translateFrame", 0}, {"repeatUV", 1}, {"offset", 0},  {"noiseUV", 0},
    {"rotateFrame", 0}, {"rotateUV", 0},       {"mirrorU", 0},  {"mirrorV", 0},
};

MObject SourceOf(const MPlug& plug) {
    const MPlug source = plug.source();
    return source.isNull() ? MObject() : source.node();
}

/// A texture joins those that the host renders.
void Register(const MObject& texture) {
    MGlobal::executeCommand("connectAttr -nextAvailable " + MFnDependencyNode(texture).name() +
                            ".message defaultTextureList1.textures");
}

}  // namespace

const ShaderChannel* ShaderChannel::Find(int channel) {
    static const ShaderChannel all[] = {ShaderChannel(kRows[0]), ShaderChannel(kRows[1]),
                                        ShaderChannel(kRows[2]), ShaderChannel(kRows[3])};
    return channel >= kFirst && channel <= kLast ? &all[channel - kFirst] : nullptr;
}

/// The shader's plug, null without one. A surface that has no colour of its own takes one as its
/// output.
MPlug ShaderChannel::PlugOf(const MObject& group, const char* caller) const {
    const MPlug surface = MFnDependencyNode(group).findPlug("surfaceShader");
    if (surface.isNull()) {
        MGlobal::displayWarning(MString(caller) + ": NULL 'surfaceShader' plug.");
        return MPlug();
    }
    const MObject shader = SourceOf(surface);
    if (shader.isNull()) {
        MGlobal::displayWarning(MString(caller) + ": 'surfaceShader' plug is not connected.");
        return MPlug();
    }
    const MFnDependencyNode node(shader);
    const MPlug plug = node.findPlug(row_.plug);
    return plug.isNull() && &row_ == &kRows[0] ? node.findPlug(kAnyOutput) : plug;
}

bool ShaderChannel::Has(const MObject& group) const {
    return !PlugOf(group, (std::string("Has") + row_.name + "Channel").c_str()).isNull();
}

bool ShaderChannel::GetTexture(const MObject& group, MObject& texture) const {
    const std::string caller = std::string("Get") + row_.name + "Texture";
    const MPlug plug = PlugOf(group, caller.c_str());
    if (plug.isNull()) {
        MGlobal::displayWarning(MString(caller + ": can not find plug texture is connected to."));
        return false;
    }
    const MObject source = SourceOf(plug);
    if (!source.hasFn(MFn::kFileTexture)) return false;
    texture = source;
    return true;
}

bool ShaderChannel::GetTextureFileAndUVSet(const MObject& group, MString& file,
                                           MString& uvSet) const {
    MObject texture;
    if (!GetTexture(group, texture)) return false;
    file = MFnDependencyNode(texture).findPlug("fileTextureName").asString();
    if (file.length() == 0) return false;
    uvSet = MString();
    GetUVSetFromChooser(texture, uvSet);
    return true;
}

bool ShaderChannel::CreateTexture(const MObject& group, MObject& texture, unsigned width,
                                  unsigned height) const {
    const MPlug plug = PlugOf(group, "GetDiffuseTextture");
    if (plug.isNull() || plug.isDestination()) return false;
    MString folder;
    if (!MGlobal::executeCommand("internalVar -userWorkspaceDir", folder)) return false;
    MImage image;
    if (!image.create(width, height, 4)) return false;
    for (size_t i = 0; i < size_t{4} * width * height; ++i)
        image.pixels()[i] = i % 4 == 3 ? 0 : 185;
    MDGModifier edits;
    const MObject made = edits.createNode(MTypeId(kFileTextureId));
    if (made.isNull()) return false;
    const MFnDependencyNode node(made);
    const MString file = folder + node.name() + row_.suffix + "jpg";
    edits.connect(node.findPlug(kAnyOutput), plug);
    if (!edits.doIt() || !image.writeToFile(file, "jpg")) {
        edits.undoIt();
        return false;
    }
    node.findPlug("fileTextureName").setValue(file);
    Register(made);
    texture = made;
    return true;
}

bool IsTextureXformed(const MObject& texture) {
    if (!texture.hasFn(MFn::kFileTexture)) return false;
    const MFnDependencyNode node(texture);
    for (const Placement& row : kPlacement) {
        const MPlug plug = node.findPlug(row.plug);
        if (plug.isNull()) continue;
        if (!plug.isCompound() && plug.asDouble() != row.untouched) return true;
        for (unsigned i = 0; plug.isCompound() && i < plug.numChildren(); ++i)
            if (plug.child(i).asDouble() != row.untouched) return true;
    }
    return false;
}

bool GetUVSetFromChooser(const MObject& texture, MString& uvSet) {
    // A chooser stands before what places the texture.
    for (const auto direction : {MItDependencyGraph::kUpstream, MItDependencyGraph::kDownstream})
        for (MItDependencyGraph walk(texture, MFn::kUvChooser, direction); !walk.isDone();
             walk.next()) {
            const MPlug sets = MFnDependencyNode(walk.thisNode()).findPlug("uvSets");
            if (sets.isNull() || sets.numConnectedElements() == 0) continue;
            uvSet = sets.connectionByPhysicalIndex(0).asString();
            return true;
        }
    return false;
}

}  // namespace VantrelSDK
