#include "host/gl/GLInfo.h"

#include <maya/M3dView.h>
#include <maya/MGlobal.h>

#include <vector>

#include "host/gl/GLFunctions.h"

namespace VantrelSDK {

namespace {

struct Limit {
    const char* label;
    GLenum which;
};
constexpr Limit kLimits[] = {
    {"GL_MAX_TEXTURE_UNITS\t\t\t", GL_MAX_TEXTURE_UNITS},
    {"GL_MAX_TEXTURE_IMAGE_UNITS\t", GL_MAX_TEXTURE_IMAGE_UNITS},
    {"GL_MAX_TEXTURE_SIZE\t\t\t", GL_MAX_TEXTURE_SIZE},
    {"GL_MAX_TEXTURE_COORDS\t\t\t", GL_MAX_TEXTURE_COORDS},
    {"GL_MAX_VARYING_FLOATS\t\t\t", GL_MAX_VARYING_FLOATS},
    {"GL_MAX_VERTEX_ATTRIBS\t\t\t", GL_MAX_VERTEX_ATTRIBS},
    {"GL_MAX_VERTEX_UNIFORM_COMPONENTS ", GL_MAX_VERTEX_UNIFORM_COMPONENTS},
    {"GL_MAX_FRAGMENT_UNIFORM_COMPONENTS ", GL_MAX_FRAGMENT_UNIFORM_COMPONENTS},
};
constexpr int kLargeTexture = 6000;

/// Version, renderer, limits; nothing without a context.
std::vector<MString> Metrics() {
    const auto* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    const auto* renderer = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    if (!version || !renderer) return {};
    std::vector<MString> lines{MString("GL_VERSION   ") + version,
                               MString("GL_RENDERER  ") + renderer};
    for (const Limit& limit : kLimits) {
        GLint value = 0;
        glGetIntegerv(limit.which, &value);
        lines.push_back(MString(limit.label) + value);
    }
    return lines;
}

/// Whether the driver would take one.
bool TakesLargeTextures() {
    glTexImage2D(GL_PROXY_TEXTURE_2D, 0, GL_RGBA, kLargeTexture, kLargeTexture, 0, GL_RGBA,
                 GL_UNSIGNED_BYTE, nullptr);
    GLint width = 0;
    glGetTexLevelParameteriv(GL_PROXY_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    return width == kLargeTexture;
}

}  // namespace

void PrintGlInfo() {
    const std::vector<MString> lines = Metrics();
    if (lines.empty()) MGlobal::displayInfo("OpenGL is not supported.");
    for (const MString& line : lines) MGlobal::displayInfo(line);
}

MString getGlMetrics() {
    M3dView view = M3dView::active3dView();
    if (view.beginGL() != MS::kSuccess) return "\nOpenGL is not supported.\n";
    const std::vector<MString> lines = Metrics();
    if (lines.empty()) return "\nOpenGL is not supported.\n";
    MString text = "\nOpenGL metrics:\n";
    for (const MString& line : lines) text += line + "\n";
    text += MString("\nLarge textures (of size like 6000x6000) are ") +
            (TakesLargeTextures() ? "" : "NOT ") + "supported.\n";
    for (const char* name :
         {"GL_ARB_shading_language_100", "GL_ARB_shader_objects", "GL_ARB_fragment_shader",
          "GL_ARB_vertex_shader", "GL_EXT_framebuffer_object"})
        text += MString(name) + (CheckGlExtension(name) ? "\n" : " - NOT SUPPORTED\n");
    view.endGL();
    return text;
}

}  // namespace VantrelSDK
