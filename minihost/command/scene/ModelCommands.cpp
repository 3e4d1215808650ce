#include <algorithm>

#include "minihost/Host.h"
#include "minihost/command/scene/SceneCommands.h"
#include "minihost/deform/BlendShape.h"
#include "minihost/deform/DeformerChain.h"
#include "minihost/deform/SkinCluster.h"
#include "minihost/mesh/MeshData.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/shade/Assign.h"

namespace minihost {
namespace {

using Argument = Syntax::Argument;

/// The mesh of a node: itself, or the first below a transform. Null for none.
NodePtr MeshBelow(const NodePtr& node) {
    auto* dag = dynamic_cast<DagNode*>(node.get());
    DagNode* shape = dag ? dag->Shape() : nullptr;
    return shape && shape->type().IsA("mesh") ? shape->Share() : nullptr;
}

/// Sorts what a command is to work on into meshes and joints; false where there is something else.
bool Sort(Host& host, const ParsedFlags& flags, std::vector<NodePtr>& meshes,
          std::vector<DagNodePtr>& joints, CommandError& error) {
    std::vector<NodePtr> nodes;
    if (!FindNodes(host, flags, nodes, error)) return false;
    for (const NodePtr& node : nodes) {
        const NodePtr mesh = MeshBelow(node);
        if (mesh)
            meshes.push_back(mesh);
        else if (node->type().IsA("joint"))
            joints.push_back(std::static_pointer_cast<DagNode>(node));
        else
            error.message = "'" + node->UniqueName() + "' is no mesh and no joint";
    }
    return error.message.empty();
}

/// A primitive's flags are its attributes, and for its divisions "sx", "sy", "sz".
void AddPrimitive(Host& host, const std::string& type, const std::vector<const char*>& divisions) {
    const NodeTypePtr kind = host.types.Find(type);
    Syntax syntax;
    syntax.AddFlag("n", "name", {Argument::String});
    syntax.AddFlag("ch", "constructionHistory", {Argument::Boolean});
    for (size_t i = 0; i < divisions.size(); ++i)
        syntax.AddFlag(std::string("s") + "xyz"[i], std::string("subdivisions") + "XYZ" [i],
                       { Argument::Int });
    std::vector<std::string> inputs;
    for (size_t i = kind->base->attributes().size(); i < kind->attributes().size(); ++i) {
        const Attribute& input = *kind->attributes()[i];
        if (!input.IsNumber()) continue;
        inputs.push_back(input.longName);
        syntax.AddFlag(input.shortName, input.longName, {Argument::Float});
    }
    AddEdit(
        host, type, std::move(syntax),
        [&host, type, divisions, inputs](Modifier& edits, const ParsedFlags& flags) -> Answer {
            const MeshNodes made = CreatePrimitive(edits, type, flags.Get("name").AsString());
            for (const std::string& input : inputs)
                if (flags.IsSet(input))
                    edits.Set(made.maker->FindPlug(input), flags.Get(input).AsFloat());
            for (size_t i = 0; i < divisions.size(); ++i)
                if (const std::string flag = std::string("s") + "xyz"[i]; flags.IsSet(flag))
                    edits.Set(made.maker->FindPlug(divisions[i]), flags.Get(flag).AsFloat());
            AssignShading(edits, made.shape, host.scene.Find("initialShadingGroup"));
            edits.Select({{made.transform}});
            std::vector<std::string> names{made.transform->UniqueName()};
            if (flags.IsSet("constructionHistory") && !flags.Get("constructionHistory").AsBool())
                edits.Delete(made.maker);
            else
                names.push_back(made.maker->name());
            return Value(std::move(names));
        });
}

void AddDeformer(Host& host) {
    Syntax syntax;
    syntax.AddFlag("typ", "type", {Argument::String});
    syntax.AddFlag("n", "name", {Argument::String});
    syntax.SetObjects(0, -1);
    AddEdit(host, "deformer", std::move(syntax),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                std::vector<NodePtr> meshes;
                std::vector<DagNodePtr> joints;
                CommandError error;
                if (!Sort(host, flags, meshes, joints, error)) return error;
                const NodePtr deformer =
                    InsertDeformer(edits, flags.Get("type").AsString(), meshes, error.message,
                                   flags.Get("name").AsString());
                if (!deformer) return error;
                return Value(std::vector{deformer->name()});
            });
}

/// A joint with all joints below it, those above before those below.
void Gather(const DagNodePtr& joint, std::vector<DagNodePtr>& all) {
    if (!joint->type().IsA("joint") || std::ranges::count(all, joint)) return;
    all.push_back(joint);
    for (const DagNodePtr& child : joint->children()) Gather(child, all);
}

void AddSkinCluster(Host& host) {
    Syntax syntax;
    syntax.AddFlag("tsb", "toSelectedBones");
    syntax.AddFlag("mi", "maximumInfluences", {Argument::Int});
    syntax.AddFlag("dr", "dropoffRate", {Argument::Float});
    syntax.AddFlag("n", "name", {Argument::String});
    syntax.AddFlag("inf", "influence");
    syntax.EnableQuery(true);
    syntax.SetObjects(0, -1);
    AddEdit(host, "skinCluster", std::move(syntax),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                CommandError error;
                if (flags.IsQuery()) {
                    std::vector<NodePtr> skins;
                    if (!FindNodes(host, flags, skins, error)) return error;
                    if (skins.size() != 1 || !skins[0]->type().IsA("skinCluster"))
                        return CommandError{"name the skin cluster to ask of"};
                    std::vector<std::string> names;
                    for (const NodePtr& joint : JointsOf(skins[0]))
                        if (joint) names.push_back(joint->UniqueName());
                    return Value(std::move(names));
                }
                std::vector<NodePtr> meshes;
                std::vector<DagNodePtr> named, joints;
                if (!Sort(host, flags, meshes, named, error)) return error;
                if (meshes.size() != 1) return CommandError{"name joints and the mesh to bind"};
                for (const DagNodePtr& joint : named) {
                    if (!flags.IsSet("toSelectedBones"))
                        Gather(joint, joints);
                    else if (!std::ranges::count(joints, joint))
                        joints.push_back(joint);
                }
                SkinBinding binding{5, 4, flags.Get("name").AsString()};
                if (flags.IsSet("mi")) binding.maxInfluences = flags.Get("mi").AsInt();
                if (flags.IsSet("dr")) binding.dropoff = flags.Get("dr").AsFloat();
                const NodePtr skin = BindSkin(edits, joints, meshes[0], error.message, binding);
                if (!skin) return error;
                return Value(std::vector{skin->name()});
            });
}

void AddBlendShape(Host& host) {
    Syntax syntax;
    syntax.AddFlag("n", "name", {Argument::String});
    syntax.AddFlag("w", "weight", {Argument::Int, Argument::Float});
    syntax.Find("w")->multiUse = true;
    syntax.SetObjects(0, -1);
    AddEdit(host, "blendShape", std::move(syntax),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                std::vector<NodePtr> meshes;
                std::vector<DagNodePtr> joints;
                CommandError error;
                if (!Sort(host, flags, meshes, joints, error)) return error;
                if (meshes.empty()) return CommandError{"name the targets, and last the base"};
                const NodePtr base = meshes.back();
                meshes.pop_back();
                const NodePtr blend = CreateBlendShape(edits, meshes, base, error.message,
                                                       flags.Get("name").AsString());
                if (!blend) return error;
                for (size_t use = 0; use < flags.Uses("w"); ++use) {
                    const int target = flags.Get("w", 0, use).AsInt();
                    if (target < 0 || static_cast<size_t>(target) >= meshes.size())
                        return CommandError{"there is no target " + std::to_string(target)};
                    edits.Set(blend->FindPlug("weight").Element(target),
                              flags.Get("w", 1, use).AsFloat());
                }
                return Value(std::vector{blend->name()});
            });
}

/// Assigns meshes, or polygons of them, to a shading group.
Answer Assign(Host& host, Modifier& edits, const ParsedFlags& flags, const NodePtr& group) {
    std::vector<Named> objects;
    CommandError error;
    if (!FindObjects(host, flags, objects, error)) return error;
    for (const Named& object : objects) {
        const NodePtr mesh = MeshBelow(object.node);
        if (!mesh) return CommandError{"'" + object.node->UniqueName() + "' is no mesh"};
        bool done = false;
        if (!object.HasComponent()) {
            done = AssignShading(edits, mesh, group);
        } else if (object.component.kind == MFn::kMeshPolygonComponent) {
            const MeshPtr shown = MeshOf(*mesh);
            done = shown &&
                   AssignShading(edits, mesh, group, shown->Expand(object.component).elements);
        }
        if (!done)
            return CommandError{"'" + mesh->UniqueName() + "' cannot be assigned to '" +
                                group->name() + "'"};
    }
    return Value(group->name());
}

void AddShading(Host& host) {
    Syntax sets;
    sets.AddFlag("fe", "forceElement", {Argument::String});
    sets.EnableEdit(true);
    sets.SetObjects(0, -1);
    AddEdit(host, "sets", std::move(sets),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                if (!flags.IsSet("forceElement"))
                    return CommandError{"sets: name the shading group by -forceElement"};
                CommandError error;
                const NodePtr group = FindNode(host, flags.Get("forceElement").AsString(), error);
                if (!group) return error;
                if (!group->type().IsA("shadingEngine"))
                    return CommandError{"'" + group->name() + "' is no shading group"};
                return Assign(host, edits, flags, group);
            });
    Syntax create;
    create.SetObjects(1, -1);
    AddEdit(host, "createAndAssignShader", std::move(create),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                const std::string type = flags.Objects()[0].AsString();
                const NodePtr group = CreateShadingGroup(edits, type);
                if (!group) return CommandError{"'" + type + "' is no type of shader"};
                for (size_t i = 1; i < flags.Objects().size(); ++i) {
                    CommandError error;
                    const NodePtr node = FindNode(host, flags.Objects()[i].AsString(), error);
                    if (!node) return error;
                    const NodePtr mesh = MeshBelow(node);
                    if (!mesh) return CommandError{"'" + node->UniqueName() + "' is no mesh"};
                    AssignShading(edits, mesh, group);
                }
                return Value(group->name());
            });
}

void AddEvaluate(Host& host) {
    Syntax syntax;
    for (const auto& [brief, name] : {std::pair{"v", "vertex"}, {"f", "face"}, {"t", "triangle"}})
        syntax.AddFlag(brief, name);
    syntax.SetObjects(0, -1);
    AddQuestion(host, "polyEvaluate", std::move(syntax),
                [&host](const ParsedFlags& flags) -> Answer {
                    std::vector<NodePtr> meshes;
                    std::vector<DagNodePtr> joints;
                    CommandError error;
                    if (!Sort(host, flags, meshes, joints, error)) return error;
                    if (meshes.empty()) return CommandError{"say which mesh, or select it"};
                    const MeshPtr mesh = MeshOf(*meshes[0]);
                    if (!mesh) return Value(0);
                    const int polygons = mesh->polygons().count();
                    if (flags.IsSet("face")) return Value(polygons);
                    // A polygon is a fan of two triangles fewer than it has corners.
                    if (flags.IsSet("triangle"))
                        return Value(static_cast<int>(mesh->numCorners()) - 2 * polygons);
                    return Value(mesh->numVertices());
                });
}

}  // namespace

void AddModelCommands(Host& host) {
    AddEvaluate(host);
    AddPrimitive(host, "polyPlane", {"subdivisionsWidth", "subdivisionsHeight"});
    AddPrimitive(host, "polyCube",
                 {"subdivisionsWidth", "subdivisionsHeight", "subdivisionsDepth"});
    AddPrimitive(host, "polySphere", {"subdivisionsAxis", "subdivisionsHeight"});
    AddDeformer(host);
    AddSkinCluster(host);
    AddBlendShape(host);
    AddShading(host);
}

}  // namespace minihost
