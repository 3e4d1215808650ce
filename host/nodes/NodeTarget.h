#pragma once

#include "core/sculpt/StrokeTarget.h"

namespace VantrelSDK {

class MLNode;

/// A node of the host for a stroke log: settings are its attributes of the same names, curves its
/// ramps.
class NodeTarget : public StrokeTarget {
  public:
    /// Borrowed.
    explicit NodeTarget(MLNode& node) : node_(node) {}

    LNode& node() override;
    std::optional<SettingValue> GetSetting(std::string_view name,
                                           std::optional<int> index) override;
    bool SetSetting(std::string_view name, const SettingValue& value, std::optional<int> index,
                    std::string& error) override;
    /// A curve that is not linear comes as its samples.
    Ramp GetFalloff(int curve) override;
    void SetFalloff(int curve, const Ramp& ramp) override;
    float GetPressure() override;
    void SetPressure(float pressure) override;
    int NumPolygons() override;
    int FirstFaceOf(int polygon) override;
    /// Weights of targets are tracks here: always false.
    bool Apply(const std::string& target, float weight, std::string& error) override;

  private:
    MLNode& node_;
};

}  // namespace VantrelSDK
