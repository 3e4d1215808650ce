#pragma once

#include "core/io/LStrFile.h"

namespace VantrelSDK {

// The diagnostic log: lines with the clock's time and what the process has computed so far. All of
// it is the main thread's.

/// The log; null while nobody wants one. Who has a line for it asks first, so that a line costs
/// nothing then.
LStrFile* GetDiagFile();
/// Borrowed. Whoever opened the file takes it away before closing it.
void SetDiagFile(LStrFile* file);

/// Begins a log: the next ProfileDump counts from its own time. A null file is standard output,
/// here and below.
void ProfileStart(LStrFile* file);
/// A line with the clock's time, the processor's time since the last line and since the first, both
/// in seconds to the nanosecond, and a text.
void ProfileDump(const char* text, LStrFile* file);

}  // namespace VantrelSDK
