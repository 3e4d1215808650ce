#include "core/sculpt/BrushMode.h"

#include <iterator>

#include "core/sculpt/modes/Modes.h"

namespace VantrelSDK {

const BrushMode* FindBrushMode(int mode) {
    // 18 clones textures and moves nothing.
    static const BrushMode* const modes[] = {
        &kMoveMode,        &kRotateMode,       &kPullMode,       &kPushMode,
        &kInflateMode,     &kSharpenMode,      &kSmoothMode,     &kBlendMode,
        &kBrushPullMode,   &kBrushPushMode,    &kAttractMode,    &kRepelMode,
        &kSmoothBrushMode, &kSharpenBrushMode, &kBlendBrushMode, &kDragMode,
        &kFlattenMode,     &kRelaxMode,        nullptr,          &kEraseMode};
    return mode >= 0 && mode < static_cast<int>(std::size(modes)) ? modes[mode] : nullptr;
}

}  // namespace VantrelSDK
