#include "tests/Paths.h"

namespace paths {

const char* const kSource = KELMO_SOURCE_DIR;
const char* const kProgram = KELMO_PROGRAM;
const char* const kModule = KELMO_MODULE;
const char* const kHostLibrary = MINIHOST_LIBRARY;
const char* const kSample = MINIHOST_SAMPLE;

}  // namespace paths
