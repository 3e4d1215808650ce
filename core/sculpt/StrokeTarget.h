#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/sculpt/LNodeSettings.h"

namespace VantrelSDK {

class LNode;

/// A node as a stroke log knows it: with settings that have names, and polygons.
class StrokeTarget {
  public:
    virtual ~StrokeTarget() = default;

    virtual LNode& node() = 0;
    /// Nothing for a setting that the node does not have.
    virtual std::optional<SettingValue> GetSetting(std::string_view name,
                                                   std::optional<int> index) = 0;
    /// Sets one, with what follows from it. False, with the reason and nothing changed, for a value
    /// that it can't have. One that the node does not have counts as set.
    virtual bool SetSetting(std::string_view name, const SettingValue& value,
                            std::optional<int> index, std::string& error) = 0;
    /// Curve 1 or 2, as linear pieces.
    virtual Ramp GetFalloff(int curve) = 0;
    virtual void SetFalloff(int curve, const Ramp& ramp) = 0;
    /// The pen's pressure of the moment, 0 to 1.
    virtual float GetPressure() = 0;
    virtual void SetPressure(float pressure) = 0;
    /// Polygons of level 0, whose triangles are numbered through; of `polygon` up to their number.
    virtual int NumPolygons() = 0;
    virtual int FirstFaceOf(int polygon) = 0;
    /// Makes the neutral and all targets by their weights the work delta, one of them with a new
    /// weight. False with the reason.
    virtual bool Apply(const std::string& target, float weight, std::string& error) = 0;
};

}  // namespace VantrelSDK
