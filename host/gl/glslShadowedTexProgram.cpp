#include "host/gl/glslShadowedTexProgram.h"

namespace VantrelSDK {

void glslShadowedTexProgram::FillOwn(Upload& to) const {
    to.Float("texopac", texopac, "uniform variable 'texopac' not found\n");
    to.Int("tex", kUnit, "uniform variable 'tex' not found\n");
}

}  // namespace VantrelSDK
