#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "core/math/LPoint3.h"
#include "core/subdiv/LSubdivCollection.h"

namespace VantrelSDK {

class LBlindData;
class LSubdivMesh;

/// What it takes to redo the step to a level without any topology work.
class ILTopoCache {
  public:
    virtual ~ILTopoCache() = default;

    /// The cache as a record; `verts`, by absolute number, are those of the level below, null for
    /// zeros: a reader of old needs their place.
    virtual int WriteTo(LBlindData* stream, const LPoint3* verts) const = 0;
};

/// The tables of a step to a quad level: how the faces below were paired, the new level's faces,
/// how its vertices follow, and the faces below. All null when there was no step.
struct LQuadStep {
    std::shared_ptr<const LTriCoupling> coupling;
    std::shared_ptr<const LMeshTopology> topology;
    std::shared_ptr<const LLevelRule> rule;
    std::shared_ptr<const LMeshTopology> below;
    /// The absolute number of the new level's first face.
    int totalfaces = 0;
};

/// The cache of a step to a quad level. The tables are those of the level that it was filled by,
/// shared with it.
class LQuadLevelTopoCache : public ILTopoCache {
  public:
    LQuadLevelTopoCache(int level, bool smooth, bool protectopen)
        : level_(level), smooth_(smooth), protectopen_(protectopen) {}

    /// The level that the step leads to, and how it was made.
    int GetLevel() const { return level_; }
    bool GetSmooth() const { return smooth_; }
    bool GetProtectOpen() const { return protectopen_; }

    const LQuadStep& GetStep() const { return step_; }
    void SetStep(LQuadStep step) { step_ = std::move(step); }

    /// Barycentrics of the level's vertices; null when the mesh kept none.
    const std::shared_ptr<const std::vector<LPoint3>>& GetBarys() const { return barys_; }
    void SetBarys(std::shared_ptr<const std::vector<LPoint3>> barys) { barys_ = std::move(barys); }
    /// Zero past the end.
    LPoint3 GetBary(int i) const {
        return barys_ && static_cast<size_t>(i) < barys_->size() ? (*barys_)[i] : LPoint3::Zero;
    }
    int WriteTo(LBlindData* stream, const LPoint3* verts) const override;

  private:
    int level_;
    bool smooth_, protectopen_;
    LQuadStep step_;
    std::shared_ptr<const std::vector<LPoint3>> barys_;
};

/// The caches of an object, one per level above 0; null for a triangle level.
class LTopoCaches {
  public:
    void AddTop(std::unique_ptr<ILTopoCache> cache) { caches_.push_back(std::move(cache)); }
    void DelTop() {
        if (!caches_.empty()) caches_.pop_back();
    }
    ILTopoCache* GetTop() const { return caches_.empty() ? nullptr : caches_.back().get(); }
    /// Null out of range.
    ILTopoCache* Get(int i) const { return i >= 0 && i < GetSize() ? caches_[i].get() : nullptr; }
    int GetSize() const { return static_cast<int>(caches_.size()); }

    /// The caches as a record; see ILTopoCache for `verts`. Those that are read share the tables of
    /// the levels of `geom`, which they must belong to and which learn from them how they were
    /// made. A failed reading leaves the caches as they were.
    int WriteTo(LBlindData* stream, const LPoint3* verts) const;
    int ReadFrom(LBlindData* stream, LSubdivMesh& geom);

  private:
    std::vector<std::unique_ptr<ILTopoCache>> caches_;
};

}  // namespace VantrelSDK
