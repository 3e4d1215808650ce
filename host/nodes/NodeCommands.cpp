#include "host/nodes/NodeCommands.h"

#include <maya/MFnPluginData.h>
#include <maya/MGlobal.h>

#include <map>
#include <set>

#include "host/ml/Diagnostics.h"
#include "host/ml/MLMeshObject.h"
#include "host/ml/MLNode.h"
#include "host/nodes/NodeCallbacks.h"

namespace VantrelSDK {

namespace {

using N = NodeAttributes;

const std::map<int, NodeCommands::Command>& AllCommands() {
    static const std::map<int, NodeCommands::Command> all = [] {
        std::map<int, NodeCommands::Command> made;
        for (const auto rows :
             {NodeCommands::SessionRows(), NodeCommands::TargetRows(), NodeCommands::TrackRows(),
              NodeCommands::StateRows(), NodeCommands::LevelRows(), NodeCommands::NeutralRows(),
              NodeCommands::PaintRows(), NodeCommands::MaterialRows(), NodeCommands::PatternRows()})
            for (const NodeCommands::Row& row : rows) made.emplace(row.number, row.command);
        return made;
    }();
    return all;
}

/// The older node counts from 25 on without three of the newer one's commands.
int NumberFor(NodeClass which, int number) {
    return which == NodeClass::kNode && number >= 25 ? number + 3 : number;
}

/// A journal has what this does to the shape and to what is stored, or it does nothing to them.
bool IsTold(int number) {
    static const std::set<int> told{
        0,   1,   4,   5,   6,   7,   18,  19,  20,  21,  24,  25,  27,  28,  30,  32,  35,
        36,  37,  42,  44,  77,  78,  79,  80,  81,  82,  83,  84,  85,  86,  87,  88,  89,
        90,  91,  92,  93,  94,  95,  96,  97,  98,  105, 106, 107, 108, 109, 110, 111, 112,
        113, 114, 115, 116, 117, 118, 119, 120, 121, 122, 123, 132, 134, 174, 182, 183, 188,
        193, 194, 211, 212, 213, 215, 237, 238, 239, 240, 241, 242, 243, 244};
    return told.contains(number);
}

}  // namespace

void NodeCommands::Run(MPlugArray& affected) {
    affected_ = &affected;
    const int number = NumberFor(node_.nodeClass(), node_.plug(&N::m_moCommnad).asInt());
    Log(MString(std::to_string(number)));
    const auto known = AllCommands().find(number);
    if (known == AllCommands().end()) return;
    (this->*known->second)();
    // Nothing else of what they do can be played from a journal.
    if (!IsTold(number)) node_.SurfaceReplaced();
}

int NodeCommands::Index() const {
    return node_.plug(&N::m_moParam0).asInt();
}
float NodeCommands::Number() const {
    return node_.plug(&N::m_moParam1).asFloat();
}
MString NodeCommands::Text() const {
    return node_.plug(&N::m_moParam2).asString();
}
MObject NodeCommands::Given() const {
    return node_.plug(&N::m_moParam2).asMObject();
}
void NodeCommands::Answer(int value) {
    node_.plug(&N::m_moParam0).setValue(value);
}
void NodeCommands::Answer(float value) {
    node_.plug(&N::m_moParam1).setValue(value);
}
void NodeCommands::Answer(const MString& text) {
    node_.plug(&N::m_moParam2).setValue(text);
}
void NodeCommands::Error(const char* text) const {
    node_.Error(text);
}

LMorphTarget* NodeCommands::Target() const {
    const int index = Index();
    LMorphTarget* target = node_.GetMorph(index);
    if (index < 0 || index >= node_.GetNumMorphs())
        Error("there is no target with such index.");
    else if (!target)
        Error("null target.");
    return target;
}

LMorphTarget* NodeCommands::Neutral() const {
    LMorphTarget* neutral = node_.GetNeutral();
    if (!neutral) Error("null target.");
    return neutral;
}

void NodeCommands::OutputChanged() {
    node_.ForceEvaluation(1);
    node_.displyDirtied = node_.displayGeomChanged = true;
    affected_->append(node_.outputPlug());
    affected_->append(node_.plug(&N::m_moDisplayCbk));
}

bool NodeCommands::HasGeometry() {
    // What was made a moment ago has seen no mesh yet.
    if (!node_.lnodeinited || node_.postload) node_.outputPlug().asMObject();
    return node_.lnodeinited && node_.lobject() && node_.GetDelta();
}

}  // namespace VantrelSDK
