#include "core/paint/LColorDelta.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <tuple>
#include <utility>

#include "core/anim/LControlCollection.h"
#include "core/morph/LMorphTarget.h"
#include "core/paint/LevelValues.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

namespace {

/// at(0) to at(count - 1) in memory from malloc.
template <class T, class At>
T* MallocedCopy(int size, int& count, const At& at) {
    count = 0;
    T* copy = size > 0 ? static_cast<T*>(std::malloc(sizeof(T) * size)) : nullptr;
    if (!copy) return nullptr;
    for (; count < size; ++count) new (copy + count) T(at(count));
    return copy;
}

template <class T>
void CopyArray(const ZeroedArray<T>& from, bool zero, ZeroedArray<T>& to) {
    if (!to.Reset(from.size())) throw std::bad_alloc();
    if (!zero) std::copy(from.begin(), from.end(), to.begin());
}

}  // namespace

LColorDelta::LColorDelta(LNode* owner, int nverts, int nfaces, const LColor& incom)
    : owner_(owner) {
    init(nverts, nfaces);
    plain_ = incom;
}

LColorDelta::LColorDelta(LNode* owner, const LSubdivMesh& geom, const LColor& incom)
    : owner_(owner),
      nverts_(geom.GetNumLevelVerts(0)),
      nfaces_(geom.GetNumLevelFaces(0)),
      topology_(geom.GetLevelTopology(0)),
      subdivs_(std::make_unique<LSubdivCollection>(geom.GetSubdivs())),
      plain_(incom) {
    if (!Allocate(GetNumVerts(-2))) throw std::bad_alloc();
    Remember();
}

LColorDelta::LColorDelta(LNode* owner, const LColorDelta& other)
    : owner_(owner),
      zero_(other.zero_),
      zeroStencil_(other.zeroStencil_),
      levelchanged_(other.levelchanged_),
      nverts_(other.nverts_),
      nfaces_(other.nfaces_),
      topology_(other.topology_),
      subdivs_(std::make_unique<LSubdivCollection>(*other.subdivs_)),
      incoms_(other.incoms_),
      plain_(other.plain_),
      valid0_(other.valid0_),
      valid1_(other.valid1_) {
    CopyArray(other.paints_, zero_, paints_);
    CopyArray(other.stencils_, zeroStencil_, stencils_);
    CopyArray(other.origs_, false, origs_);
    CopyArray(other.stencilOrigs_, false, stencilOrigs_);
}

void LColorDelta::init(int nverts, int nfaces) {
    nverts_ = std::max(nverts, 0);
    nfaces_ = std::max(nfaces, 0);
    zero_ = zeroStencil_ = true;
    levelchanged_ = false;
    topology_.reset();
    subdivs_ = std::make_unique<LSubdivCollection>(nverts_, nfaces_);
    incoms_ = {};
    plain_ = LColor::cBlack;
    valid0_ = INT_MAX;
    valid1_ = INT_MIN;
    FlushUndo();
    if (!Allocate(nverts_)) throw std::bad_alloc();
    Remember();
}

bool LColorDelta::Allocate(size_t count) {
    back_ = {};
    dirty_.Reset(0);
    return paints_.Reset(count) && stencils_.Reset(count);
}

bool LColorDelta::CopyTopo(const LSubdivMesh* mesh) {
    if (!mesh || mesh->GetNumSubivLevels() != GetNumSubdivLevels()) return false;
    for (int level = 0; level < GetNumSubdivLevels(); ++level)
        if (mesh->GetNumLevelVerts(level) != GetNumVerts(level) ||
            mesh->GetNumLevelFaces(level) != GetNumFaces(level))
            return false;
    const int active = GetActiveLevel();
    topology_ = mesh->GetLevelTopology(0);
    subdivs_ = std::make_unique<LSubdivCollection>(mesh->GetSubdivs());
    subdivs_->Activate(active);
    return true;
}

int LColorDelta::ResolvedLevel(int level) const {
    return level == -1 ? GetActiveLevel() : level == -2 ? GetNumSubdivLevels() - 1 : level;
}

int LColorDelta::GetNumVerts(int level) const {
    const ISubdivLayer* layer = subdivs_->GetLayer(ResolvedLevel(level));
    return layer ? layer->GetNumVerts() : nverts_;
}

int LColorDelta::GetNumFaces(int level) const {
    const ISubdivLayer* layer = subdivs_->GetLayer(ResolvedLevel(level));
    return layer ? layer->GetNumFaces() : nfaces_;
}

const LMeshTopology* LColorDelta::LevelTables(int level) const {
    const ISubdivLayer* layer = subdivs_->GetLayer(ResolvedLevel(level));
    return layer ? layer->topology().get() : topology_.get();
}

LFace LColorDelta::GetFace(int i) const {
    const LMeshTopology* topology = LevelTables(-1);
    if (!topology || i < 0 || i >= topology->GetNumFaces()) return ZeroFace;
    LFace face = topology->Faces()[i];
    if (const ISubdivLayer* layer = subdivs_->GetActive()) face.id = layer->RemapFaceFromLocal(i);
    return face;
}

// Writing.

void LColorDelta::WritePaint(int i, const LAColor& paint) {
    paints_[i] = paint;
    zero_ = false;
    levelchanged_ = true;
}

void LColorDelta::WriteStencil(int i, float s) {
    stencils_[i] = s;
    zeroStencil_ = false;
    levelchanged_ = true;
}

void LColorDelta::WriteIncom(int i, const LColor& color) {
    if (incoms_.empty()) incoms_.assign(paints_.size(), plain_);
    incoms_[i] = color;
    zero_ = false;
    levelchanged_ = true;
}

void LColorDelta::SetDelta(int i, const LAColor& paint) {
    if (Has(i, -1)) WritePaint(i, paint);
}

void LColorDelta::SetDelta(int i, const LColor& color) {
    SetLevelDelta(i, GetActiveLevel(), color);
}

void LColorDelta::SetAlpha(int i, float a) {
    if (!Has(i, -1)) return;
    LAColor paint = paints_[i];
    paint.a = a;
    WritePaint(i, paint);
}

void LColorDelta::SetColor(int i, const LColor& color) {
    SetLevelColor(i, GetActiveLevel(), color);
}

void LColorDelta::SetStencil(int i, float s) {
    SetLevelStencil(i, GetActiveLevel(), s);
}

void LColorDelta::SetLevelDelta(int i, int level, const LColor& color) {
    if (Has(i, level)) WritePaint(i, {color.r, color.g, color.b, paints_[i].a});
}

void LColorDelta::SetLevelColor(int i, int level, const LColor& color) {
    if (Has(i, level)) WriteIncom(i, color);
}

void LColorDelta::SetLevelStencil(int i, int level, float s) {
    if (Has(i, level)) WriteStencil(i, s);
}

void LColorDelta::MixColor(int i, float a, const LColor& color) {
    if (Has(i, -1)) WritePaint(i, MixedPaint(paints_[i], a, color));
}

void LColorDelta::DifColor(int i, float a) {
    if (Has(i, -1)) WritePaint(i, FadedPaint(paints_[i], a));
}

void LColorDelta::MixStencil(int i, float s) {
    if (Has(i, -1)) WriteStencil(i, MixedStencil(stencils_[i], s));
}

void LColorDelta::DifStencil(int i, float s) {
    if (Has(i, -1)) WriteStencil(i, FadedStencil(stencils_[i], s));
}

void LColorDelta::OffsetDelta(int i, const LColor& d) {
    LColor color = GetDelta(i) + d;
    color.ClampMinMax();
    SetDelta(i, color);
}

void LColorDelta::OffsetAlpha(int i, float a) {
    SetAlpha(i, std::clamp(GetAlpha(i) + a, 0.0f, 1.0f));
}

void LColorDelta::OffsetStencil(int i, float s) {
    SetStencil(i, std::clamp(GetStencil(i) + s, 0.0f, 1.0f));
}

void LColorDelta::ClampDeltaMinMax(int i) {
    OffsetDelta(i, {});
}

void LColorDelta::SetDeltaByAbsIdx(int i, const LAColor& paint) {
    if (Has(i, -2)) paints_[i] = paint;
}

void LColorDelta::MixColorByAbsIdx(int i, const LAColor& color) {
    if (Has(i, -2)) paints_[i] = MixedPaint(paints_[i], color.a, ColorOf(color));
}

// Copies.

LColor* LColorDelta::GetLevelInputsCopy(int level, int& count) const {
    return MallocedCopy<LColor>(GetNumVerts(level), count, [&](int i) { return IncomAt(i); });
}

LColor* LColorDelta::GetLevelDeltasCopy(int level, int& count) const {
    return MallocedCopy<LColor>(GetNumVerts(level), count,
                                [&](int i) { return ColorOf(paints_[i]); });
}

float* LColorDelta::GetLevelAlphasCopy(int level, int& count) const {
    return MallocedCopy<float>(GetNumVerts(level), count, [&](int i) { return paints_[i].a; });
}

float* LColorDelta::GetLevelStencilsCopy(int level, int& count) const {
    return MallocedCopy<float>(GetNumVerts(level), count, [&](int i) { return stencils_[i]; });
}

LFace* LColorDelta::GetLevelFacesCopy(int level, int& count) const {
    const LMeshTopology* topology = LevelTables(level);
    return MallocedCopy<LFace>(topology ? topology->GetNumFaces() : 0, count,
                               [&](int i) { return topology->Faces()[i]; });
}

// The whole object.

bool LColorDelta::SetIncomingColors(std::span<const LColor> colors) try {
    if (static_cast<int>(colors.size()) != nverts_) return false;
    std::vector<LColor> incoms(colors.begin(), colors.end());
    for (LColor& color : incoms) color.ClampMinMax();
    const auto isBlack = [](const LColor& color) { return color == LColor::cBlack; };
    if (std::all_of(incoms.begin(), incoms.end(), isBlack)) {
        plain_ = cBare;
        incoms_ = {};
        return true;
    }
    incoms.reserve(paints_.size());
    for (int level = 1; level < GetNumSubdivLevels(); ++level) {
        const LevelValues step(subdivs_->GetLayer(level)->rule()->tables(), incoms.data());
        for (int i = 0; i < step.GetNumExtVerts(); ++i) incoms.push_back(step.GetExtVert(i));
    }
    incoms_ = std::move(incoms);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

void LColorDelta::ColorsReplaced(bool zero) {
    zero_ = zero;
    Invalidate();
    levelchanged_ = false;
    Remember();
}

void LColorDelta::ClearDelta() {
    if (!zero_) std::fill(paints_.begin(), paints_.end(), LAColor());
    ColorsReplaced(true);
}

void LColorDelta::FillDelta(const LColor& color) {
    std::fill(paints_.begin(), paints_.end(), LAColor(color.r, color.g, color.b, 1));
    ColorsReplaced(false);
}

void LColorDelta::InvertDelta() {
    CarryUp();
    for (LAColor& paint : paints_)
        if (paint.a != 0) paint = {1 - paint.r, 1 - paint.g, 1 - paint.b, paint.a};
    ColorsReplaced(false);
}

void LColorDelta::ClearStencil() {
    if (!zeroStencil_) std::fill(stencils_.begin(), stencils_.end(), 0.0f);
    zeroStencil_ = true;
    RememberStencils();
}

void LColorDelta::FillStencil(float s) {
    std::fill(stencils_.begin(), stencils_.end(), s);
    zeroStencil_ = false;
    RememberStencils();
}

void LColorDelta::InvertStencil() {
    CarryUp();
    for (float& s : stencils_) s = 1 - s;
    zeroStencil_ = false;
    ColorsReplaced(false);
}

void LColorDelta::ColorToStencil() {
    CarryUp();
    for (size_t v = 0; v < paints_.size(); ++v) {
        const LAColor& paint = paints_[v];
        stencils_[v] = (paint.r + paint.g + paint.b + paint.a) / 4;
    }
    zeroStencil_ = false;
    ColorsReplaced(zero_);
}

void LColorDelta::StencilToColor() {
    CarryUp();
    for (size_t v = 0; v < paints_.size(); ++v) {
        const float s = stencils_[v];
        paints_[v] = {s, s, s, s};
    }
    ColorsReplaced(false);
}

void LColorDelta::EvalDelta(int time, int level, bool, bool fullEval) {
    const LMorphTarget* neutral = owner_ ? owner_->GetNeutral() : nullptr;
    if (!neutral || !neutral->HasRGBA()) return;
    const bool valid = !fullEval && time >= valid0_ && time <= valid1_;
    const std::pair kept(valid0_, valid1_);
    FlushUndo();
    ClearDelta();
    const int levels = GetNumSubdivLevels();
    const int count = GetNumVerts(level < 0 || level >= levels ? -2 : level);
    neutral->colors().AddTo(paints_.data(), count, 1);
    zero_ = false;
    if (valid)
        std::tie(valid0_, valid1_) = kept;
    else
        AddTracks(time, fullEval, count);
    Remember();
}

/// Adds what the tracks show at a time to the first `count` vertices, and notes for how long.
void LColorDelta::AddTracks(int time, bool smooth, int count) {
    LFrame frame{.time = time, .interpolate = smooth};
    bool added = false;
    const auto add = [&](int target, float weight) {
        const LMorphTarget* shown = weight == 0 ? nullptr : owner_->GetMorph(target);
        if (!shown || !shown->HasRGBA()) return;
        shown->colors().AddTo(paints_.data(), count, weight);
        added = true;
    };
    if (const LControlCollection* tracks = owner_->GetAnimControls()) tracks->ForShares(frame, add);
    // Weights go below 0 and above 1 on the way from key to key.
    if (added)
        for (LAColor& paint : std::span(paints_.data(), count)) paint.ClampMinMax();
    valid0_ = frame.valid0;
    valid1_ = frame.valid1;
}

// Strokes.

void LColorDelta::AllockBack() {
    const size_t count = GetNumVerts(-1);
    if (back_.size() == count) return;
    back_.Reset(count);
    dirty_.Reset(static_cast<int>(count));
}

void LColorDelta::DirtyVert(int v) {
    if (v < 0 || v >= static_cast<int>(back_.size())) return;
    if (dirty_.Add(v)) back_[v] = {paints_[v], stencils_[v]};
}

void LColorDelta::Join(std::span<const int> kept, bool painted, bool stencilled) {
    dirty_.Join(kept);
    if (painted) zero_ = false;
    if (stencilled) zeroStencil_ = false;
    levelchanged_ |= painted || stencilled;
}

struct LColorDelta::Whole {
    /// Empty where all is unpainted.
    ZeroedArray<LAColor> paints, origs;
    ZeroedArray<float> stencils, stencilOrigs;
    bool zero, zeroStencil, levelchanged;
    int valid0, valid1;
};

LColorDelta::UndoData::UndoData() = default;
LColorDelta::UndoData::UndoData(UndoData&&) noexcept = default;
LColorDelta::UndoData& LColorDelta::UndoData::operator=(UndoData&&) noexcept = default;
LColorDelta::UndoData::~UndoData() = default;

namespace {

template <class T>
ZeroedArray<T> Copied(const ZeroedArray<T>& from) {
    ZeroedArray<T> copy;
    if (!copy.Reset(from.size())) throw std::bad_alloc();
    std::copy(from.begin(), from.end(), copy.begin());
    return copy;
}

}  // namespace

LColorDelta::UndoData LColorDelta::StrokeRecord() const {
    UndoData data;
    data.undos.reserve(dirty_.GetCount());
    for (const int v : dirty_.Items()) {
        const LAColor& paint = back_[v].paint;
        data.undos.push_back({static_cast<uint32_t>(v), ColorOf(paint), paint.a, back_[v].stencil});
    }
    return data;
}

LColorDelta::UndoData LColorDelta::WholeRecord() const {
    UndoData data;
    data.whole = std::make_unique<Whole>();
    Whole& whole = *data.whole;
    if (!zero_) whole.paints = Copied(paints_);
    if (!zeroStencil_) whole.stencils = Copied(stencils_);
    whole.origs = Copied(origs_);
    whole.stencilOrigs = Copied(stencilOrigs_);
    whole.zero = zero_;
    whole.zeroStencil = zeroStencil_;
    whole.levelchanged = levelchanged_;
    whole.valid0 = valid0_;
    whole.valid1 = valid1_;
    return data;
}

void LColorDelta::Restore(Whole& whole) {
    if (whole.zero)
        std::fill(paints_.begin(), paints_.end(), LAColor());
    else
        paints_.swap(whole.paints);
    if (whole.zeroStencil)
        std::fill(stencils_.begin(), stencils_.end(), 0.0f);
    else
        stencils_.swap(whole.stencils);
    origs_.swap(whole.origs);
    stencilOrigs_.swap(whole.stencilOrigs);
    zero_ = whole.zero;
    zeroStencil_ = whole.zeroStencil;
    levelchanged_ = whole.levelchanged;
    valid0_ = whole.valid0;
    valid1_ = whole.valid1;
}

int LColorDelta::CacheUndo(bool full) {
    if (GetNumVerts(-1) == 0) return 0;
    // Short of memory the older strokes go first; a stroke that can't be kept can't be undone.
    for (int attempt = 0; attempt < 2; ++attempt) try {
            undos_.Push(full ? WholeRecord() : StrokeRecord());
            break;
        } catch (const std::bad_alloc&) {
            undos_.Clear();
        }
    int changed = 0;
    for (const int v : dirty_.Items())
        changed += !(back_[v].paint == paints_[v] && back_[v].stencil == stencils_[v]);
    dirty_.Clear();
    return changed;
}

bool LColorDelta::Undo(std::vector<int>* restored) {
    UndoData data;
    if (GetNumVerts(-1) == 0 || !undos_.Pop(data)) return false;
    if (data.whole) {
        Restore(*data.whole);
        for (int v = 0; restored && v < GetNumVerts(-1); ++v) restored->push_back(v);
        return true;
    }
    for (const UndoVert& old : data.undos) {
        const int v = static_cast<int>(old.index);
        const LAColor paint(old.color.r, old.color.g, old.color.b, old.alpha);
        // What didn't change stays unmarked: a stroke of paint makes no stencil.
        if (!(paints_[v] == paint)) SetDelta(v, paint);
        if (stencils_[v] != old.stencil) SetStencil(v, old.stencil);
        if (restored) restored->push_back(v);
    }
    return !data.undos.empty();
}

}  // namespace VantrelSDK
