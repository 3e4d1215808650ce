#include "maya/MGlobal.h"

#include "maya/MCommandResult.h"
#include "minihost/Host.h"
#include "minihost/api/Status.h"
#include "minihost/graph/Modifier.h"
#include "minihost/graph/Names.h"
#include "minihost/mesh/ComponentObject.h"

using minihost::Host;
using minihost::Selected;
using minihost::Tell;
using minihost::Value;

MGlobal::MMayaState MGlobal::mayaState(MStatus* status) {
    return Tell(status, MS::kSuccess, Host::Get().interactive ? kInteractive : kBatch);
}

MString MGlobal::mayaVersion() {
    return MString(minihost::kHostVersion);
}

void MGlobal::displayInfo(const MString& text) {
    Host::Get().output().Info(text.str());
}
void MGlobal::displayWarning(const MString& text) {
    Host::Get().output().Warning(text.str());
}
void MGlobal::displayError(const MString& text) {
    Host::Get().output().Error(text.str());
}

namespace {

MStatus Run(const MString& script, Value& result, bool display, bool undoEnabled) {
    Host& host = Host::Get();
    std::unique_ptr<minihost::UndoQueue::Suspension> suspension;
    if (!undoEnabled) suspension = std::make_unique<minihost::UndoQueue::Suspension>(host.undo);
    auto done = host.interpreter.Execute(script.str(), {"<module>", true, {}});
    if (done.error) {
        host.output().Error(done.error->Text());
        return MS::kFailure;
    }
    if (display && !done.value.IsNone()) host.output().Info("Result: " + done.value.AsString());
    result = std::move(done.value);
    return MS::kSuccess;
}

template <class T, class Convert>
MStatus RunFor(const MString& script, T& result, bool display, bool undoEnabled, Convert convert) {
    Value value;
    const MStatus status = Run(script, value, display, undoEnabled);
    if (status) result = convert(value);
    return status;
}

MStringArray Texts(const Value& value) {
    MStringArray texts;
    for (const std::string& text : value.AsStrings()) texts.append(MString(text));
    return texts;
}

template <class Array, class Convert>
Array Numbers(const Value& value, Convert convert) {
    Array numbers;
    for (size_t i = 0; i < value.Size(); ++i) numbers.append(convert(value.Element(i)));
    return numbers;
}

}  // namespace

MStatus MGlobal::executeCommand(const MString& script, bool display, bool undoEnabled) {
    Value ignored;
    return Run(script, ignored, display, undoEnabled);
}

MStatus MGlobal::executeCommand(const MString& script, int& result, bool display, bool undo) {
    return RunFor(script, result, display, undo, [](const Value& v) { return v.AsInt(); });
}

MStatus MGlobal::executeCommand(const MString& script, double& result, bool display, bool undo) {
    return RunFor(script, result, display, undo, [](const Value& v) { return v.AsFloat(); });
}

MStatus MGlobal::executeCommand(const MString& script, MString& result, bool display, bool undo) {
    return RunFor(script, result, display, undo,
                  [](const Value& v) { return MString(v.AsString()); });
}

MStatus MGlobal::executeCommand(const MString& script, MStringArray& result, bool display,
                                bool undo) {
    return RunFor(script, result, display, undo, Texts);
}

MStatus MGlobal::executeCommand(const MString& script, MIntArray& result, bool display, bool undo) {
    return RunFor(script, result, display, undo, [](const Value& value) {
        return Numbers<MIntArray>(value, [](const Value& v) { return v.AsInt(); });
    });
}

MStatus MGlobal::executeCommand(const MString& script, MDoubleArray& result, bool display,
                                bool undo) {
    return RunFor(script, result, display, undo, [](const Value& value) {
        return Numbers<MDoubleArray>(value, [](const Value& v) { return v.AsFloat(); });
    });
}

MStatus MGlobal::executeCommand(const MString& script, MCommandResult& result, bool display,
                                bool undoEnabled) {
    Value value;
    const MStatus status = Run(script, value, display, undoEnabled);
    if (status) result.set(std::move(value));
    return status;
}

MString MGlobal::executeCommandStringResult(const MString& script, bool display, bool undoEnabled,
                                            MStatus* status) {
    MString result;
    const MStatus done = executeCommand(script, result, display, undoEnabled);
    return Tell(status, done, result);
}

MStatus MGlobal::executeCommandOnIdle(const MString& script, bool) {
    Host::Get().interpreter.Defer(script.str());
    return MS::kSuccess;
}

MStatus MGlobal::getActiveSelectionList(MSelectionList& list) {
    list.clear();
    for (const Selected& item : Host::Get().scene.selection) {
        const bool whole = item.component.kind == MFn::kInvalid;
        if (item.node->Is(MFn::kDagNode))
            list.add(MDagPath(MObject(item.node)),
                     whole ? MObject() : minihost::MakeComponent(item.component));
        else
            list.add(MObject(item.node));
    }
    return MS::kSuccess;
}

namespace {

std::vector<Selected> Items(const MSelectionList& list) {
    std::vector<Selected> items;
    for (const MSelectionList::Item& item : list.items()) {
        Selected selected{item.node.as<minihost::Node>()->Share()};
        if (const auto* component = item.component.as<minihost::ComponentObject>())
            selected.component = component->component;
        items.push_back(selected);
    }
    return items;
}

void Adjust(std::vector<Selected>& selection, const std::vector<Selected>& items,
            MGlobal::ListAdjustment how) {
    if (how == MGlobal::kReplaceList) selection.clear();
    auto place = selection.begin();
    for (const Selected& item : items) {
        const bool was = std::erase(selection, item) > 0;
        if (how == MGlobal::kRemoveFromList || (how == MGlobal::kXORWithList && was)) continue;
        place = how == MGlobal::kAddToHeadOfList ? selection.begin() : selection.end();
        selection.insert(place, item);
    }
}

}  // namespace

MStatus MGlobal::setActiveSelectionList(const MSelectionList& list, ListAdjustment how) {
    Host& host = Host::Get();
    std::vector<Selected> selection = host.scene.selection;
    Adjust(selection, Items(list), how);
    minihost::Modifier(host.scene).Select(std::move(selection));
    return MS::kSuccess;
}

MStatus MGlobal::clearSelectionList() {
    return setActiveSelectionList(MSelectionList());
}

MStatus MGlobal::getSelectionListByName(const MString& name, MSelectionList& list) {
    list.clear();
    return list.add(name);
}

MStatus MGlobal::select(const MObject& node, ListAdjustment how) {
    MSelectionList list;
    const MStatus status = list.add(node);
    return status ? setActiveSelectionList(list, how) : status;
}

MStatus MGlobal::selectByName(const MString& name, ListAdjustment how) {
    MSelectionList list;
    const MStatus status = list.add(name);
    return status ? setActiveSelectionList(list, how) : status;
}

MStatus MGlobal::unselectByName(const MString& name) {
    return selectByName(name, kRemoveFromList);
}

int MGlobal::optionVarIntValue(const MString& name, bool* exists) {
    int there = 0, value = 0;
    executeCommand("optionVar -exists \"" + name + "\"", there);
    if (exists) *exists = there;
    if (there) executeCommand("optionVar -query \"" + name + "\"", value);
    return value;
}

bool MGlobal::setOptionVarValue(const MString& name, int value) {
    return executeCommand("optionVar -intValue \"" + name + "\" " + value);
}

MCommandResult::MCommandResult(MStatus* status) : value_(std::make_unique<Value>()) {
    Tell(status, MS::kSuccess);
}
MCommandResult::~MCommandResult() = default;

void MCommandResult::set(Value value) {
    *value_ = std::move(value);
}

MCommandResult::Type MCommandResult::resultType(MStatus* status) const {
    Tell(status, MS::kSuccess);
    switch (value_->GetType()) {
        case Value::Type::Int:
            return kInt;
        case Value::Type::Float:
            return kDouble;
        case Value::Type::String:
            return kString;
        case Value::Type::Vector:
            return kVector;
        case Value::Type::IntArray:
            return kIntArray;
        case Value::Type::FloatArray:
            return kDoubleArray;
        case Value::Type::StringArray:
            return kStringArray;
        default:
            return kInvalid;
    }
}

MStatus MCommandResult::getResult(int& value) const {
    value = value_->AsInt();
    return value_->IsNone() ? MS::kFailure : MS::kSuccess;
}
MStatus MCommandResult::getResult(double& value) const {
    value = value_->AsFloat();
    return value_->IsNone() ? MS::kFailure : MS::kSuccess;
}
MStatus MCommandResult::getResult(MString& value) const {
    value = MString(value_->AsString());
    return value_->IsNone() ? MS::kFailure : MS::kSuccess;
}
MStatus MCommandResult::getResult(MIntArray& values) const {
    values = Numbers<MIntArray>(*value_, [](const Value& v) { return v.AsInt(); });
    return MS::kSuccess;
}
MStatus MCommandResult::getResult(MDoubleArray& values) const {
    values = Numbers<MDoubleArray>(*value_, [](const Value& v) { return v.AsFloat(); });
    return MS::kSuccess;
}
MStatus MCommandResult::getResult(MStringArray& values) const {
    values = Texts(*value_);
    return MS::kSuccess;
}
MString MCommandResult::stringResult(MStatus* status) const {
    MString text;
    Tell(status, getResult(text));
    return text;
}
