#pragma once

#include <GL/gl.h>
#include <GL/glext.h>

namespace VantrelSDK {

// OpenGL beyond what every library of it exports. The pointers are null until
// InitGLFunctionPointers, and those that the driver lacks stay so: GLUse() says whether all are
// there.

#define GL_FUNCTION(type, name, missing) extern type name;
#include "host/gl/GLFunctions.def"
#undef GL_FUNCTION

/// Copies pixels between frame buffers; null where the driver does not, which is no failure.
extern PFNGLBLITFRAMEBUFFEREXTPROC glBlitFramebufferEXT;
/// Null where the driver chooses the places of attributes.
extern PFNGLBINDATTRIBLOCATIONPROC glBindAttribLocation;

/// Where an entry point is found by name; null for one that is missing.
using GLResolver = void* (*)(const char* name);
/// What InitGLFunctionPointers asks; null for the driver's own.
void SetGLResolver(GLResolver resolver);

/// Fetches all entry points; with a current context. A missing one is told on standard output.
/// False with one missing.
bool InitGLFunctionPointers();
/// The next drawing fetches them anew.
void FreeGLFunctionPointers();
bool GLInitialised();
/// All entry points are there.
bool GLUse();

/// Whether the driver has what the shaders are written in. Tells version, renderer and, as errors,
/// what is not supported.
bool CheckGlExtentions();
/// An extension by its whole name.
bool CheckGlExtension(const char* name);
/// Tells pending errors, numbered; nothing without one.
void PrintGlErrors();
void PrintGlExtensions();

/// What frame buffer is bound, and what its state is, for a person.
void checkFramebufferStatus();
void printFramebufferInfo();

}  // namespace VantrelSDK
