#pragma once

#include "core/io/PolyMesh.h"
#include "core/sculpt/LHeadlessNode.h"
#include "core/sculpt/StrokeTarget.h"

namespace VantrelSDK {

/// A headless node and the mesh that it has loaded, for a stroke log.
class HeadlessTarget : public StrokeTarget {
  public:
    /// Both are borrowed.
    HeadlessTarget(LHeadlessNode& node, const PolyMesh& mesh) : node_(node), mesh_(mesh) {}

    LNode& node() override { return node_; }
    std::optional<SettingValue> GetSetting(std::string_view name,
                                           std::optional<int> index) override {
        return node_.settings().Get(name, index);
    }
    bool SetSetting(std::string_view name, const SettingValue& value, std::optional<int> index,
                    std::string& error) override;
    Ramp GetFalloff(int curve) override {
        return curve == 1 ? node_.settings().falloff : node_.settings().falloff2;
    }
    void SetFalloff(int curve, const Ramp& ramp) override;
    float GetPressure() override { return node_.penPressure(); }
    void SetPressure(float pressure) override { node_.SetPenPressure(pressure); }
    int NumPolygons() override { return mesh_.NumPolygons(); }
    int FirstFaceOf(int polygon) override;
    bool Apply(const std::string& target, float weight, std::string& error) override;

  private:
    bool Follow(const LNodeSettings& former, std::string& error);

    LHeadlessNode& node_;
    const PolyMesh& mesh_;
};

}  // namespace VantrelSDK
