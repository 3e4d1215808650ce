#pragma once

#include "maya/MTime.h"
#include "minihost/Host.h"
#include "minihost/scene/Document.h"

namespace minihost {

/// The scene as a file: the range of time, all nodes with what they hold that is not as it was when
/// they were made, and the connections. What is computed, and what a connection feeds, is left out.
/// The nodes stand in the order in which they came, parents before children, and children in their
/// order below a parent.
///
///     playback UNIT MIN MAX               the person's unit of time; ticks
///     node TYPE ID NAME                   a path for a node of the hierarchy
///     default TYPE ID NAME                the same for one that every scene has
///     set PLUG NUMBER...                  of the node before; a number for each leaf of the plug
///     set PLUG KIND WORDS...              data, see DataForm; "none" for no data
///     elements ARRAY i(INDICES)           elements that there are, rising
///     elements ARRAY i(INDICES) d(VALUES) with a number each
///     connect NODE PLUG NODE PLUG         source, destination
std::string WriteScene(Host& host, SceneForm form);

/// The names of MTime's units in scene files, at their numbers.
inline constexpr const char* kUnitNames[] = {"",     "hour", "min",  "sec",  "millisec", "game",
                                             "film", "pal",  "ntsc", "show", "palf",     "ntscf"};

}  // namespace minihost
