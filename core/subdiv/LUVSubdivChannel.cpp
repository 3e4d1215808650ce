#include "core/subdiv/LUVSubdivChannel.h"

#include <algorithm>
#include <climits>
#include <new>

#include "core/io/HugePages.h"
#include "core/subdiv/LTopoCaches.h"
#include "core/subdiv/LUVSubdivLevel.h"

namespace VantrelSDK {

bool LUVChannel::Init(std::vector<LPoint2> verts, std::vector<MFace> faces, size_t meshFaces,
                      std::string& error) {
    if (faces.size() != meshFaces) {
        error = "a UV set has " + std::to_string(faces.size()) + " faces, the mesh " +
                std::to_string(meshFaces);
        return false;
    }
    for (size_t f = 0; f < faces.size(); ++f)
        for (const int v : faces[f].v)
            if (v < -1 || v >= static_cast<int>(verts.size())) {
                error = "face " + std::to_string(f) + " of a UV set names point " +
                        std::to_string(v) + " of " + std::to_string(verts.size());
                return false;
            }
    verts_ = std::move(verts);
    faces_ = std::move(faces);
    nverts_ = static_cast<int>(verts_.size());
    return true;
}

LUVSubdivChannel::LUVSubdivChannel(int channel)
    : LUVChannel(channel), subdivs_(std::make_unique<LSubdivCollection>(0, 0)) {}

LUVSubdivChannel::LUVSubdivChannel(const LUVSubdivChannel& other)
    : LUVChannel(other),
      subdivs_(std::make_unique<LSubdivCollection>(*other.subdivs_)),
      extfaces_(other.extfaces_) {}

bool LUVSubdivChannel::Init(std::vector<LPoint2> verts, std::vector<MFace> faces, size_t meshFaces,
                            std::string& error) {
    if (!LUVChannel::Init(std::move(verts), std::move(faces), meshFaces, error)) return false;
    subdivs_ = std::make_unique<LSubdivCollection>(nverts_, nfaces());
    extfaces_.clear();
    return true;
}

std::span<const LUVChannel::MFace> LUVSubdivChannel::LevelFaces(int level) const {
    if (level == 0) return faces_;
    if (level < 0 || level > static_cast<int>(extfaces_.size())) return {};
    return extfaces_[level - 1];
}

int LUVSubdivChannel::GetNumLevelVerts(int level) const {
    const ISubdivLayer* layer = subdivs_->GetLayer(level);
    return layer ? layer->GetNumVerts() : nverts_;
}

int LUVSubdivChannel::GetNumLevelFaces(int level) const {
    const ISubdivLayer* layer = subdivs_->GetLayer(level);
    return layer ? layer->GetNumFaces() : nfaces();
}

LPoint2 LUVSubdivChannel::GetLevelVert(int i, int level) const {
    return i >= 0 && i < GetNumLevelVerts(level) ? verts_[i] : LPoint2::Zero;
}

LUVChannel::MFace LUVSubdivChannel::GetLevelFace(int i, int level) const {
    const std::span<const MFace> faces = LevelFaces(subdivs_->GetLayer(level) ? level : 0);
    return static_cast<size_t>(i) < faces.size() ? faces[i] : MFace();
}

bool LUVSubdivChannel::GetFaceUVs(int face, int level, LPoint2 (&uvs)[3]) const {
    const MFace f = GetLevelFace(face, level);
    for (int k = 0; k < 3; ++k) {
        if (f.v[k] < 0) return false;
        uvs[k] = verts_[f.v[k]];
    }
    return true;
}

void LUVSubdivChannel::SetVert(int i, const LPoint2& uv) {
    if (i >= 0 && i < GetNumVerts()) verts_[i] = uv;
}

void LUVSubdivChannel::SetFace(int i, const MFace& face) {
    std::vector<MFace>& faces = FacesOf(subdivs_->GetActiveIndex());
    if (static_cast<size_t>(i) < faces.size()) faces[i] = face;
}

LPoint2 LUVSubdivChannel::GetVertByAbsIdx(unsigned i) const {
    return i < verts_.size() ? verts_[i] : LPoint2::Zero;
}

void LUVSubdivChannel::SetVertByAbsIdx(unsigned i, const LPoint2& uv) {
    if (i < verts_.size()) verts_[i] = uv;
}

std::unique_ptr<LUVChannel> LUVSubdivChannel::GetLevelCopy(int level) const {
    const std::span<const MFace> faces = LevelFaces(level);
    auto copy = std::make_unique<LUVChannel>(channel_);
    std::string error;
    copy->Init({verts_.begin(), verts_.begin() + GetNumLevelVerts(level)},
               {faces.begin(), faces.end()}, faces.size(), error);
    return copy;
}

bool LUVSubdivChannel::SubdivideAll_Loop(bool) try {
    if (IsEmpty()) return false;
    const int top = GetNumSubdivLevels() - 1, before = static_cast<int>(verts_.size());
    const std::span<const MFace> source = LevelFaces(top);
    if (4 * source.size() > INT_MAX) return false;
    const LUVSubdivLevel step(verts_, source);
    std::vector<MFace> faces;
    ResizeLarge(faces, 4 * source.size());
    for (size_t i = 0; i < faces.size(); ++i) faces[i] = step.GetExtFace(static_cast<int>(i));
    std::vector<LPoint2> verts;
    ResizeLarge(verts, step.NumVerts());
    for (int i = 0; i < step.NumVerts(); ++i) step.GetVert(i, verts[i]);
    extfaces_.push_back(std::move(faces));
    verts_ = std::move(verts);
    subdivs_->AddEntireLevel(static_cast<int>(verts_.size()) - before, nullptr, nullptr);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool LUVSubdivChannel::SubdivideAll_Quad(const LMeshTopology& level, bool) {
    return AddQuadLevel(level.Coupling());
}

bool LUVSubdivChannel::RedivideAll_Quad(const LQuadLevelTopoCache* cache, bool) {
    return cache && cache->GetStep().coupling && AddQuadLevel(cache->GetStep().coupling);
}

bool LUVSubdivChannel::AddQuadLevel(std::shared_ptr<const LTriCoupling> coupling) try {
    const int top = GetNumSubdivLevels() - 1, before = static_cast<int>(verts_.size());
    const std::span<const MFace> source = LevelFaces(top);
    if (IsEmpty() || static_cast<size_t>(coupling->NumFaces()) != source.size()) return false;
    const LQuadTriUVSubdivLevel step(verts_, source, *coupling);
    std::vector<MFace> faces;
    ResizeLarge(faces, 2 * static_cast<size_t>(step.NumQuads()));
    for (int q = 0; q < step.NumQuads(); ++q) {
        const LQuad quad = step.GetQuad(q);
        faces[2 * q] = {{quad.v[0], quad.v[1], quad.v[2]}};
        faces[2 * q + 1] = {{quad.v[2], quad.v[3], quad.v[0]}};
    }
    std::vector<LPoint2> verts;
    ResizeLarge(verts, step.NumVerts());
    for (int i = 0; i < step.NumVerts(); ++i) step.GetVert(i, verts[i]);
    extfaces_.push_back(std::move(faces));
    verts_ = std::move(verts);
    subdivs_->AddEntireQuadLevel(static_cast<int>(verts_.size()) - before, std::move(coupling),
                                 nullptr, nullptr);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

bool LUVSubdivChannel::DeleteTopLevel() {
    if (!subdivs_->DeleteTop()) return false;
    extfaces_.pop_back();
    verts_.resize(GetNumLevelVerts(GetNumSubdivLevels() - 1));
    verts_.shrink_to_fit();
    return true;
}

}  // namespace VantrelSDK
