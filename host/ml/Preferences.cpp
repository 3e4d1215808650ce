#include <maya/MGlobal.h>

#include "core/mesh/LOctTree.h"
#include "host/ml/Diagnostics.h"
#include "host/ml/MLNode.h"

namespace VantrelSDK {

namespace {

/// What the interface is asked by, what messages call it, and who takes the answer.
struct Preference {
    const char *procedure, *what;
    void (*take)(int value);
};

constexpr Preference kPreferences[] = {
    {"KelmoGetNumSmoothIterationsPref", "number of smooth iterations",
     [](int value) { LNode::prefNumSmoothIterations = value; }},
    {"KelmoGetNumSharpenIterationsPref", "number of sharpen iterations",
     [](int value) { LNode::prefNumSharpenIterations = value; }},
    {"KelmoGetTreeUpdateOnStrokeEndPref", "tree update on stroke end",
     [](int value) { LNode::prefTreeUpdateOnStrokeEnd = value; }},
    {"KelmoGetUseTabletPref", "use tablet", [](int value) { LNode::prefDoUseTablet = value; }},
    {"KMGetDoSampTexEdgesPref", "sample texture edges",
     [](int value) { LNode::prefDoSampleTexEdges = value; }},
    {"KelmoGetDumpDiagsPref", "dump diagnostics", SetPrefDoDumpDiags},
    {"KelmoGetOctTreeLeafSizePref", "octtree leaf size", LOctTree::SetLeafSizePref},
    {"KelmoGet2SidedFacesPref", "two sided faces",
     [](int value) { LOctTree::SetIgnoreBackFacePref(value == 0); }},
};

constexpr Preference kMorePreferences[] = {
    {"KelmoGetNfDisplayFallbackPref", "number of faces for display fallback",
     [](int value) { LNode::prefNumFacesDisplayFallback = value; }},
    {"KelmoGetDoPixPref", "do pixels", [](int value) { LNode::prefDoPix = value; }},
    {"KelmoGetDoSampPref", "sample maps", [](int value) { LNode::prefTrySampleMaps = value; }},
    {"KelmoGetMulithSmoothPref", "multithreaded smoothing",
     [](int value) { LNode::prefMutltiThreadSmooth = value; }},
    {"KelmoGetRehashMtlsPref", "rehash materials",
     [](int value) { LNode::prefRehashMtlBeforeRender = value; }},
};

void Read(const Preference& preference) {
    int value = 0;
    if (MGlobal::executeCommand(preference.procedure, value))
        preference.take(value);
    else
        MGlobal::displayError(MString("MLNode: can not read ") + preference.what + "\n");
}

}  // namespace

void MLNode::LoadPreferences() {
    for (const Preference& preference : kPreferences) Read(preference);
    prefSubdivisionMethod = 1;
    for (const Preference& preference : kMorePreferences) Read(preference);
}

}  // namespace VantrelSDK
