#include <fmt/core.h>

#include "app/cli/Commands.h"
#include "core/io/AtomicFile.h"
#include "core/io/MeshFile.h"
#include "core/morph/SkinFrames.h"
#include "core/sculpt/LHeadlessNode.h"

namespace kelmo {

namespace {

using namespace VantrelSDK;

/// Reads a mesh with the vertices of the neutral. False, with the message, for another.
bool ReadPose(const std::string& file, const std::string& neutralFile, const PolyMesh& neutral,
              PolyMesh& pose, std::string& message) {
    FileError error;
    if (!ReadMesh(file, pose, error, MakeProgress("reading").get())) {
        message = error.Text();
        return false;
    }
    if (pose.positions.size() == neutral.positions.size()) return true;
    message = fmt::format(
        "{}: it has {} vertices, {} has {}; a shape has the vertices of its neutral, in the same "
        "order",
        file, pose.positions.size(), neutralFile, neutral.positions.size());
    return false;
}

/// Reads a mesh as a target over the neutral, which the node has loaded, in a space.
bool AddTarget(LHeadlessNode& node, const std::string& file, const std::string& neutralFile,
               const PolyMesh& neutral, int space, std::string& message) {
    PolyMesh shape;
    if (!ReadPose(file, neutralFile, neutral, shape, message)) return false;
    const int nverts = static_cast<int>(neutral.positions.size());
    for (int v = 0; v < nverts; ++v) shape.positions[v] -= neutral.positions[v];
    auto target = std::make_unique<LMixTarget>(&node, file, nverts);
    target->SetSpace(kObjectSpace);
    target->CopySkin(neutral.positions.data(), nverts);
    target->CopyFromMorph(shape.positions.data(), nverts);
    SkinFrames frames(*node.lobject()->GetOrigGeom(), node.lobject()->GetActiveUVChannel(), -1, 0);
    target->ConvertToSpace(space, frames);
    node.AddMixTarget(std::move(target));
    return true;
}

/// Quad levels on the node, which its targets follow.
bool AddLevels(LHeadlessNode& node, int levels, std::string& message) {
    for (int level = 1; level <= levels; ++level) {
        if (!node.CanSubdivide(true, message)) return false;
        if (node.SubdivideAll_Quad()) continue;
        message = "the level can't be made: there is not enough memory";
        return false;
    }
    return true;
}

/// The node's targets by their weights, in object space on the surface as it is.
std::unique_ptr<LSubdivMesh> Sum(LHeadlessNode& node, const ShapesOptions& options) {
    auto sum = std::make_unique<LSubdivMesh>(*node.lobject()->GetOrigGeom(), false);
    sum->ClearAllVerts();
    for (int i = 0; i < node.GetNumMixTargets(); ++i)
        node.GetMixTarget(i)->ApplyToLevels(sum.get(), -1, options.Weight(i));
    if (options.tangent)
        sum->TransformVectorsByLocal(node.lobject()->GetBases(), nullptr, -1, node.lthGrp());
    return sum;
}

}  // namespace

int RunShapes(const ShapesOptions& options) {
    PolyMesh neutral, base, result;
    FileError error;
    std::string message;
    if (!ReadMesh(options.neutral, neutral, error, MakeProgress("reading").get()))
        return Fail(error.Text());
    LHeadlessNode node(options.threads, [] { return MakeProgress("subdividing"); });
    if (!node.Load(neutral, message)) return Fail(options.neutral + ": " + message);
    if (options.tangent && !node.lobject()->GetActiveUVChannel())
        return Fail(options.neutral + ": it has no UVs, and tangent space goes along them");
    for (const std::string& file : options.shapes)
        if (!AddTarget(node, file, options.neutral, neutral,
                       options.tangent ? kTangentSpace : kObjectSpace, message))
            return Fail(message);
    if (!AddLevels(node, options.level, message)) return Fail(message);
    if (!options.on.empty()) {
        if (!ReadPose(options.on, options.neutral, neutral, base, message)) return Fail(message);
        node.lobject()->Update(base.positions.data(), nullptr, -1);
    }
    if (!node.GetResult(neutral, options.level, *Sum(node, options), result, message))
        return Fail(message);
    if (!WriteMesh(options.out, result, message)) return Fail(message);
    for (int i = 0; i < node.GetNumMixTargets(); ++i)
        fmt::print("{:>8.4g}  {}  ({} of {} vertices moved)\n", options.Weight(i),
                   options.shapes[i], node.GetMixTarget(i)->proxy().size(),
                   neutral.positions.size());
    return 0;
}

}  // namespace kelmo
