#include "core/sculpt/LHeadlessNode.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <new>

#include "core/mesh/Triangulation.h"

namespace VantrelSDK {

namespace {

/// Samples that both curves are made of.
constexpr unsigned kFalloffSamples = 40;

class HeadlessMeshObject : public LMeshObject {
  public:
    HeadlessMeshObject(LNode* owner, const PolyMesh& mesh) : LMeshObject(owner) {
        InitGeom(Triangulate(mesh));
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

/// The triangles of a level above the base, in order of the polygons that they lie in.
void TakeTriangles(const LSubdivMesh& geom, int level, const PolyMesh& source, PolyMesh& result) {
    const ISubdivLayer* layer = geom.GetSubdivs().GetLayer(level);
    const std::vector<LFace>& faces = layer->topology()->Faces();
    result.cornerVerts.reserve(faces.size() * 3);
    result.polygonStart.reserve(faces.size() + 1);
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
            geom.FindSubFaces(f, subs, layer);
        for (const int sub : subs) {
            result.cornerVerts.insert(result.cornerVerts.end(), faces[sub].v, faces[sub].v + 3);
            result.polygonStart.push_back(static_cast<int>(result.cornerVerts.size()));
        }
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
    if (Init(std::make_unique<HeadlessMeshObject>(this, mesh)) == 0 && CreateDelta()) return true;
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
        TakeTriangles(geom, level, source, result);
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
