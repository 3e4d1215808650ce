#pragma once

#include "minihost/command/CommandTable.h"

namespace kelmo {

/// Adds the procedures that the module calls by name, and leaves to whoever runs it: its
/// preferences, and what it tells the interface of. A preference is the optionVar of its
/// procedure's name without "Get" ("KelmoUseTabletPref"), where that is set.
void AddInterfaceProcedures(minihost::CommandTable& commands);

}  // namespace kelmo
