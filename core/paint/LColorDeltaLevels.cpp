#include <algorithm>
#include <climits>
#include <new>

#include "core/mesh/LSmoothCache.h"
#include "core/paint/LColorDelta.h"
#include "core/paint/LevelValues.h"
#include "core/subdiv/LQuadSubdivision.h"
#include "core/subdiv/LSubdivMesh.h"

namespace VantrelSDK {

namespace {

/// Rounds that smooth what a level above has taken over.
constexpr int kSmoothRounds = 3;

/// The first values of an array in one of another size; without memory none.
template <class T>
bool Resize(ZeroedArray<T>& array, size_t count, bool zero) {
    ZeroedArray<T> resized(count);
    if (resized.size() != count) return false;
    if (!zero) std::copy_n(array.begin(), std::min(array.size(), count), resized.begin());
    array.swap(resized);
    return true;
}

/// Smooths the values of a level around marked vertices; the vertices from `first` on take it.
template <class T>
void SmoothMarked(const LMeshTopology& topology, const ZeroedArray<char>& marks,
                  ZeroedArray<T>& values, int first) {
    const size_t count = topology.GetNumVerts();
    LSmoothBuffers<T> cache(static_cast<int>(count), topology.Faces(),
                            std::span<const T>(values.data(), count));
    if (cache.GetNumVerts() != static_cast<int>(count)) return;
    cache.Iterate(kSmoothRounds, std::span<const char>(marks.data(), count), true);
    std::copy(cache.read() + first, cache.read() + count, values.begin() + first);
}

}  // namespace

/// What levels above will be compared with.
void LColorDelta::Remember() {
    const bool top = GetActiveLevel() == GetNumSubdivLevels() - 1;
    const size_t count = top ? 0 : GetNumVerts(-1);
    if (origs_.size() != count || zero_) origs_.Reset(count);
    if (!zero_ && origs_.size() == count) std::copy_n(paints_.begin(), count, origs_.begin());
    RememberStencils();
}

void LColorDelta::RememberStencils() {
    const bool top = GetActiveLevel() == GetNumSubdivLevels() - 1;
    const size_t count = top ? 0 : GetNumVerts(-1);
    if (stencilOrigs_.size() != count || zeroStencil_) stencilOrigs_.Reset(count);
    if (!zeroStencil_ && stencilOrigs_.size() == count)
        std::copy_n(stencils_.begin(), count, stencilOrigs_.begin());
}

/// Carries what changed on the active level since Remember up to the top, level by level: to the
/// paint that is there the mean of its parents' differences is added, a stencil becomes the mean of
/// its parents'. Without memory the levels above stay as they are.
LColorDelta::Changes LColorDelta::CarryUp() {
    const int active = GetActiveLevel(), levels = GetNumSubdivLevels(), count = GetNumVerts(-1);
    const size_t total = paints_.size();
    if (!levelchanged_ || active == levels - 1) return {};
    Changes changes;
    ZeroedArray<LAColor> differences(total);
    if (differences.size() != total || !changes.paint.Reset(total) ||
        !changes.stencil.Reset(total) || static_cast<int>(origs_.size()) != count ||
        static_cast<int>(stencilOrigs_.size()) != count)
        return {};
    for (int v = 0; v < count; ++v) {
        if (!(paints_[v] == origs_[v])) {
            differences[v] = paints_[v] - origs_[v];
            changes.paint[v] = 1;
            changes.hasPaint = true;
        }
        if (stencils_[v] != stencilOrigs_[v]) changes.stencil[v] = 1, changes.hasStencil = true;
    }
    if (!changes.hasPaint && !changes.hasStencil) return changes;
    for (int level = active + 1; level < levels; ++level) {
        const ISubdivLayer& layer = *subdivs_->GetLayer(level);
        const LLevelTables& tables = layer.rule()->tables();
        const LevelValues paint(tables, differences.data());
        const LevelValues stencil(tables, stencils_.data());
        for (int i = 0; i < paint.GetNumExtVerts(); ++i) {
            const int v = layer.GetFirstVert() + i;
            if (paint.HasMarkedParent(i, changes.paint.data())) {
                differences[v] = paint.GetExtVert(i);
                changes.paint[v] = !(differences[v] == LAColor());
                paints_[v] += differences[v];
                if (changes.paint[v]) paints_[v].ClampMinMax();
            }
            if (stencil.HasMarkedParent(i, changes.stencil.data())) {
                stencils_[v] = stencil.GetExtVert(i);
                changes.stencil[v] = 1;
            }
        }
    }
    return changes;
}

/// Smooths, on each level from `fromLevel` on, what changed; only vertices from `firstVert` on
/// take it.
void LColorDelta::SmoothChanged(const Changes& changes, int fromLevel, int firstVert) {
    for (int level = fromLevel; level < GetNumSubdivLevels(); ++level) {
        const LMeshTopology* topology = LevelTables(level);
        if (!topology) continue;
        if (changes.hasPaint) SmoothMarked(*topology, changes.paint, paints_, firstVert);
        if (changes.hasStencil) SmoothMarked(*topology, changes.stencil, stencils_, firstVert);
    }
}

bool LColorDelta::SetActiveSubdivLevel(int level) {
    if (GetNumSubdivLevels() == 1 || level < 0 || level >= GetNumSubdivLevels()) return false;
    FlushUndo();
    const Changes changes = CarryUp();
    const int former = GetActiveLevel();
    subdivs_->Activate(level);
    if (level > former) SmoothChanged(changes, former, 0);
    Remember();
    levelchanged_ = false;
    return true;
}

bool LColorDelta::UpdateUpperLayers() {
    const int active = GetActiveLevel();
    if (active == GetNumSubdivLevels() - 1) return true;
    const Changes changes = CarryUp();
    SmoothChanged(changes, active + 1, GetNumVerts(-1));
    if (levelchanged_) Remember();
    levelchanged_ = false;
    return true;
}

bool LColorDelta::SubdivideAll_Loop() {
    return AddLevel(false);
}

bool LColorDelta::SubdivideAll_Quad() {
    return AddLevel(true);
}

bool LColorDelta::AddLevel(bool quad) try {
    const ISubdivLayer* layer = subdivs_->GetTop();
    const auto top = layer ? layer->topology() : topology_;
    if (!top || !top->IsValid() || top->GetNumFaces() == 0) return false;
    // A mesh of the top level alone knows how to make the next.
    LSubdivMesh step(LMesh(top, std::vector<LPoint3>(top->GetNumVerts())));
    if (!(quad ? step.SubdivideAll_Quad(false, true) : step.SubdivideAll_Loop(false, true)))
        return false;
    const ISubdivLayer& made = *step.GetSubdivs().GetTop();
    const long long before = layer ? layer->GetNumTotalFaces() : nfaces_;
    if (before + made.GetNumFaces() > INT_MAX) return false;
    UpdateUpperLayers();
    FlushUndo();
    if (quad)
        subdivs_->AddEntireQuadLevel(made.GetNumExtVerts(), top->Coupling(), made.topology(),
                                     made.rule());
    else
        subdivs_->AddEntireLevel(made.GetNumExtVerts(), made.topology(), made.rule());
    return FillTop();
} catch (const std::bad_alloc&) {
    return false;
}

bool LColorDelta::SubdivideLike(const LSubdivMesh& geom) try {
    const ISubdivLayer* layer = geom.GetSubdivs().GetLayer(GetNumSubdivLevels());
    if (!layer || layer->GetFirstVert() != GetNumVerts(-2)) return false;
    UpdateUpperLayers();
    FlushUndo();
    subdivs_->AddClone(*layer);
    return FillTop();
} catch (const std::bad_alloc&) {
    return false;
}

/// Values of the newest level, between those of the vertices below. Without memory the level goes
/// again.
bool LColorDelta::FillTop() try {
    const ISubdivLayer& top = *subdivs_->GetTop();
    const int first = top.GetFirstVert(), count = top.GetNumVerts();
    if (!incoms_.empty()) {
        const LevelValues step(top.rule()->tables(), incoms_.data());
        std::vector<LColor> incoms;
        incoms.reserve(count);
        incoms = incoms_;
        for (int i = 0; i < step.GetNumExtVerts(); ++i) incoms.push_back(step.GetExtVert(i));
        incoms_ = std::move(incoms);
    }
    if (!Resize(paints_, count, zero_) || !Resize(stencils_, count, zeroStencil_))
        throw std::bad_alloc();
    if (!zero_) {
        const LevelValues step(top.rule()->tables(), paints_.data());
        for (int i = 0; first + i < count; ++i) paints_[first + i] = step.GetExtVert(i);
    }
    if (!zeroStencil_) {
        const LevelValues step(top.rule()->tables(), stencils_.data());
        for (int i = 0; first + i < count; ++i) stencils_[first + i] = step.GetExtVert(i);
    }
    levelchanged_ = false;
    Remember();
    return true;
} catch (const std::bad_alloc&) {
    const int below = subdivs_->GetTop()->GetFirstVert();
    subdivs_->DeleteTop();
    if (!incoms_.empty()) incoms_.resize(below);
    if (static_cast<int>(paints_.size()) != below) Resize(paints_, below, zero_);
    if (static_cast<int>(stencils_.size()) != below) Resize(stencils_, below, zeroStencil_);
    return false;
}

bool LColorDelta::DeleteTopLevelSubdiv() {
    const ISubdivLayer* top = subdivs_->GetTop();
    if (!top) return false;
    UpdateUpperLayers();
    FlushUndo();
    const int below = top->GetFirstVert();
    if (!Resize(paints_, below, zero_) || !Resize(stencils_, below, zeroStencil_)) return false;
    subdivs_->DeleteTop();
    if (!incoms_.empty()) {
        incoms_.resize(below);
        incoms_.shrink_to_fit();
    }
    Remember();
    return true;
}

}  // namespace VantrelSDK
