#pragma once

#include <maya/MString.h>

namespace VantrelSDK {

/// Tells OpenGL's version, renderer and limits as information; "OpenGL is not supported." while
/// there is no context.
void PrintGlInfo();

/// The same as a text, for `KelmoDiag -OpenGL`, with what is supported of what drawing needs. In
/// the active view's context.
MString getGlMetrics();

}  // namespace VantrelSDK
