#include "maya/MAngle.h"
#include "maya/MTransformationMatrix.h"
#include "minihost/Host.h"
#include "minihost/command/scene/SceneCommands.h"

namespace minihost {
namespace {

using Argument = Syntax::Argument;

std::vector<double> Three(const Plug& plug) {
    std::vector<double> numbers;
    for (const auto& part : plug.Find()->parts) numbers.push_back(NumberOf(Pull(*part)));
    return numbers;
}

MMatrix Above(DagNode& node) {
    DagNode* parent = node.parent();
    return parent && parent->parent() ? parent->WorldMatrix() : MMatrix();
}

/// The leading three words as numbers, and the objects behind them.
bool Split(Host& host, const ParsedFlags& flags, double (&numbers)[3], std::vector<NodePtr>& nodes,
           CommandError& error) {
    const auto& words = flags.Objects();
    for (size_t i = 0; i < 3; ++i) {
        const Value number = words[i].IsString() ? ParseNumber(words[i].String()) : words[i];
        if (!number.IsNumber()) {
            error.message = "three numbers are needed first";
            return false;
        }
        numbers[i] = number.AsFloat();
    }
    for (size_t i = 3; i < words.size(); ++i) {
        const auto found = host.scene.FindAll(words[i].AsString());
        if (found.empty()) {
            error.message = "there is nothing called '" + words[i].AsString() + "'";
            return false;
        }
        nodes.insert(nodes.end(), found.begin(), found.end());
    }
    if (words.size() == 3)
        for (const Selected& item : host.scene.selection) nodes.push_back(item.node);
    for (NodePtr& node : nodes)
        if (auto* dag = dynamic_cast<DagNode*>(node.get()); dag && dag->IsShape())
            node = dag->parent()->Share();
    for (const NodePtr& node : nodes)
        if (!node->Is(MFn::kTransform)) {
            error.message = "'" + node->name() + "' is no transform";
            return false;
        }
    return true;
}

enum class Part { Translate, Rotate, Scale };

Answer Apply(Modifier& edits, DagNode& node, Part part, const double (&given)[3], bool relative,
             bool world) {
    const char* name = part == Part::Translate ? "translate"
                       : part == Part::Rotate  ? "rotate"
                                               : "scale";
    const Plug plug = node.FindPlug(name);
    std::vector<double> numbers = Three(plug);
    if (part == Part::Translate && world) {
        const MMatrix above = Above(node);
        MPoint p(given[0], given[1], given[2]);
        if (relative) p += MPoint(numbers[0], numbers[1], numbers[2]) * above - MPoint();
        p = p * above.inverse();
        numbers = {p.x, p.y, p.z};
    } else {
        for (size_t i = 0; i < 3; ++i) {
            const double value = FromScript(*plug.attribute->children[i], given[i]);
            if (part == Part::Scale)
                numbers[i] = relative ? numbers[i] * value : value;
            else
                numbers[i] = relative ? numbers[i] + value : value;
        }
    }
    return edits.SetNumbers(plug, numbers) ? Answer() : Answer(CommandError{edits.error()});
}

void AddPart(Host& host, const char* name, Part part) {
    Syntax syntax;
    for (const auto& [brief, flag] : {std::pair{"r", "relative"},
                                      {"a", "absolute"},
                                      {"ws", "worldSpace"},
                                      {"os", "objectSpace"},
                                      {"ls", "localSpace"}})
        syntax.AddFlag(brief, flag);
    syntax.SetObjects(3, -1);
    AddEdit(host, name, std::move(syntax),
            [&host, part](Modifier& edits, const ParsedFlags& flags) -> Answer {
                double given[3];
                std::vector<NodePtr> nodes;
                CommandError error;
                if (!Split(host, flags, given, nodes, error)) return error;
                const bool world = !flags.IsSet("objectSpace") && !flags.IsSet("localSpace");
                for (const NodePtr& node : nodes) {
                    const Answer done = Apply(edits, static_cast<DagNode&>(*node), part, given,
                                              flags.IsSet("relative"), world);
                    if (!done.Good()) return done;
                }
                return {};
            });
}

Value Numbers(const MVector& v) {
    return Value(std::vector<double>{v.x, v.y, v.z});
}

Answer QueryXform(DagNode& node, const ParsedFlags& flags) {
    const bool world = flags.IsSet("worldSpace");
    const MMatrix matrix = world ? node.WorldMatrix() : node.Matrix();
    const MTransformationMatrix parts(matrix);
    if (flags.IsSet("translation"))
        return world ? Numbers(parts.getTranslation(MSpace::kWorld))
                     : PlugValue(node.FindPlug("translate"));
    if (flags.IsSet("rotation")) {
        if (!world) return PlugValue(node.FindPlug("rotate"));
        const MEulerRotation turns = parts.eulerRotation();
        return Numbers(MVector(turns.x, turns.y, turns.z) / MAngle::kPerDegree);
    }
    if (flags.IsSet("scale")) {
        double scale[3];
        parts.getScale(scale, MSpace::kWorld);
        return Numbers(MVector(scale));
    }
    if (flags.IsSet("boundingBox")) {
        MBoundingBox box = node.Bounds();
        if (world) box.transformUsing(Above(node));
        return Value(std::vector<double>{box.min().x, box.min().y, box.min().z, box.max().x,
                                         box.max().y, box.max().z});
    }
    const double* first = matrix[0];
    return Value(std::vector<double>(first, first + 16));
}

Answer EditXform(Modifier& edits, DagNode& node, const ParsedFlags& flags) {
    const bool world = flags.IsSet("worldSpace"), relative = flags.IsSet("relative");
    if (flags.IsSet("matrix")) {
        MMatrix matrix;
        for (unsigned i = 0; i < 16; ++i) matrix[i / 4][i % 4] = flags.Get("matrix", i).AsFloat();
        if (world) matrix = matrix * Above(node).inverse();
        return SetLocalMatrix(edits, node, matrix) ? Answer() : CommandError{edits.error()};
    }
    for (const auto& [flag, part] : {std::pair{"translation", Part::Translate},
                                     {"rotation", Part::Rotate},
                                     {"scale", Part::Scale}}) {
        if (!flags.IsSet(flag)) continue;
        double given[3];
        for (size_t i = 0; i < 3; ++i) given[i] = flags.Get(flag, i).AsFloat();
        const Answer done = Apply(edits, node, part, given, relative, world);
        if (!done.Good()) return done;
    }
    return {};
}

void AddXform(Host& host) {
    Syntax syntax;
    for (const auto& [brief, flag] : {std::pair{"r", "relative"},
                                      {"a", "absolute"},
                                      {"ws", "worldSpace"},
                                      {"os", "objectSpace"},
                                      {"bb", "boundingBox"}})
        syntax.AddFlag(brief, flag);
    const std::vector three(3, Argument::Float), sixteen(16, Argument::Float);
    syntax.AddFlag("t", "translation", three);
    syntax.AddFlag("ro", "rotation", three);
    syntax.AddFlag("s", "scale", three);
    syntax.AddFlag("m", "matrix", sixteen);
    syntax.EnableQuery(true);
    syntax.SetObjects(0, -1);
    AddEdit(host, "xform", std::move(syntax),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                std::vector<NodePtr> nodes;
                CommandError error;
                if (!FindNodes(host, flags, nodes, error)) return error;
                for (const NodePtr& node : nodes) {
                    if (!node->Is(MFn::kTransform))
                        return CommandError{"'" + node->name() + "' is no transform"};
                    auto& dag = static_cast<DagNode&>(*node);
                    if (flags.IsQuery()) return QueryXform(dag, flags);
                    const Answer done = EditXform(edits, dag, flags);
                    if (!done.Good()) return done;
                }
                return {};
            });
}

}  // namespace

void AddTransformCommands(Host& host) {
    AddPart(host, "move", Part::Translate);
    AddPart(host, "rotate", Part::Rotate);
    AddPart(host, "scale", Part::Scale);
    AddXform(host);
}

}  // namespace minihost
