#pragma once

#include <maya/MObject.h>

namespace VantrelSDK {

/// Puts a KelmoNode2 in the place of a node of the older class, with its name, its settings, what
/// is connected to them, and its whole state, and deletes the old one. The new node; null, with the
/// error told, where it can't be made.
MObject ReplaceByND(const MObject& old);

}  // namespace VantrelSDK
