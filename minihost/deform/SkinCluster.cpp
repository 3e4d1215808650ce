#include "minihost/deform/SkinCluster.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "minihost/deform/DeformerChain.h"
#include "minihost/deform/GeometryFilter.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/mesh/Sets.h"

namespace minihost {
namespace {

enum NormalizeWeights { kNone, kInteractive, kPost };

/// Rows 0 to 3 of a matrix, columns 0 to 2.
using Affine = std::array<double, 12>;

Affine AffineOf(const MMatrix& m) {
    Affine a;
    for (unsigned row = 0; row < 4; ++row)
        for (unsigned column = 0; column < 3; ++column) a[row * 3 + column] = m[row][column];
    return a;
}

MMatrix MatrixOf(Slot& slot) {
    const auto data = DataOf<MatrixData>(Pull(slot));
    return data ? data->value : MMatrix();
}

/// p' = p * sum of w * (geomMatrix * bindPreMatrix * matrix * geomMatrix inverse); what the weights
/// lack to 1 holds the vertex where it is.
class SkinLogic : public DeformerLogic {
  public:
    using DeformerLogic::DeformerLogic;

    bool WatchesDirt() const override { return true; }
    void SetDependentsDirty(const Plug& plug, std::vector<Plug>&) override {
        weightsStale_ |= plug.attribute == weights_ || plug.attribute == weightList_;
    }

  protected:
    void Deform(const DeformInput& in, MeshData& out) override {
        if (weightsStale_) ReadWeights();
        const int mode = static_cast<int>(NumberOf(Pull(*node_.FindSlot("normalizeWeights"))));
        ReadMatrices();
        std::vector<MFloatVector>& points = out.EditPoints();
        const int weighted = std::min(out.numVertices(), static_cast<int>(starts_.size()) - 1);
        in.ForEachMember([&](int v) {
            if (v < weighted) Move(points[static_cast<size_t>(v)], v, in.envelope, mode);
        });
    }

  private:
    struct Weight {
        int joint;
        double weight;
    };

    void Move(MFloatVector& p, int v, double envelope, int mode) const {
        const int first = starts_[static_cast<size_t>(v)],
                  end = starts_[static_cast<size_t>(v) + 1];
        Affine sum{};
        double total = 0;
        for (int i = first; i < end; ++i) {
            const Weight& w = all_[static_cast<size_t>(i)];
            const Affine& m = matrices_[static_cast<size_t>(w.joint)];
            for (size_t k = 0; k < 12; ++k) sum[k] += w.weight * m[k];
            total += w.weight;
        }
        if (first == end || (mode == kPost && !(total > 0))) return;
        double scale = envelope, rest = 1 - envelope;
        if (mode == kPost)
            scale /= total;
        else
            rest += envelope * (1 - total);
        const double at[3] = {p.x, p.y, p.z};
        for (unsigned c = 0; c < 3; ++c)
            p[c] = static_cast<float>(
                scale * (at[0] * sum[c] + at[1] * sum[3 + c] + at[2] * sum[6 + c] + sum[9 + c]) +
                rest * at[c]);
    }

    /// Weights by vertex, in one run.
    void ReadWeights() {
        const Slot& list = *node_.FindSlot("weightList");
        all_.clear();
        starts_.assign(1, 0);
        for (const auto& vertex : list.parts) {
            starts_.resize(static_cast<size_t>(vertex->index) + 1, starts_.back());
            for (const auto& weight : vertex->parts[0]->parts)
                if (const double w = NumberOf(Pull(*weight)); w != 0)
                    all_.push_back({weight->index, w});
            starts_.push_back(static_cast<int>(all_.size()));
        }
        weightsStale_ = false;
    }

    /// By logical index. Joints that are not connected hold what they move where it is.
    void ReadMatrices() {
        const MMatrix geometry = MatrixOf(*node_.FindSlot("geomMatrix"));
        const MMatrix back = geometry.inverse();
        const Slot &list = *node_.FindSlot("matrix"), &binds = *node_.FindSlot("bindPreMatrix");
        int count = 0;
        for (const Weight& w : all_) count = std::max(count, w.joint + 1);
        matrices_.assign(static_cast<size_t>(count), AffineOf(MMatrix()));
        for (const auto& joint : list.parts) {
            if (joint->index >= count) break;
            Slot* bind = binds.FindElement(joint->index);
            const MMatrix held = bind ? MatrixOf(*bind) : MMatrix();
            matrices_[static_cast<size_t>(joint->index)] =
                AffineOf(geometry * held * MatrixOf(*joint) * back);
        }
    }

    const Attribute* weights_ = node_.type().Find("weights");
    const Attribute* weightList_ = node_.type().Find("weightList");
    bool weightsStale_ = true;
    /// Those of vertex v from starts_[v] up to starts_[v + 1].
    std::vector<int> starts_;
    std::vector<Weight> all_;
    std::vector<Affine> matrices_;
};

}  // namespace

void RegisterSkinCluster(NodeTypes& types) {
    NodeType& skin =
        types.Make("skinCluster", 0x46534b43, MFn::kSkinClusterFilter, "geometryFilter");
    const auto list = PlainAttribute("weightList", "wl", AttributeKind::Compound);
    list->isArray = true;
    const auto weights = NumericAttribute("weights", "w", MFnNumericData::kDouble);
    weights->isArray = true;
    list->AddChild(weights);
    skin.Add(list);
    for (const auto& [name, shortName] : {std::pair{"matrix", "ma"}, {"bindPreMatrix", "pm"}}) {
        Attribute* matrices = skin.Add(PlainAttribute(name, shortName, AttributeKind::Matrix));
        matrices->isArray = true;
        matrices->indexMatters = true;
    }
    skin.Find("matrix")->disconnect = DisconnectBehavior::Delete;
    skin.Add(PlainAttribute("geomMatrix", "gm", AttributeKind::Matrix));
    skin.Add(PlainAttribute("bindPose", "bp", AttributeKind::Message));
    skin.Add(NumericAttribute("maxInfluences", "mi", MFnNumericData::kInt, 5));
    skin.Add(EnumAttribute("normalizeWeights", "nw",
                           {{"none", kNone}, {"interactive", kInteractive}, {"post", kPost}},
                           kInteractive));
    skin.Affects(
        {"weightList", "weights", "matrix", "bindPreMatrix", "geomMatrix", "normalizeWeights"},
        {"outputGeometry"});
    skin.maker = [](Node& node) { return std::make_unique<SkinLogic>(node); };
}

namespace {

/// A joint with the bones that hold its vertices, in world space; a bone of a joint without a
/// joint below is a point.
struct Bones {
    MPoint from;
    std::vector<MPoint> to;

    double Distance(const MPoint& p) const {
        double least = p.distanceTo(from);
        for (const MPoint& end : to) {
            const MVector along = end - from;
            const double length = along * along;
            const double t = length > 0 ? std::clamp((p - from) * along / length, 0.0, 1.0) : 0;
            least = std::min(least, p.distanceTo(from + along * t));
        }
        return least;
    }
};

std::vector<Bones> BonesOf(const std::vector<DagNodePtr>& joints) {
    std::vector<Bones> bones;
    for (const DagNodePtr& joint : joints) {
        Bones& b = bones.emplace_back();
        b.from = MPoint() * joint->WorldMatrix();
        for (const DagNodePtr& child : joint->children())
            if (std::ranges::count(joints, child)) b.to.push_back(MPoint() * child->WorldMatrix());
    }
    return bones;
}

/// The weights of one vertex: joint and weight, by joint, adding up to 1.
std::vector<std::pair<int, double>> Closest(const MPoint& p, const std::vector<Bones>& bones,
                                            const SkinBinding& binding) {
    std::vector<std::pair<int, double>> weights;
    for (size_t j = 0; j < bones.size(); ++j)
        weights.emplace_back(static_cast<int>(j), bones[j].Distance(p));
    const size_t kept = binding.maxInfluences > 0
                            ? std::min(weights.size(), size_t(binding.maxInfluences))
                            : weights.size();
    std::ranges::partial_sort(weights, weights.begin() + static_cast<long>(kept), {},
                              [](const auto& w) { return std::pair(w.second, w.first); });
    weights.resize(kept);
    // Taken in parts of the least distance, powers neither overflow nor vanish together.
    const double least = weights[0].second;
    double total = 0;
    for (auto& [joint, weight] : weights) {
        weight = weight > 0 ? std::pow(least / weight, binding.dropoff) : 1;
        total += weight;
    }
    for (auto& [joint, weight] : weights) weight /= total;
    std::ranges::sort(weights);
    return weights;
}

}  // namespace

NodePtr BindSkin(Modifier& edits, const std::vector<DagNodePtr>& joints, const NodePtr& mesh,
                 std::string& error, const SkinBinding& binding) {
    if (joints.empty()) {
        error = "select joints and a mesh to bind";
        return nullptr;
    }
    const NodePtr skin = InsertDeformer(edits, "skinCluster", {mesh}, error, binding.name);
    if (!skin) return nullptr;
    const auto matrix = [](const MMatrix& m) {
        return std::shared_ptr<Data>(std::make_shared<MatrixData>(m));
    };
    const MMatrix world = static_cast<DagNode&>(*mesh).WorldMatrix();
    edits.Set(skin->FindPlug("geomMatrix"), matrix(world));
    edits.Set(skin->FindPlug("maxInfluences"), double(binding.maxInfluences));
    for (size_t j = 0; j < joints.size(); ++j) {
        const int index = static_cast<int>(j);
        edits.Connect(joints[j]->FindPlug("worldMatrix").Element(0),
                      skin->FindPlug("matrix").Element(index));
        edits.Set(skin->FindPlug("bindPreMatrix").Element(index),
                  matrix(joints[j]->WorldMatrix().inverse()));
    }
    // The node is new: deleting it takes its weights back, and nothing has read them yet.
    const std::vector<Bones> bones = BonesOf(joints);
    const MeshPtr shown = MeshOf(*mesh);
    Slot& list = *skin->FindSlot("weightList");
    for (int v = 0; shown && v < shown->numVertices(); ++v) {
        const MPoint p = MPoint(MFloatPoint(shown->points()[static_cast<size_t>(v)])) * world;
        Slot& weights = *list.Element(v)->parts[0];
        for (const auto& [joint, weight] : Closest(p, bones, binding))
            SetResult(*weights.Element(joint), weight);
    }
    Changed(list);
    return skin;
}

std::vector<NodePtr> JointsOf(const NodePtr& skin) {
    std::vector<NodePtr> joints;
    for (const auto& matrix : skin->FindSlot("matrix")->parts) {
        joints.resize(static_cast<size_t>(matrix->index) + 1);
        joints.back() = SourceNode(Plug(*matrix));
    }
    return joints;
}

}  // namespace minihost
