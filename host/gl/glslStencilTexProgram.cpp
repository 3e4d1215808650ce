#include "host/gl/glslStencilTexProgram.h"

#include <maya/MGlobal.h>

#include "host/gl/glslSources.h"

namespace VantrelSDK {

std::string glslStencilTexProgram::VertexSource() const {
    return kOverlayVertex;
}

std::string glslStencilTexProgram::FragmentSource() const {
    return kOverlayFragment;
}

/// No reload brings a texture that nobody has given.
bool glslStencilTexProgram::UseProgram() {
    if (texid != 0) return glslGenericProgram::UseProgram();
    MGlobal::displayError("texid is 0\n");
    return false;
}

bool glslStencilTexProgram::setupUniformVariables() {
    Upload to(*this);
    to.Int("stencilTex", 0, "uniform variable 'stencilTex' not found\n");
    to.Float("opacity", opacity, "uniform variable 'opacity' not found\n");
    to.Int("colored", colored, "uniform variable 'colored' not found\n");
    return to.Done();
}

}  // namespace VantrelSDK
