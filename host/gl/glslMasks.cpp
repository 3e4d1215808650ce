#include "host/gl/glslMasks.h"

#include "host/gl/glslSources.h"

namespace VantrelSDK {

std::string glslNormalDotShader::VertexSource() const {
    return FacingVertex("dot(dir,N)");
}

std::string glslNormalDotShader::FragmentSource() const {
    return kFacingFragment;
}

bool glslNormalDotShader::setupUniformVariables() {
    Upload to(*this);
    to.Vector("dir", dir, "default - uniform variable 'dir' not found\n");
    return to.Done();
}

std::string glslNormalDotShaderInv::VertexSource() const {
    return FacingVertex("1.0 - dot(dir,N)");
}

std::string glslSaaoMaskShader::VertexSource() const {
    return kPlainVertex;
}

std::string glslSaaoMaskShader::FragmentSource() const {
    return std::string(kBlur8x8) + kOcclusionMaskFragment;
}

bool glslSaaoMaskShader::setupUniformVariables() {
    Upload to(*this);
    to.Float("viewWidth", static_cast<float>(viewWidth), "uniform variable 'viewWidth' not found.");
    to.Float("viewHeight", static_cast<float>(viewHeight),
             "uniform variable 'viewHeight' not found.");
    to.Int("ssaoTex", texUnit, "default - uniform variable 'ssaoTex' not found\n");
    return to.Done();
}

}  // namespace VantrelSDK
