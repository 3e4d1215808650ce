#pragma once

#include <algorithm>
#include <vector>

namespace VantrelSDK {

/// A falloff curve as a table of samples with linear interpolation between them.
///
/// Sample i lies at i * dt of the way from the centre to the rim, with dt = 1 / count, so the last
/// sample is one step short of the rim.
class LFalloffCache {
  public:
    /// `count` samples, at least 2.
    explicit LFalloffCache(unsigned count)
        : values(count < 2 ? 2 : count), locations(values.size()), dt(1.0f / values.size()) {}
    virtual ~LFalloffCache() = default;

    /// Samples the curve anew.
    virtual void Compute() = 0;

    /// The curve at distance d (0 or more) from the centre of a brush. 0 beyond the radius.
    float Value(float d, float radius) const {
        const int n = static_cast<int>(values.size()) - 1;
        if (d == 0) return values[0];
        if (d == radius) return values[n];
        const float x = d / radius;
        if (!(x >= 0 && x <= 1)) return 0;
        const int k = static_cast<int>(n * x);
        if (k >= n) return values[n];
        // The intervals are counted as n, the samples lie n + 1 to the radius: towards the rim this
        // goes on past values[k + 1] along the same line.
        return values[k] + (values[k + 1] - values[k]) * (x - locations[k]) / dt;
    }

    /// Where the samples lie, from 0 in the centre to below 1, and their values.
    const std::vector<float>& Locations() const { return locations; }
    const std::vector<float>& Values() const { return values; }

  protected:
    friend class FalloffSampler;

    std::vector<float> values, locations;
    float dt;
};

/// A curve made ready for many vertices of one brush: the value of LFalloffCache::Value but for the
/// last bit, with the divisions done once.
class FalloffSampler {
  public:
    /// The curve is borrowed and not null.
    FalloffSampler(const LFalloffCache& curve, float radius)
        : values_(curve.values.data()),
          locations_(curve.locations.data()),
          n_(static_cast<int>(curve.values.size()) - 1),
          radius_(radius),
          perRadius_(1 / radius),
          perStep_(1 / curve.dt),
          falls_(std::is_sorted(curve.values.rbegin(), curve.values.rend())) {}

    float operator()(float d) const {
        // Comparisons that a distance which is not a number fails.
        if (!(d < radius_)) return d == radius_ ? values_[n_] : 0;
        if (d == 0) return values_[0];
        const float x = d * perRadius_;
        if (!(x < 1)) return values_[n_];
        const int k = static_cast<int>(n_ * x);
        return values_[k] + (values_[k + 1] - values_[k]) * ((x - locations_[k]) * perStep_);
    }
    /// The curve never rises: the nearest of several distances has the greatest value.
    bool Falls() const { return falls_; }

  private:
    const float *values_, *locations_;
    int n_;
    float radius_, perRadius_, perStep_;
    bool falls_;
};

/// The linear curve as samples: `max` in the centre, `min` at the rim.
class LinearFalloff : public LFalloffCache {
  public:
    LinearFalloff() : LFalloffCache(40) { Compute(); }
    void Set(float min, float max) {
        if (min == min_ && max == max_) return;
        min_ = min;
        max_ = max;
        Compute();
    }
    void Compute() override {
        for (size_t i = 0; i < values.size(); ++i) {
            locations[i] = i * dt;
            values[i] = (1 - locations[i]) * (max_ - min_) + min_;
        }
    }

  private:
    float min_ = 0, max_ = 1;
};

}  // namespace VantrelSDK
