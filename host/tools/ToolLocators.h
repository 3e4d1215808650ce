#pragma once

#include <maya/MDagModifier.h>
#include <maya/MObjectHandle.h>

namespace VantrelSDK {

// The tool's locators, by the transforms above them. No scene is saved with them.

/// One that draws nothing yet; null where it can't be made.
MObject CreateToolLocator(MDagModifier& edits);
/// Cuts what it feeds and deletes it; nothing where there is none.
bool DeleteToolLocator(MDagModifier& edits, const MObjectHandle& transform);

/// Both do nothing where there is no locator.
void SetVisibility2(const MObjectHandle& transform, bool on);
/// The outline that goes with a sculpt mode.
void SetBrushShape(const MObjectHandle& transform, int mode);
/// Whether a mode's brush lies on the surface.
constexpr bool LiesOnSurface(int mode) {
    return mode >= 2 && mode <= 4;
}

}  // namespace VantrelSDK
