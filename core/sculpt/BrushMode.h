#pragma once

namespace VantrelSDK {

class LNode;
struct StrokeStep;

/// One mode of the sculpt tool.
struct BrushMode {
    const char* name;
    /// What a press does for the mode; `atPress` is false when a modifier key brings the mode into
    /// a stroke that another mode began. Unless `force`, weights that are there are kept.
    void (*prepare)(StrokeStep& step, bool atPress, bool force);
    /// What a step does. True when the surface changed.
    bool (*step)(StrokeStep& step);
};

/// The mode with this number, 0 to 19; null where a number has nothing that moves geometry.
const BrushMode* FindBrushMode(int mode);

}  // namespace VantrelSDK
