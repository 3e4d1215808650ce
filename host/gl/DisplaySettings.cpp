#include "host/gl/DisplaySettings.h"

#include <algorithm>

#include "core/paint/LPattern.h"
#include "host/ml/MLNode.h"

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

/// The element of the paint channel that is on; of several the last decides.
bool ForChannel(const MPlug& array, const DisplaySettings& settings) {
    bool on = false;
    const bool channels[] = {settings.affectGeometry, settings.affectColor, settings.affectStencil};
    for (unsigned i = 0; i < 3; ++i)
        if (channels[i] && (i == 0 || array.numElements() > i))
            on = array.elementByLogicalIndex(i).asBool();
    return on;
}

}  // namespace

DisplaySettings DisplaySettings::Of(const MLNode& node) {
    const auto on = [&](N::Member attribute) {
        const MPlug plug = node.plug(attribute);
        return !plug.isNull() && plug.asBool();
    };
    const auto whole = [&](N::Member attribute) { return node.plug(attribute).asInt(); };
    DisplaySettings s;
    s.mode = whole(&N::m_moDisplayMode);
    s.shaders = on(&N::m_moUseShaders);
    s.speculars = on(&N::m_moUseSpecular);
    s.diffuse = on(&N::m_moUseDiffuse);
    s.cullBackface = on(&N::m_moCullBackface);
    s.opacity = node.plug(&N::m_moObjectOpacity).asFloat();
    s.affectGeometry = on(&N::m_moAffectGeometry);
    s.affectColor = on(&N::m_moAffectVertColor);
    s.affectStencil = on(&N::m_moAffectStencil);
    s.useStencil = on(&N::m_moUseStencil);
    s.invertStencil = on(&N::m_moInvertStencil);
    s.affectTexture = node.getAffectTexture(true);
    s.affectTexStencil = node.getAffectTexStencil(true);
    s.textureOpacity = node.plug(&N::m_moTextureOpac).asFloat();
    s.shadow = ForChannel(node.plug(&N::m_moUseShadow), s);
    s.ssao = ForChannel(node.plug(&N::m_moUseSSAO), s);
    s.shadowFilter = whole(&N::m_moShadowFilter);
    s.shadowAzm = whole(&N::m_moShadowAzm);
    s.shadowAlt = whole(&N::m_moShadowAlt);
    s.ssaoRadius = node.plug(&N::m_moSSAOradius).asFloat();
    // A shader that taps for minutes stops the machine.
    s.ssaoSamples = std::clamp(whole(&N::m_moSSAOsamples), 0, 128);
    if (node.getPatternMode() == 2) s.pattern = node.GetActivePattern();
    s.patternRevision = s.pattern ? s.pattern->revision() : 0;
    s.patternUVchannel = node.getPatternUVchannel();
    s.patternOpacity = node.getPatternUVopacity();
    s.wrapUVs = on(&N::m_moWrapUVs);
    s.underNormals = on(&N::m_moUnderNorm);
    s.underTangents = on(&N::m_moUnderTangs);
    s.underVectors = on(&N::m_moUnderVect);
    s.underSkin = on(&N::m_moUnderSkin);
    s.underSkinSolid = on(&N::m_moUnderSkinSolid);
    s.mask.active = node.GetMask() ? node.getActiveMask() : -1;
    s.mask.ceiling = node.plug(&N::m_moDynMaksCeiling).asFloat();
    s.mask.gamma = node.plug(&N::m_moDynMaksGamma).asFloat();
    s.mask.altitude = whole(&N::m_moDynMaskAlt);
    s.mask.azimuth = whole(&N::m_moDynMaskAzm);
    return s;
}

}  // namespace VantrelSDK
