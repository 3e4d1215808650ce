#include "core/sculpt/HeadlessTarget.h"

#include "core/mesh/Triangulation.h"

namespace VantrelSDK {

bool HeadlessTarget::SetSetting(std::string_view name, const SettingValue& value,
                                std::optional<int> index, std::string& error) {
    const LNodeSettings former = node_.settings();
    const SettingResult result = node_.settings().Set(name, value, index);
    if (!result) {
        error = result.message;
        return false;
    }
    if (Follow(former, error)) return true;
    node_.settings() = former;
    return false;
}

/// Some settings change what is there.
bool HeadlessTarget::Follow(const LNodeSettings& former, std::string& error) {
    const LNodeSettings& now = node_.settings();
    const bool smoothed = now.objSmIt != former.objSmIt,
               neutral = now.neutralize != former.neutralize;
    const bool moved = now.UVchannel != former.UVchannel;
    if (node_.IsStroking() && (smoothed || neutral || moved)) {
        error = std::string(smoothed  ? "objSmIt"
                            : neutral ? "neutralize"
                                      : "UVchannel") +
                " can't change inside a stroke; release the stroke first";
        return false;
    }
    if (smoothed) {
        node_.ConvertSmoothing3(former.objSmIt, now.objSmIt);
        node_.UpdateBase();
    }
    if (now.blendTarg != former.blendTarg || now.blendSpace != former.blendSpace)
        node_.setBlendCache(now.blendTarg);
    if (moved) node_.MoveToChannel(former.UVchannel);
    if (now.affectVertColor != former.affectVertColor || now.affectStencil != former.affectStencil)
        node_.PrepareColours();
    return !neutral || node_.Neutralize(now.neutralize, error);
}

void HeadlessTarget::SetFalloff(int curve, const Ramp& ramp) {
    (curve == 1 ? node_.settings().falloff : node_.settings().falloff2) = ramp;
    node_.UpdateFalloffs();
}

int HeadlessTarget::FirstFaceOf(int polygon) {
    return VantrelSDK::FirstFaceOf(mesh_, polygon);
}

bool HeadlessTarget::Apply(const std::string& target, float weight, std::string&) {
    node_.weights().Set(target, weight);
    return node_.SetTime(node_.ltime(), -1);
}

}  // namespace VantrelSDK
