#include "host/gl/GLFunctions.h"

#include <GL/glu.h>
#include <GL/glx.h>
#include <maya/MGlobal.h>

#include <cstdio>
#include <string>
#include <vector>

namespace VantrelSDK {

#define GL_FUNCTION(type, name, missing) type name = nullptr;
#include "host/gl/GLFunctions.def"
#undef GL_FUNCTION

PFNGLBLITFRAMEBUFFEREXTPROC glBlitFramebufferEXT = nullptr;
PFNGLBINDATTRIBLOCATIONPROC glBindAttribLocation = nullptr;

namespace {

bool initialised = false, useGL = false;

void* AskDriver(const char* name) {
    return reinterpret_cast<void*>(glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(name)));
}

GLResolver resolve = AskDriver;

void* Fetch(const char* name) {
    if (std::string(name) != "glAttachShader") return resolve(name);
    // The older name does the same.
    const char* found = "glAttachObjectARB";
    void* function = resolve(found);
    if (!function) function = resolve(found = "glAttachShader");
    if (function) std::printf("%s - OK\n", found);
    return function;
}

std::vector<std::string> ExtensionNames() {
    const auto* all = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    std::vector<std::string> names;
    for (const char* at = all ? all : ""; *at;) {
        const char* end = at;
        while (*end && *end != ' ') ++end;
        if (end != at) names.emplace_back(at, end);
        at = *end ? end + 1 : end;
    }
    return names;
}

struct FrameState {
    GLenum code;
    const char* text;
};
constexpr FrameState kIncomplete[] = {
    {GL_FRAMEBUFFER_INCOMPLETE_ATTACHMENT_EXT,
     "Framebuffer incomplete: Attachment is NOT complete."},
    {GL_FRAMEBUFFER_INCOMPLETE_MISSING_ATTACHMENT_EXT,
     "Framebuffer incomplete: No image is attached to FBO."},
    {GL_FRAMEBUFFER_INCOMPLETE_DIMENSIONS_EXT,
     "Framebuffer incomplete: Attached images have different dimensions."},
    {GL_FRAMEBUFFER_INCOMPLETE_FORMATS_EXT,
     "Framebuffer incomplete: Color attached images have different internal formats."},
    {GL_FRAMEBUFFER_INCOMPLETE_DRAW_BUFFER_EXT, "Framebuffer incomplete: Draw buffer."},
    {GL_FRAMEBUFFER_INCOMPLETE_READ_BUFFER_EXT, "Framebuffer incomplete: Read buffer."},
    {GL_FRAMEBUFFER_UNSUPPORTED_EXT, "Unsupported by FBO implementation."},
};

MString AttachmentText(GLenum place) {
    GLint kind = GL_NONE;
    glGetFramebufferAttachmentParameterivEXT(GL_FRAMEBUFFER_EXT, place,
                                             GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE_EXT, &kind);
    if (kind == GL_TEXTURE) return "GL_TEXTURE, ";
    return kind == GL_RENDERBUFFER_EXT ? "GL_RENDERBUFFER_EXT,  " : "";
}

}  // namespace

void SetGLResolver(GLResolver resolver) {
    resolve = resolver ? resolver : AskDriver;
}

bool InitGLFunctionPointers() {
    MGlobal::displayInfo("InitGLFunctionPointers");
    bool all = true;
#define GL_FUNCTION(type, name, missing)         \
    name = reinterpret_cast<type>(Fetch(#name)); \
    if (!name) {                                 \
        std::printf(missing);                    \
        std::fflush(stdout);                     \
        all = false;                             \
    }
#include "host/gl/GLFunctions.def"
#undef GL_FUNCTION
    glBlitFramebufferEXT =
        reinterpret_cast<PFNGLBLITFRAMEBUFFEREXTPROC>(resolve("glBlitFramebufferEXT"));
    glBindAttribLocation =
        reinterpret_cast<PFNGLBINDATTRIBLOCATIONPROC>(resolve("glBindAttribLocation"));
    initialised = true;
    return useGL = all;
}

void FreeGLFunctionPointers() {
    initialised = useGL = false;
}

bool GLInitialised() {
    return initialised;
}

bool GLUse() {
    return useGL;
}

bool CheckGlExtension(const char* name) {
    for (const std::string& known : ExtensionNames())
        if (known == name) return true;
    return false;
}

bool CheckGlExtentions() {
    const auto* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    const auto* renderer = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    if (!version || !renderer) {
        MGlobal::displayInfo("OpenGL is not supported.");
        return false;
    }
    MGlobal::displayInfo(MString("GL_VERSION   ") + version);
    MGlobal::displayInfo(MString("GL_RENDERER  ") + renderer);
    bool all = true;
    for (const char* name :
         {"GL_ARB_shading_language_100", "GL_ARB_shader_objects", "GL_ARB_fragment_shader",
          "GL_ARB_vertex_shader", "GL_EXT_framebuffer_object"}) {
        if (CheckGlExtension(name)) continue;
        MGlobal::displayError(MString(name) + " - NOT SUPPORTED");
        all = false;
    }
    return all;
}

void PrintGlErrors() {
    int number = 0;
    for (GLenum error = glGetError(); error != GL_NO_ERROR && number < 100; error = glGetError()) {
        if (number++ == 0) MGlobal::displayError("OpenGL errors:");
        const auto* text = reinterpret_cast<const char*>(gluErrorString(error));
        MGlobal::displayError(MString() + number + ": " + (text ? text : "unknown"));
    }
}

void PrintGlExtensions() {
    for (const std::string& name : ExtensionNames()) MGlobal::displayInfo(MString(name));
}

void checkFramebufferStatus() {
    const GLenum status = glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT);
    if (status == GL_FRAMEBUFFER_COMPLETE_EXT) return MGlobal::displayInfo("Framebuffer complete.");
    for (const FrameState& known : kIncomplete)
        if (known.code == status) return MGlobal::displayError(known.text);
    MGlobal::displayError("Unknow FBO error.");
}

void printFramebufferInfo() {
    MGlobal::displayInfo("FBO Status");
    checkFramebufferStatus();
    GLint places = 0;
    glGetIntegerv(GL_MAX_COLOR_ATTACHMENTS_EXT, &places);
    MGlobal::displayInfo(MString("Max Number of Color Buffer Attachment Points: ") + places);
    for (GLint i = 0; i < places; ++i) {
        const MString text = AttachmentText(GL_COLOR_ATTACHMENT0_EXT + static_cast<GLenum>(i));
        if (text.length() > 0) MGlobal::displayInfo(MString("Color Attachment ") + i + ": " + text);
    }
    MGlobal::displayInfo("Depth Attachment:" + AttachmentText(GL_DEPTH_ATTACHMENT_EXT));
    MGlobal::displayInfo("Stencil Attachment: " + AttachmentText(GL_STENCIL_ATTACHMENT_EXT));
}

}  // namespace VantrelSDK
