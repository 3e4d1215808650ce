#pragma once

#include <maya/MString.h>

namespace VantrelSDK {

/// Opens the log, empty, in the host's folder for temporary files, and says where. Without such a
/// folder, or where it can't be written, there is no log.
void OpenDiagFile();
void CloseDiagFile();
/// Turns the log on or off, as the preference says.
void SetPrefDoDumpDiags(int value);
/// A line in the log, when there is one.
void Log(const MString& text);

/// The folder, with a "/" at its end, of a file that comes with the module: where the module is
/// installed, or with `check`, and where the file is not there, the first one of those that the
/// environment's XBMLANGPATH names. Without `check` or a name the former. Empty, with the error
/// told, for a file that is nowhere.
MString GetPatternsPath(const MString& name, bool check);
/// The same with `check`, but telling nobody.
MString FindPatternsPath(const MString& name);
bool IsFilePresent(const MString& path);

}  // namespace VantrelSDK
