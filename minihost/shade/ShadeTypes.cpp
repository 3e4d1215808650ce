#include "minihost/shade/ShadeTypes.h"

#include "minihost/mesh/Sets.h"
#include "minihost/shade/Assign.h"

namespace minihost {
namespace {

Attribute* AddColor(NodeType& type, const char* longName, const char* shortName, double value = 0) {
    Attribute* color =
        type.Add(NumericAttribute(longName, shortName, MFnNumericData::k3Float, value, "RGB"));
    color->isKeyable = true;
    return color;
}

void AddShaders(NodeTypes& types) {
    NodeType& lambert = types.Make("lambert", 0x524c414d, MFn::kLambert);
    AddColor(lambert, "color", "c", 0.5);
    AddColor(lambert, "transparency", "it");
    AddColor(lambert, "ambientColor", "ambc");
    AddColor(lambert, "incandescence", "ic");
    lambert.Add(NumericAttribute("diffuse", "dif", MFnNumericData::kFloat, 0.8));
    AddColor(lambert, "outColor", "oc");
    for (const auto& [name, id] : {std::pair{"blinn", 0x52424c4e}, {"phong", 0x5250484f}}) {
        NodeType& shiny = types.Make(name, static_cast<unsigned>(id), MFn::kLambert, "lambert");
        AddColor(shiny, "specularColor", "sc", 0.5);
    }
}

struct Setting {
    const char *name, *shortName;
    double value;
};

/// Where a texture lies in the UVs: the same on a file and on what places it.
void AddPlacement(NodeType& type) {
    for (const Setting& pair : {Setting{"coverage", "cv", 1},
                                {"translateFrame", "tf", 0},
                                {"repeatUV", "re", 1},
                                {"offset", "of", 0},
                                {"noiseUV", "n", 0}})
        type.Add(
            NumericAttribute(pair.name, pair.shortName, MFnNumericData::k2Float, pair.value, "UV"));
    for (const Setting& angle : {Setting{"rotateFrame", "rf", 0}, {"rotateUV", "r", 0}})
        type.Add(PlainAttribute(angle.name, angle.shortName, AttributeKind::Angle));
    for (const Setting& flag : {Setting{"mirrorU", "mu", 0},
                                {"mirrorV", "mv", 0},
                                {"stagger", "s", 0},
                                {"wrapU", "wu", 1},
                                {"wrapV", "wv", 1}})
        type.Add(NumericAttribute(flag.name, flag.shortName, MFnNumericData::kBoolean, flag.value));
}

/// A pair with children by names of their own: "uvCoord" has "uCoord" and "vCoord".
Attribute* AddUV(NodeType& type, const char* longName, const char* shortName, const char* u,
                 const char* shortU, const char* v, const char* shortV) {
    const auto uv = std::make_shared<Attribute>(longName, shortName, AttributeKind::Numeric);
    uv->numeric = MFnNumericData::k2Float;
    uv->AddChild(NumericAttribute(u, shortU, MFnNumericData::kFloat));
    uv->AddChild(NumericAttribute(v, shortV, MFnNumericData::kFloat));
    return type.Add(uv);
}

void AddTextures(NodeTypes& types) {
    NodeType& file = types.Make("file", 0x52544654, MFn::kFileTexture);
    AddUV(file, "uvCoord", "uv", "uCoord", "u", "vCoord", "v");
    AddPlacement(file);
    file.Add(TypedAttribute("fileTextureName", "ftn", MFnData::kString));
    AddColor(file, "defaultColor", "dc", 0.5);
    AddColor(file, "outColor", "oc");
    file.Add(NumericAttribute("outAlpha", "oa", MFnNumericData::kFloat));

    NodeType& place = types.Make("place2dTexture", 0x52504c32, MFn::kPlace2dTexture);
    AddUV(place, "uvCoord", "uv", "uCoord", "u", "vCoord", "v");
    AddPlacement(place);
    AddUV(place, "outUV", "o", "outU", "ou", "outV", "ov");

    NodeType& chooser = types.Make("uvChooser", 0x55564348, MFn::kUvChooser);
    Attribute* sets = chooser.Add(TypedAttribute("uvSets", "uvs", MFnData::kString));
    sets->isArray = true;
    sets->disconnect = DisconnectBehavior::Delete;
    AddUV(chooser, "outUv", "ouv", "outU", "ou", "outV", "ov");
}

void AddList(NodeTypes& types, const char* name, unsigned id, const char* array,
             const char* shortName) {
    Attribute* nodes = types.Make(name, id, MFn::kDependencyNode)
                           .Add(PlainAttribute(array, shortName, AttributeKind::Message));
    nodes->isArray = true;
    nodes->disconnect = DisconnectBehavior::Delete;
}

}  // namespace

void RegisterShadeTypes(NodeTypes& types) {
    NodeType& engine = types.Make("shadingEngine", 0x53484144, MFn::kShadingEngine, "objectSet");
    AddColor(engine, "surfaceShader", "ss")->isKeyable = false;
    AddShaders(types);
    AddTextures(types);
    AddList(types, "defaultShaderList", 0x4453484c, "shaders", "s");
    AddList(types, "defaultTextureList", 0x44545854, "textures", "tx");
    AddList(types, "defaultRenderUtilityList", 0x4455544c, "utilities", "u");

    NodeType& render = types.Make("renderGlobals", 0x524e474c, MFn::kRenderGlobals);
    for (const auto& [name, shortName] : {std::pair{"preMel", "pram"},
                                          {"postMel", "poam"},
                                          {"preRenderMel", "prm"},
                                          {"postRenderMel", "pom"}})
        render.Add(TypedAttribute(name, shortName, MFnData::kString));
}

void MakeDefaultShading(Modifier& edits) {
    const auto make = [&edits](const char* type, const char* name) { edits.Create(type, name); };
    make("partition", "renderPartition");
    make("defaultShaderList", "defaultShaderList1");
    make("defaultTextureList", "defaultTextureList1");
    make("defaultRenderUtilityList", "defaultRenderUtilityList1");
    make("renderGlobals", "defaultRenderGlobals");
    edits.Rename(CreateShadingGroup(edits, "lambert", "lambert1"), "initialShadingGroup");
}

}  // namespace minihost
