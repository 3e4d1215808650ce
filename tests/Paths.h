#pragma once

/// Where tests find what they need. Kept out of the definitions of the other sources: those are the
/// same in every checkout, and what was compiled of them is shared.
namespace paths {

/// The checkout.
extern const char* const kSource;
extern const char* const kProgram;
extern const char* const kModule;
/// The small host and its sample module.
extern const char* const kHostLibrary;
extern const char* const kSample;

}  // namespace paths
