#include <fmt/core.h>

#include "app/cli/Commands.h"
#include "core/io/AtomicFile.h"
#include "core/io/ObjReader.h"
#include "core/io/ObjWriter.h"
#include "core/morph/LMorphTarget.h"
#include "core/sculpt/LHeadlessNode.h"

namespace kelmo {

namespace {

using namespace VantrelSDK;

/// Reads a mesh as a target over the neutral. False, with the message, when it can't be one.
bool ReadTarget(const std::string& file, const std::string& neutralFile, const PolyMesh& neutral,
                LMorphTarget& target, std::string& message) {
    PolyMesh shape;
    FileError error;
    if (!ReadObj(file, shape, error, MakeProgress("reading").get())) {
        message = error.Text();
        return false;
    }
    if (shape.positions.size() != neutral.positions.size()) {
        message = fmt::format(
            "{}: it has {} vertices, {} has {}; a shape has the vertices of its neutral, in the "
            "same order",
            file, shape.positions.size(), neutralFile, neutral.positions.size());
        return false;
    }
    for (size_t v = 0; v < shape.positions.size(); ++v) shape.positions[v] -= neutral.positions[v];
    target.CopySkin(neutral.positions.data(), static_cast<int>(neutral.positions.size()));
    return target.CopyFromMorph(shape.positions.data(), static_cast<int>(shape.positions.size()));
}

/// Quad levels on the node, and the targets up with it.
bool AddLevels(LHeadlessNode& node, int levels, std::vector<LMorphTarget>& targets,
               std::string& message) {
    LSubdivMesh& delta = *node.GetDelta()->GetOrigMesh();
    for (int level = 1; level <= levels; ++level) {
        if (!node.CanSubdivide(true, message)) return false;
        if (!node.SubdivideAll_Quad()) {
            message = "the level can't be made: there is not enough memory";
            return false;
        }
        for (LMorphTarget& target : targets) target.AddSubdivLevel(&delta);
    }
    delta.ClearAllLevelsVerts();
    return true;
}

}  // namespace

int RunShapes(const ShapesOptions& options) {
    PolyMesh neutral, result;
    FileError error;
    std::string message;
    if (!ReadObj(options.neutral, neutral, error, MakeProgress("reading").get()))
        return Fail(error.Text());
    LHeadlessNode node(options.threads, [] { return MakeProgress("subdividing"); });
    if (!node.Load(neutral, message)) return Fail(options.neutral + ": " + message);
    const int nverts = static_cast<int>(neutral.positions.size());
    std::vector<LMorphTarget> targets;
    for (const std::string& file : options.shapes) {
        targets.emplace_back(&node, file, nverts);
        if (!ReadTarget(file, options.neutral, neutral, targets.back(), message))
            return Fail(message);
    }
    if (!AddLevels(node, options.level, targets, message)) return Fail(message);
    for (size_t i = 0; i < targets.size(); ++i)
        targets[i].ApplyToLevels(node.GetDelta()->GetOrigMesh(), -1, options.Weight(i));
    if (!node.GetResult(neutral, options.level, result, message)) return Fail(message);
    if (!WriteObj(options.out, result, message)) return Fail(message);
    for (size_t i = 0; i < targets.size(); ++i)
        fmt::print("{:>8.4g}  {}  ({} of {} vertices moved)\n", options.Weight(i),
                   options.shapes[i], targets[i].proxy().size(), nverts);
    return 0;
}

}  // namespace kelmo
