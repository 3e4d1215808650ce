#include <maya/MGlobal.h>

#include <algorithm>

#include "host/ml/InterfaceProcedures.h"
#include "host/tools/KelmoToolContext.h"
#include "host/tools/ToolLocators.h"

// What the brush is: its mode, its size, its strength.

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

}  // namespace

int KelmoToolContext::brushMode() const {
    return Plug(&N::m_moSculptMode).asInt();
}

void KelmoToolContext::setBrushMode(int mode) {
    MPlug plug = Plug(&N::m_moSculptMode);
    if (plug.isNull())
        return MGlobal::displayError("KelmoToolContext: can not find the sculptMode plug\n");
    SetBrushShape(brushLocator_, mode);
    SetBrushShape(brushLocator2_, mode);
    plug.setValue(mode);
    if (m_activeContext == this) SetGlobMode(mode);
    if (IsSculptTransformMode(mode))
        Put(&N::m_moLastSculptMode1, "lastSculptMode1", mode);
    else if (IsPaintTransformMode(mode))
        LeaveMush(mode);
    RunIfKnown("KelmoUpdateBrushPreview");
    updateCursor();
    if (M3dView::numberOf3dViews() > 0) M3dView::active3dView().refresh(false, false);
}

/// A paint mode is none of those that edit a stencil's shape.
void KelmoToolContext::LeaveMush(int mode) {
    Put(&N::m_moLastSculptMode2, "lastSculptMode2", mode);
    MPlug mush = Plug(&N::m_moPorjEditMush);
    if (!mush.asBool()) return;
    resetByMush = false;
    mush.setValue(false);
    resetByMush = true;
    RunIfKnown("rebuildKelmoBrushPatternLayout");
}

/// The element of an array that a mode has; null, with the reason told, without one.
MPlug KelmoToolContext::Element(N::Member attribute, const char* name, int index) const {
    const MLNode* at = node();
    const MPlug all = at ? at->plug(attribute) : MPlug();
    const auto fail = [](const MString& what) {
        MGlobal::displayError("KelmoNode: " + what);
        return MPlug();
    };
    if (all.isNull()) return fail(MString("null ") + name + " plug");
    if (all.numElements() == 0) return fail(MString(name) + " plug has 0 elements");
    if (index < 0) index = std::max(at->getTransformMode(false), 0);
    MStatus status;
    const MPlug element = all.elementByLogicalIndex(static_cast<unsigned>(index), &status);
    return status ? element : fail("can not get elementByLogicalIndex");
}

void KelmoToolContext::setToolSize(double size, int index) {
    MPlug element = Element(&N::m_moToolSize, "toolSize", index);
    if (!element.isNull()) element.setValue(size);
}

double KelmoToolContext::getToolSize(int index) const {
    const MPlug element = Element(&N::m_moToolSize, "toolSize", index);
    return element.isNull() ? 0 : element.asDouble();
}

/// The strength of what the brush affects, at the tool's own mode.
MPlug KelmoToolContext::PressurePlug() const {
    const auto affects = [this](N::Member attribute) { return Plug(attribute).asBool(); };
    const int mode = std::max(brushMode(), 0);
    if (affects(&N::m_moAffectVertColor) || affects(&N::m_moAffectStencil))
        return Element(&N::m_moVertColorStrength, "vertColorStrength", mode);
    if (affects(&N::m_moAffectTexture) || affects(&N::m_moAffectTexStencil))
        return Element(&N::m_moTextureStrength, "textureStrength", mode);
    return Element(&N::m_moPaintPressMult, "paintPressMult", mode);
}

double KelmoToolContext::getPaintPressure() const {
    const MPlug element = PressurePlug();
    return element.isNull() ? 0 : element.asDouble();
}

void KelmoToolContext::setPaintPressure(double strength) {
    MPlug element = PressurePlug();
    if (!element.isNull()) element.setValue(strength);
}

void KelmoToolContext::setResizeHotKeyPressed(bool pressed) {
    resizeKey_ = pressed;
    SetVisibility2(brushLocator_, pressed);
}

}  // namespace VantrelSDK
