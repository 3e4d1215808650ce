#pragma once

#include <maya/MString.h>

namespace VantrelSDK {

/// What the lists of patterns name, one by one, and whether it can be read.
MString getPatternsReport();

}  // namespace VantrelSDK
