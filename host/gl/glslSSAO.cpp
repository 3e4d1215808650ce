#include "host/gl/glslSSAO.h"

#include "host/gl/glslSources.h"

namespace VantrelSDK {

std::string glslSSAOdepthShader::VertexSource() const {
    return kDepthVertex;
}

std::string glslSSAOdepthShader::FragmentSource() const {
    return kDepthFragment;
}

bool glslSSAOdepthShader::setupUniformVariables() {
    Upload to(*this);
    to.Float("far", zfar, "uniform variable 'far' not found.");
    to.Float("near", znear, "uniform variable 'near' not found.");
    return to.Done();
}

std::string glslSSAOshader::VertexSource() const {
    return kOcclusionVertex;
}

std::string glslSSAOshader::FragmentSource() const {
    return kOcclusionFragment;
}

bool glslSSAOshader::setupUniformVariables() {
    Upload to(*this);
    to.Float("rad", radius, "uniform variable 'rad' not found.");
    to.Int("samples", samples, "uniform variable 'samples' not found.");
    to.Int("normalMap", 1, "uniform variable 'normalMap' not found.");
    return to.Done();
}

}  // namespace VantrelSDK
