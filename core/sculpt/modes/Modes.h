#pragma once

#include "core/sculpt/BrushMode.h"

namespace VantrelSDK {

extern const BrushMode kMoveMode, kRotateMode, kPullMode, kPushMode, kInflateMode, kSharpenMode,
    kSmoothMode, kBlendMode, kBrushPullMode, kBrushPushMode, kAttractMode, kRepelMode,
    kSmoothBrushMode, kSharpenBrushMode, kBlendBrushMode, kDragMode, kFlattenMode, kRelaxMode,
    kEraseMode;

}  // namespace VantrelSDK
