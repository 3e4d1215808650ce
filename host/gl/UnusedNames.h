#pragma once

namespace VantrelSDK {

/// Names of OpenGL's that their owners have let go of, which may be done without a context.
/// Freed with one, by FreeUnusedNames. 0 is none.
void LetGoOfTexture(unsigned name);
void LetGoOfFrame(unsigned frame, unsigned renderBuffer);
void LetGoOfRenderBuffer(unsigned name);
void LetGoOfList(unsigned name);
void FreeUnusedNames();

}  // namespace VantrelSDK
