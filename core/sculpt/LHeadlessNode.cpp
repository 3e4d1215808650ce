#include "core/sculpt/LHeadlessNode.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <new>

#include "core/mesh/Triangulation.h"
#include "core/subdiv/LUVSubdivChannel.h"

namespace VantrelSDK {

namespace {

/// Samples that both curves are made of.
constexpr unsigned kFalloffSamples = 40;

class HeadlessMeshObject : public LMeshObject {
  public:
    HeadlessMeshObject(LNode* owner, const PolyMesh& mesh) : LMeshObject(owner) {
        InitGeom(Triangulate(mesh));
    }
    /// Takes the UV set of the mesh, when it has one.
    bool AddUVs(const PolyMesh& mesh, std::string& error) {
        if (mesh.cornerUVs.empty()) return true;
        auto channel = std::make_unique<LUVSubdivChannel>();
        if (!channel->Init(mesh.uvs, TriangulateUVs(mesh), GetNumFaces(), error)) return false;
        AddChannel(std::move(channel));
        return true;
    }
    std::unique_ptr<LProgressCallback> getProgressCallbck() override {
        return owner()->getProgressCallbck();
    }
};

class RampFalloff : public LFalloffCache {
  public:
    explicit RampFalloff(const Ramp& ramp) : LFalloffCache(kFalloffSamples), ramp_(ramp) {
        Compute();
    }
    void Compute() override {
        float t = 0;
        for (size_t i = 0; i < values.size(); ++i, t += dt) {
            locations[i] = t;
            values[i] = RampValue(ramp_, t);
        }
    }

  private:
    Ramp ramp_;
};

bool IsFinite(const LPoint3& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// Takes the polygons of a level above the base, in order of the polygons that they lie in: quads
/// of a quad level, else triangles, with their UVs.
class LevelPolygons {
  public:
    LevelPolygons(const LMeshObject& object, int level, PolyMesh& result)
        : layer_(*object.GetOrigGeom()->GetSubdivs().GetLayer(level)),
          faces_(layer_.topology()->Faces()),
          result_(result) {
        if (const LUVSubdivChannel* uvs = object.GetUVChannel(0)) {
            uvs_ = uvs->LevelFaces(level);
            const std::span<const LPoint2> points = uvs->AllVerts();
            const size_t count = uvs_.empty() ? 0 : uvs->GetNumLevelVerts(level);
            result.uvs.assign(points.begin(), points.begin() + count);
        }
        if (layer_.GetType() == 1) taken_.resize(faces_.size() / 2);
        const size_t corners = layer_.GetType() == 1 ? faces_.size() * 2 : faces_.size() * 3;
        result.cornerVerts.reserve(corners);
        if (!uvs_.empty()) result.cornerUVs.reserve(corners);
    }

    /// The polygon that face f of the level belongs to, once; with its UVs when `withUVs`.
    void Take(int f, bool withUVs) {
        withUVs_ = withUVs;
        if (layer_.GetType() != 1) {
            AddCorners(f, 0, 3);
        } else {
            if (taken_[f / 2]++) return;
            AddCorners(f & ~1, 0, 3);
            AddCorners(f | 1, 1, 2);
        }
        result_.polygonStart.push_back(static_cast<int>(result_.cornerVerts.size()));
    }

  private:
    void AddCorners(int f, int from, int to) {
        const auto add = [&](std::vector<int>& list, const int32_t* v) {
            list.insert(list.end(), v + from, v + to);
        };
        add(result_.cornerVerts, faces_[f].v);
        if (!uvs_.empty()) add(result_.cornerUVs, withUVs_ ? uvs_[f].v : LUVChannel::MFace().v);
    }

    const ISubdivLayer& layer_;
    const std::vector<LFace>& faces_;
    std::span<const LUVChannel::MFace> uvs_;
    PolyMesh& result_;
    std::vector<uint8_t> taken_;
    bool withUVs_ = true;
};

/// Every corner of polygon p has a UV.
bool HasUVs(const PolyMesh& mesh, int p) {
    if (mesh.cornerUVs.empty()) return false;
    const auto corner = mesh.cornerUVs.begin();
    return std::find(corner + mesh.polygonStart[p], corner + mesh.polygonStart[p + 1], -1) ==
           corner + mesh.polygonStart[p + 1];
}

void TakePolygons(const LMeshObject& object, int level, const PolyMesh& source, PolyMesh& result) {
    const LSubdivMesh& geom = *object.GetOrigGeom();
    LevelPolygons polygons(object, level, result);
    std::vector<int> subs;
    size_t next = 0;
    const auto takeStatements = [&](int before) {
        for (; next < source.statements.size() && source.statements[next].polygon <= before; ++next)
            result.statements.Add(result.NumPolygons(), source.statements[next].text);
    };
    for (int p = 0; p < source.NumPolygons(); ++p) {
        takeStatements(p);
        subs.clear();
        for (int f = FirstFaceOf(source, p); f < FirstFaceOf(source, p + 1); ++f)
            geom.FindSubFaces(f, subs, geom.GetSubdivs().GetLayer(level));
        const bool withUVs = HasUVs(source, p);
        for (const int sub : subs) polygons.Take(sub, withUVs);
    }
    takeStatements(source.NumPolygons());
}

}  // namespace

LHeadlessNode::LHeadlessNode(int workers, ProgressFactory progress)
    : LNode(workers), progress_(std::move(progress)) {
    UpdateFalloffs();
}

bool LHeadlessNode::Load(const PolyMesh& mesh, std::string& error) try {
    if (mesh.NumPolygons() == 0) {
        error = mesh.positions.empty() ? "the mesh is empty" : "the mesh has no polygons";
        return false;
    }
    Reset();
    auto object = std::make_unique<HeadlessMeshObject>(this, mesh);
    if (!object->AddUVs(mesh, error)) return false;
    if (Init(std::move(object)) == 0 && CreateDelta()) return true;
    error = "the mesh has nothing to sculpt";
    return false;
} catch (const std::bad_alloc&) {
    error = "there is not enough memory for this mesh";
    return false;
}

bool LHeadlessNode::GetResult(const PolyMesh& source, int level, PolyMesh& result,
                              std::string& error) try {
    const LSubdivMesh& geom = *lobject()->GetOrigGeom();
    UpdateSubdivLevels();
    const LPoint3 *base = geom.GetAllVertsPtr(),
                  *delta = GetDelta()->GetOrigMesh()->GetAllVertsPtr();
    result = {};
    result.positions.resize(geom.GetNumLevelVerts(level));
    for (size_t v = 0; v < result.positions.size(); ++v) {
        // What was not sculpted keeps its bits: -0 + 0 would not.
        result.positions[v] = delta[v] == LPoint3::Zero ? base[v] : base[v] + delta[v];
        if (IsFinite(result.positions[v])) continue;
        error = "the strokes moved vertex " + std::to_string(v) +
                " out of the range of numbers; use smaller moves, pressure or radius";
        return false;
    }
    if (level > 0) {
        TakePolygons(*lobject(), level, source, result);
        return true;
    }
    std::vector<LPoint3> positions = std::move(result.positions);
    result = source;
    result.positions = std::move(positions);
    return true;
} catch (const std::bad_alloc&) {
    error = "there is not enough memory for the result";
    return false;
}

void LHeadlessNode::UpdateFalloffs() {
    _lfalloff1() = std::make_unique<RampFalloff>(settings_.falloff);
    _lfalloff2() = std::make_unique<RampFalloff>(settings_.falloff2);
}

std::unique_ptr<LProgressCallback> LHeadlessNode::getProgressCallbck() {
    return progress_ ? progress_() : nullptr;
}

int LHeadlessNode::getTransformMode(bool modifiers) const {
    if (IsShiftPressed()) return GetShiftMode(settings_.sculptMode);
    if (modifiers && IsCtrlPressed()) return GetCtrlMode(settings_.sculptMode);
    return settings_.sculptMode;
}

float LHeadlessNode::getBrushPaintPressure(bool tablet) const {
    const float multiplier = settings_.paintPressMult[getTransformMode(false)];
    return multiplier * (tablet ? penPressure_ : 1.0f) * 0.1f;
}

}  // namespace VantrelSDK
