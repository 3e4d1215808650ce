#include "host/tools/ToolFlags.h"

#include <maya/MGlobal.h>
#include <maya/MPxCommand.h>

#include "host/commands/NodeProtocol.h"
#include "host/nodes/Finders.h"
#include "host/tools/ToolFlagActions.h"

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

constexpr auto kBoolean = MSyntax::kBoolean;
constexpr auto kLong = MSyntax::kLong;
constexpr auto kUnsigned = MSyntax::kUnsigned;
constexpr auto kDouble = MSyntax::kDouble;
constexpr auto kString = MSyntax::kString;

constexpr ToolFlag kFlags[] = {
    // What it affects
    {"avg", "affectgeometry", kBoolean, &N::m_moAffectGeometry},
    {"avc", "affectvertcolor", kBoolean, &N::m_moAffectVertColor},
    {"avs", "affectstencil", kBoolean, &N::m_moAffectStencil},
    {"avt", "affecttexture", kBoolean, &N::m_moAffectTexture},
    {"ats", "affecttexsten", kBoolean, &N::m_moAffectTexStencil},
    {"ste", "usestencil", kBoolean, &N::m_moUseStencil},
    {"ch", "channel", kUnsigned, &N::m_moTexChannel},
    // The brush
    {.brief = "bm", .name = "brushMode", .type = kUnsigned, .edit = EditMode, .query = TellMode},
    {.brief = "is", .name = "iconSize", .type = kDouble, .edit = EditSize, .query = TellSize},
    {.brief = "is2",
     .name = "iconSize2",
     .type = kDouble,
     .edit = EditPaintSize,
     .query = TellPaintSize},
    {.brief = "ppr",
     .name = "paintPressure",
     .type = kDouble,
     .edit = EditPressure,
     .query = TellPressure},
    {.brief = "rt",
     .name = "resizeTool",
     .type = kBoolean,
     .edit = EditResizing,
     .query = TellResizing},
    {"uf", "useFalloff", kBoolean, &N::m_moUseFalloff},
    {"uf2", "useFalloff2", kBoolean, &N::m_moUseFalloff2},
    {.brief = "ff",
     .name = "falloff",
     .type = kString,
     .edit = EditRamp<&N::m_moFalloff>,
     .query = TellRamp<&N::m_moFalloff>},
    {.brief = "ff2",
     .name = "falloff2",
     .type = kString,
     .edit = EditRamp<&N::m_moFalloff2>,
     .query = TellRamp<&N::m_moFalloff2>},
    {"acc", "accumulate", kBoolean, &N::m_moAccumulate},
    {"ppm", "pushPullMode", kUnsigned, &N::m_moPushPullMode},
    {"qfn", "quickFlatten", kBoolean, &N::m_moQuickFlatten},
    {"sym", "symmetry", kUnsigned, &N::m_moSymmetry},
    {"sys", "symmetrySnap", kBoolean, &N::m_moDoSymmetrySnapping},
    {"syr", "symmetrySnapRadius", kDouble, &N::m_moSymmetrySnapRadius},
    {"bt", "blendtarg", kUnsigned, &N::m_moBlendTarg},
    {"bs", "blendspace", kUnsigned, &N::m_moBlendSpace},
    {.brief = "im", .name = "isMulti", .query = TellIsMulti},
    {"bi", "brushImage"},
    // Vertex colours and stencils
    {.brief = "vc", .name = "vertexcolor", .type = kDouble, .edit = EditColor, .query = TellColor},
    {"vcr", "vertexcolor_r", kDouble, &N::m_moVertexPaintColor, 0},
    {"vcg", "vertexcolor_g", kDouble, &N::m_moVertexPaintColor, 1},
    {"vcb", "vertexcolor_b", kDouble, &N::m_moVertexPaintColor, 2},
    {.brief = "cvc", .name = "clearvertcolor", .edit = ClearColor},
    {.brief = "fvc", .name = "fillvertcolor", .edit = FillColor},
    {.brief = "cda", .name = "cleardelta", .runs = 106},
    {.brief = "ida", .name = "invertdelta", .runs = 107},
    {.brief = "fda", .name = "filldelta", .runs = 108},
    {.brief = "c2s", .name = "colorToStencil", .runs = 109},
    {.brief = "s2c", .name = "stencilToColor", .runs = 110},
    {"ivc", "imporvertcolor", kString},
    // Selection and hiding
    {.brief = "sn", .name = "selectNone", .runs = 116},
    {.brief = "es", .name = "expandSel", .runs = 117},
    {.brief = "re", .name = "reduceSel", .runs = 118},
    {.brief = "hs", .name = "hideSelected", .runs = 119},
    {.brief = "sh", .name = "showHidden", .runs = 120},
    {.brief = "ih", .name = "invertHidden", .runs = 121},
    // Stored shapes
    {.brief = "nt", .name = "numtargs", .type = kUnsigned, .asks = 19},
    {"np", "numposes", kUnsigned},
    {"nm", "nummix", kUnsigned},
    {.brief = "ni",
     .name = "nameidx",
     .type = kUnsigned,
     .edit = EditNameIndex,
     .query = TellNameIndex},
    {.brief = "tn",
     .name = "targname",
     .type = kString,
     .edit = EditTargetName,
     .query = TellTargetName},
    {"pn", "posename", kString},
    {"mn", "mixname", kString},
    // Display
    {"dim", "displayMode", kUnsigned, &N::m_moDisplayMode},
    {"uwn", "underNorms", kBoolean, &N::m_moUnderNorm},
    {"uwt", "underTangs", kBoolean, &N::m_moUnderTangs},
    {"uws", "underSkin", kBoolean, &N::m_moUnderSkin},
    {"uvd", "underSkinSolid", kBoolean, &N::m_moUnderSkinSolid},
    {"uwv", "underVect", kBoolean, &N::m_moUnderVect},
    {"gls", "useShaders", kBoolean, &N::m_moUseShaders},
    {.brief = "shd",
     .name = "useShadow",
     .type = kBoolean,
     .edit = EditChannel<&N::m_moUseShadow>,
     .query = TellChannel<&N::m_moUseShadow>},
    {.brief = "us",
     .name = "useSSAO",
     .type = kBoolean,
     .edit = EditChannel<&N::m_moUseSSAO>,
     .query = TellChannel<&N::m_moUseSSAO>},
    {.brief = "sok", .name = "shadowOK", .query = TellShadowOK},
    {.brief = "ook", .name = "ssaoOK", .query = TellSSAOOK},
    {"shf", "shadowFilter", kUnsigned, &N::m_moShadowFilter},
    {"shz", "shadowAzm", kLong, &N::m_moShadowAzm},
    {"shl", "shadowAlt", kLong, &N::m_moShadowAlt},
    {"sr", "SSAOrad", kDouble, &N::m_moSSAOradius},
    {"sa", "SSAOsamples", kUnsigned, &N::m_moSSAOsamples},
    {"spe", "useSpeculars", kBoolean, &N::m_moUseSpecular},
    {"sps", "specularStren", kDouble, &N::m_moSpecularStren},
    {"dif", "useDiffuse", kBoolean, &N::m_moUseDiffuse},
    {"cbf", "cullBackface", kBoolean, &N::m_moCullBackface},
    {"oo", "objOpacity", kDouble, &N::m_moObjectOpacity},
    {"txs", "showTextures", kBoolean, &N::m_moShowTextures},
    {"txo", "textureOpacity", kDouble, &N::m_moTextureOpac},
    // UV sets
    {.brief = "nuv", .name = "numUVSets", .asks = 122},
    {.brief = "uvn",
     .name = "uvSetName",
     .type = kUnsigned,
     .asks = 123,
     .answersText = true,
     .asksWith = true},
    // Patterns
    {.brief = "npt", .name = "numpatterns", .type = kUnsigned, .asks = 77},
    {.brief = "apt", .name = "addpattern", .runs = 78},
    {.brief = "dpt", .name = "delpattern", .type = kUnsigned, .runs = 79},
    {.brief = "spt", .name = "selpattern", .type = kUnsigned, .runs = 81, .asks = 83},
    {.brief = "hpt", .name = "hitpattern", .type = kUnsigned, .runs = 82},
    {.brief = "gpn",
     .name = "getpatternname",
     .type = kUnsigned,
     .asks = 84,
     .answersText = true,
     .asksWith = true},
    {.brief = "spn", .name = "setpatternname", .type = kUnsigned, .runs = 85},
    {.brief = "lpt", .name = "loadpattern", .type = kUnsigned, .runs = 80},
    {.brief = "psn",
     .name = "patternswatchname",
     .type = kUnsigned,
     .asks = 87,
     .answersText = true,
     .asksWith = true},
    {.brief = "psw", .name = "patternswatch", .type = kLong, .runs = 88},
    {"pmd", "patternMode", kUnsigned, &N::m_moPatternMode},
    {"puv", "patternUVchannel", kUnsigned, &N::m_moPatternUVchannel},
    {"pso", "uvsetPatternOpac", kDouble, &N::m_moUvsetpatternOpac},
    {"prr", "patternRndRotation", kBoolean, &N::m_moRandPatternRotation},
    {"pro", "patternRndOffset", kBoolean, &N::m_moRandPatternOffset},
    {"prs", "patternRndScale", kBoolean, &N::m_moRandPatternScale},
    {"par", "patternMaxRotation", kUnsigned, &N::m_moMaxPatternRotation},
    {"pao", "patternMaxOffset", kDouble, &N::m_moMaxPatternOffset},
    {"pis", "patternMinScale", kDouble, &N::m_moMinPatternScale},
    {"pas", "patternMaxScale", kDouble, &N::m_moMaxPatternScale},
    {"p2m", "pattern2Motion", kBoolean, &N::m_moAlignToMotion},
    {"pch", "patternChainStamps", kBoolean, &N::m_moUseChainPatterns},
    {"csa", "colorAsAlpha", kBoolean, &N::m_moColorAsAlpha},
    // Patterns that are projected
    {.brief = "ts",
     .name = "trackStencil",
     .type = kBoolean,
     .edit = EditField<&KelmoToolContext::trackStencil>,
     .query = TellField<&KelmoToolContext::trackStencil>},
    {.brief = "rs",
     .name = "rotateStencil",
     .type = kBoolean,
     .edit = EditField<&KelmoToolContext::rotateStencil>,
     .query = TellField<&KelmoToolContext::rotateStencil>},
    {.brief = "ss",
     .name = "resizeStencil",
     .type = kBoolean,
     .edit = EditField<&KelmoToolContext::resizeStencil>,
     .query = TellField<&KelmoToolContext::resizeStencil>},
    {.brief = "os",
     .name = "reopacStencil",
     .type = kBoolean,
     .edit = EditField<&KelmoToolContext::reopacStencil>,
     .query = TellField<&KelmoToolContext::reopacStencil>},
    {"prc", "projPatternConstrain", kBoolean, &N::m_moProjectiveConstrain},
    {"pem", "projEditMush", kBoolean, &N::m_moPorjEditMush},
    {"prf", "projPatternTilingFit", kBoolean, &N::m_moProjectiveTilingFit},
    {"prw", "projPatternWidht", kDouble, &N::m_moProjectiveSize, 0},
    {"prh", "projPatternHeight", kDouble, &N::m_moProjectiveSize, 1},
    {"prp", "projPatternOpac", kDouble, &N::m_moProjectiveOpac},
    {"prt", "projPatternRot", kLong, &N::m_moProjectiveRot},
    {"pru", "projPatternUTiling", kLong, &N::m_moProjectiveTiling, 0},
    {"prv", "projPatternVTiling", kLong, &N::m_moProjectiveTiling, 1},
    {"pcm", "projClearMush"},
    // Reference images
    {"ric", "refImgConstrain", kBoolean, &N::m_moRefimageConstrain},
    {"riw", "refImgWidht", kDouble, &N::m_moRefimageSize, 0},
    {"rih", "refImgHeight", kDouble, &N::m_moRefimageSize, 1},
    {"rio", "refImgOpac", kDouble, &N::m_moRefimageOpac},
    {"rir", "refImgRot", kLong, &N::m_moRefimageRot},
    {"nri", "numRefImgs"},
    {.brief = "rie", .name = "refImgEmpty", .type = kUnsigned, .asksWith = true},
    {"rii", "refImgSwatch", kUnsigned},
    {.brief = "ris", .name = "refImgSwatchFile", .type = kUnsigned, .asksWith = true},
    {"ril", "loadRefImg", kUnsigned},
    {"rit", "refImgHit", kLong},
    // Baking
    {"btw", "bakeTexWidth", kUnsigned, &N::m_moBakeTexSize, 0},
    {"bth", "bakeTexHeight", kUnsigned, &N::m_moBakeTexSize, 1},
    {"bnc", "bakeNormsUVchan", kUnsigned, &N::m_moBakeTexUVChannel},
    {"bns", "bakeNormsSpace", kUnsigned, &N::m_moBakeNormalSpace},
    {"bnl", "bakeNormsLevel", kUnsigned, &N::m_moBakeNormalLevel},
    {"bnf", "bakeNormsFile", kString, &N::m_moBakeNormalFile},
    {"bds", "bakeDispDoStren", kBoolean, &N::m_moBakeDispDoStren},
    {"bsr", "bakeDispStrenRange", kUnsigned, &N::m_moBakeDispStrenRange},
    {"bsf", "bakeDispStrenFile", kString, &N::m_moBakeDispStrenFile},
    {"bdd", "bakeDispDoDirs", kBoolean, &N::m_moBakeDispDoDirs},
    {"bde", "bakeDispDirSpace", kUnsigned, &N::m_moBakeDispDirSpace},
    {"bdf", "bakeDispDirFile", kString, &N::m_moBakeDispDirsFile},
    {"bcf", "bakeVertColFile", kString, &N::m_moBakeVertColorFile},
    {"bnr", "bakeNormals"},
    {"bdp", "bakeDisplacement"},
    {"bvc", "bakeVertColor"},
};

}  // namespace

std::span<const ToolFlag> ToolFlags() {
    return kFlags;
}

double ToolCall::Number() const {
    double number = 0;
    bool on = false;
    if (flag.type == kBoolean) return words.getFlagArgument(flag.name, 0, on) && on;
    words.getFlagArgument(flag.name, 0, number);
    return number;
}

MString ToolCall::Text() const {
    MString text;
    words.getFlagArgument(flag.name, 0, text);
    return text;
}

MStatus ToolCall::Fail(const MString& why) const {
    MGlobal::displayError("KelmoToolContextCmd: " + why);
    return MS::kFailure;
}

MPlug ToolCall::Plug(N::Member attribute) const {
    const MLNode* node = tool.node();
    const MPlug plug = node ? node->plug(attribute) : MPlug();
    if (plug.isNull())
        Fail(MString("-") + flag.name +
             (node ? " is of what this class of node lacks" : " needs a node; select one"));
    return plug;
}

namespace {

bool IsWhole(MSyntax::MArgType type) {
    return type == kBoolean || type == kLong || type == kUnsigned || type == MSyntax::kNoArg;
}

/// The plug of a flag or a part of it; null, which is told, where there is none.
MPlug PlugOf(const ToolCall& call) {
    const MPlug plug = call.Plug(call.flag.plug);
    if (plug.isNull() || call.flag.child == ToolFlag::kNone) return plug;
    return plug.child(static_cast<unsigned>(call.flag.child));
}

MStatus NotBuilt(const ToolCall& call) {
    return call.Fail(MString("-") + call.flag.name + " is not part of this version");
}

/// Runs a number of the node. False, which is told, where there is none.
bool Protocol(ToolCall& call, int command, bool quiet) {
    const MLNode* node = call.tool.node();
    if (!node) return call.Fail(MString("-") + call.flag.name + " needs a node; select one"), false;
    BringUpToDate(node->getThisMObject());
    NodeProtocol protocol(node->getThisMObject());
    if (call.flag.type == kString)
        protocol.SetText(call.Text());
    else if (call.flag.type != MSyntax::kNoArg)
        protocol.SetIndex(static_cast<int>(call.Number()));
    KeepPaintEdit(*node, command);
    quiet ? protocol.Ask(command) : protocol.Run(command);
    return true;
}

}  // namespace

MStatus EditByFlag(ToolCall& call) {
    const ToolFlag& flag = call.flag;
    if (!flag.IsBuilt()) return NotBuilt(call);
    if (flag.edit) return flag.edit(call);
    if (flag.runs != ToolFlag::kNone)
        return Protocol(call, flag.runs, false) ? MS::kSuccess : MS::kFailure;
    if (!flag.plug) return call.Fail(MString("-") + flag.name + " is for -query alone");
    MPlug plug = PlugOf(call);
    if (plug.isNull()) return MS::kFailure;
    return flag.type == kString ? plug.setValue(call.Text()) : plug.setValue(call.Number());
}

MStatus AnswerFlag(ToolCall& call) {
    const ToolFlag& flag = call.flag;
    if (!flag.IsBuilt()) return NotBuilt(call);
    if (flag.query) return flag.query(call);
    if (flag.asks != ToolFlag::kNone) {
        if (!Protocol(call, flag.asks, true)) return MS::kFailure;
        const NodeProtocol protocol(call.tool.node()->getThisMObject());
        flag.answersText ? MPxCommand::setResult(protocol.text())
                         : MPxCommand::setResult(protocol.index());
        return MS::kSuccess;
    }
    if (!flag.plug) return call.Fail(MString("-") + flag.name + " has nothing to answer");
    const MPlug plug = PlugOf(call);
    if (plug.isNull()) return MS::kFailure;
    if (flag.type == kString)
        MPxCommand::setResult(plug.asString());
    else if (IsWhole(flag.type))
        MPxCommand::setResult(plug.asInt());
    else
        MPxCommand::setResult(plug.asDouble());
    return MS::kSuccess;
}

}  // namespace VantrelSDK
