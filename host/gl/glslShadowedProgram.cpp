#include "host/gl/glslShadowedProgram.h"

#include "host/gl/glslSources.h"

namespace VantrelSDK {

std::string glslShadowedProgram::VertexSource() const {
    return kSurfaceVertex;
}

std::string glslShadowedProgram::FragmentSource() const {
    return kSurfaceHeader + ShadowFilters() + kSurfaceMain;
}

bool glslShadowedProgram::setupUniformVariables() {
    if (numLights == 0) return true;
    Upload to(*this);
    to.Vector("lightDir", lightDir[0], "uniform variable 'lightDir' not found\n");
    to.Float("filterSize", filterSize, "uniform variable 'filterSize' not found\n");
    to.Int("useShadow", useShadow, "uniform variable 'useShadow' not found\n");
    to.Int("useColor", useColor, "uniform variable 'useColor' not found\n");
    to.Int("useSpecular", useSpeculars, "uniform variable 'useSpecular' not found\n");
    to.Int("useDiffuse", useDiffuse, "uniform variable 'useDiffuse' not found\n");
    to.Int("mode", mode, "uniform variable 'mode' not found\n");
    to.Float("opac", opacity, "uniform variable 'opacity' not found\n");
    to.Int("useSelected", selected, "uniform variable 'useSelected' not found\n");
    to.Int("shadowTex", 0, "uniform variable 'shadowTex' not found\n");
    to.Int("useSSAO", useSSAO, "uniform variable 'useSSAO' not found.");
    to.Float("viewWidth", viewWidth, "uniform variable 'viewWidth' not found.");
    to.Float("viewHeight", viewHeight, "uniform variable 'viewHeight' not found.");
    to.Int("ssaoTex", 1, "uniform variable 'ssaoTex' not found.");
    to.Int("useStencil", useStencil, "uniform variable 'useStencil' not found\n");
    if (useStencil) to.Int("invStencil", invStencil, "uniform variable 'invStencil' not found\n");
    stencilLoc = to.Attribute("stencil", "attribute variable 'stencil' not found\n");
    to.Int("stencilTex", 2, "uniform variable 'stencilTex' not found\n");
    to.Int("useStencilTex", useStencilTex, "uniform variable 'useStencilTex' not found\n");
    if (useStencilTex)
        to.Float("stencilTexOpac", stencilTexOpac, "uniform variable 'stencilTexOpac' not found\n");
    return to.Done();
}

}  // namespace VantrelSDK
