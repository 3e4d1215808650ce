#pragma once

#include "maya/MStatus.h"
#include "maya/MTypes.h"
#include "minihost/graph/Messages.h"

namespace minihost {

/// Adds a listener for a module's function `code`, so that it goes when the module goes. 0 and a
/// failure for no function.
MCallbackId AddCallback(const Listeners::Topic& topic, const void* code,
                        Listeners::Callback callback, MStatus* status);

}  // namespace minihost
