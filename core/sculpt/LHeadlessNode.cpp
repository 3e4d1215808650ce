#include "core/sculpt/LHeadlessNode.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <new>

#include "core/io/LBlindData.h"
#include "core/mesh/Triangulation.h"
#include "core/sculpt/LNodeRecord.h"
#include "core/subdiv/LUVSubdivChannel.h"
#include "core/subdiv/LevelPolygons.h"

namespace VantrelSDK {

namespace {

/// Samples that both curves are made of.
constexpr unsigned kFalloffSamples = 40;

class HeadlessMeshObject : public LMeshObject {
  public:
    HeadlessMeshObject(LNode* owner, const PolyMesh& mesh) : LMeshObject(owner) {
        InitGeom(Triangulate(mesh));
    }
    explicit HeadlessMeshObject(LNode* owner) : LMeshObject(owner) {}
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

/// Every corner of polygon p has a UV.
bool HasUVs(const PolyMesh& mesh, int p) {
    if (mesh.cornerUVs.empty()) return false;
    const auto corner = mesh.cornerUVs.begin();
    return std::find(corner + mesh.polygonStart[p], corner + mesh.polygonStart[p + 1], -1) ==
           corner + mesh.polygonStart[p + 1];
}

/// The UVs of a level; none in what lies in a polygon that lacks one.
void TakeUVs(const LMeshObject& object, int level, const PolyMesh& source,
             const LevelPolygons& polygons, PolyMesh& result) {
    const LUVSubdivChannel* uvs = object.GetUVChannel(0);
    const std::span<const LUVChannel::MFace> faces =
        uvs ? uvs->LevelFaces(level) : std::span<const LUVChannel::MFace>();
    if (faces.empty()) return;
    const std::span<const LPoint2> points = uvs->AllVerts();
    result.uvs.assign(points.begin(), points.begin() + uvs->GetNumLevelVerts(level));
    result.cornerUVs.assign(polygons.corners.size(), -1);
    for (int p = 0; p < source.NumPolygons(); ++p) {
        if (!HasUVs(source, p)) continue;
        for (int c = polygons.starts[polygons.firstOf[p]];
             c < polygons.starts[polygons.firstOf[p + 1]]; ++c)
            result.cornerUVs[c] = faces[polygons.corners[c] / 3].v[polygons.corners[c] % 3];
    }
}

void TakePolygons(const LMeshObject& object, int level, const PolyMesh& source, PolyMesh& result) {
    const LSubdivMesh& geom = *object.GetOrigGeom();
    std::vector<int> firstFaces(source.polygonStart.size());
    for (size_t p = 0; p < firstFaces.size(); ++p)
        firstFaces[p] = FirstFaceOf(source, static_cast<int>(p));
    LevelPolygons polygons(geom, level, firstFaces);
    const std::vector<LFace>& faces = geom.GetLevelTopology(level)->Faces();
    result.cornerVerts.resize(polygons.corners.size());
    for (size_t c = 0; c < polygons.corners.size(); ++c)
        result.cornerVerts[c] = faces[polygons.corners[c] / 3].v[polygons.corners[c] % 3];
    TakeUVs(object, level, source, polygons, result);
    result.polygonStart = std::move(polygons.starts);
    for (size_t i = 0; i < source.statements.size(); ++i)
        result.statements.Add(polygons.firstOf[source.statements[i].polygon],
                              source.statements[i].text);
}

/// The colours that a mesh comes in with.
bool LoadColours(LColorDelta& delta, const PolyMesh& mesh, std::string& error) {
    if (mesh.colours.size() != mesh.positions.size()) return true;
    std::vector<LColor> colours;
    colours.reserve(mesh.colours.size());
    for (const LPoint3& c : mesh.colours) {
        if (!IsFinite(c)) {
            error = "the colour of vertex " + std::to_string(colours.size()) + " is not finite";
            return false;
        }
        colours.emplace_back(c);
    }
    delta.SetIncomingColors(colours);
    return true;
}

}  // namespace

LHeadlessNode::LHeadlessNode(int workers, ProgressFactory progress)
    : LNode(workers), progress_(std::move(progress)) {
    UpdateFalloffs();
    AddFrameTerm(&weights_);
}

bool LHeadlessNode::Load(const PolyMesh& mesh, std::string& error) try {
    if (mesh.NumPolygons() == 0) {
        error = mesh.positions.empty() ? "the mesh is empty" : "the mesh has no polygons";
        return false;
    }
    Reset();
    weights_.Clear();
    auto object = std::make_unique<HeadlessMeshObject>(this, mesh);
    if (!object->AddUVs(mesh, error)) return false;
    if (Init(std::move(object)) != 0 || !CreateDelta()) {
        error = "the mesh has nothing to sculpt";
        return false;
    }
    return LoadColours(*lcolorDelta(), mesh, error);
} catch (const std::bad_alloc&) {
    error = "there is not enough memory for this mesh";
    return false;
}

bool LHeadlessNode::GetResult(const PolyMesh& source, int level, PolyMesh& result,
                              std::string& error) try {
    UpdateSubdivLevels();
    if (IsSculpting()) return GetResult(source, level, *GetDelta()->GetOrigMesh(), result, error);
    return GetResult(source, level, *GetObjectDelta(), result, error);
} catch (const std::bad_alloc&) {
    error = "there is not enough memory for the result";
    return false;
}

bool LHeadlessNode::GetResult(const PolyMesh& source, int level, const LSubdivMesh& offsets,
                              PolyMesh& result, std::string& error) const try {
    const LSubdivMesh& geom = BaseShape();
    const LPoint3 *base = geom.GetAllVertsPtr(), *delta = offsets.GetAllVertsPtr();
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
    } else {
        std::vector<LPoint3> positions = std::move(result.positions);
        result = source;
        result.positions = std::move(positions);
    }
    TakeColours(source, result);
    return true;
} catch (const std::bad_alloc&) {
    error = "there is not enough memory for the result";
    return false;
}

/// Colours of the vertices that the result has.
void LHeadlessNode::TakeColours(const PolyMesh& source, PolyMesh& result) const {
    const LColorDelta* delta = lcolorDelta();
    const size_t count = result.positions.size(), given = source.colours.size();
    if (!delta || delta->GetNumVerts(-2) < static_cast<int>(count)) return;
    const LAColor* paints = delta->Paints();
    const auto isPainted = [](const LAColor& paint) { return !(paint == LAColor()); };
    // Paint that was taken back is none.
    if (given == 0 && (delta->IsZero() || std::none_of(paints, paints + count, isPainted))) return;
    result.colours.resize(count);
    for (size_t v = 0; v < result.colours.size(); ++v) {
        LColor colour = delta->ResAt(v);
        colour.ClampMinMax();
        // What was not painted keeps its bits.
        result.colours[v] = v < given && !isPainted(paints[v])
                                ? source.colours[v]
                                : LPoint3(colour.r, colour.g, colour.b);
    }
}

bool LHeadlessNode::SaveState(const std::string& path, std::string& error) {
    // Between sessions the delta is held as others read it.
    if (IsSculpting()) FinishSculpt(true);
    LBlindData block;
    LNodeRecord record(*this, {});
    int code = block.BeginWrite();
    if (code == 0) code = record.WriteTo(&block);
    if (code == 0) code = block.EndWrite();
    if (code == 0) return block.WriteToFile(path.c_str(), GetKelmoVersionInt(), &error);
    error = path + ": there is not enough memory to save the node";
    return false;
}

bool LHeadlessNode::LoadState(const std::string& path, std::string& error, int* version) {
    LBlindData block;
    int stored = 0;
    if (!block.ReadFromFile(path.c_str(), stored, &error)) {
        // The message is a line, and doesn't always name the file.
        if (error.ends_with('\n')) error.pop_back();
        if (error.find(path) == error.npos) error = path + ": " + error;
        return false;
    }
    if (version) *version = stored;
    LNodeRecord record(*this, [this] { return std::make_unique<HeadlessMeshObject>(this); });
    char digits[4];
    int code = block.BeginRead(digits);
    if (code == 0) code = record.ReadFrom(&block);
    if (code == 0) code = block.EndRead();
    if (code == 0 && !lobject()) code = LBlindData::kBadRecord;
    if (code == 0) return true;
    error = path +
            (code == LBlindData::kNoMemory ? ": there is not enough memory for this node"
                                           : ": this is not the state of a node, or it is "
                                             "damaged; code ") +
            (code == LBlindData::kNoMemory ? "" : std::to_string(code));
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

float LHeadlessNode::ModeStrength(const SettingArray<float, 20>& strengths, bool tablet) const {
    const float multiplier = strengths[getTransformMode(false)];
    return multiplier * (tablet ? penPressure_ : 1.0f) * 0.1f;
}

float LHeadlessNode::getBrushPaintPressure(bool tablet) const {
    return ModeStrength(settings_.paintPressMult, tablet);
}

float LHeadlessNode::getVertColorStrength(bool tablet) const {
    return ModeStrength(settings_.vertColorStrength, tablet);
}

LColor LHeadlessNode::getVertexPaintColor() const {
    const SettingFloat3& colour = settings_.vertexPaintColor;
    return {colour[0], colour[1], colour[2]};
}

}  // namespace VantrelSDK
