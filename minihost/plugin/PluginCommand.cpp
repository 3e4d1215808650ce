#include "minihost/plugin/PluginCommand.h"

#include <map>

#include "maya/MGlobal.h"
#include "minihost/Host.h"

namespace minihost {
namespace {

std::map<std::string, MSyntax>& Syntaxes() {
    static std::map<std::string, MSyntax> syntaxes;
    return syntaxes;
}

ResultFrame* g_frame = nullptr;

}  // namespace

ResultFrame::ResultFrame(std::string command) : command_(std::move(command)), before_(g_frame) {
    g_frame = this;
}
ResultFrame::~ResultFrame() {
    g_frame = before_;
}

Value& ResultFrame::current() {
    static Value nobody;
    if (!g_frame) nobody = Value();
    return g_frame ? g_frame->value : nobody;
}

std::string ResultFrame::command() {
    return g_frame ? g_frame->command_ : "";
}

const MSyntax* PluginCommand::SyntaxOf(const std::string& name) {
    const auto found = Syntaxes().find(name);
    return found == Syntaxes().end() ? nullptr : &found->second;
}

void PluginCommand::Forget(const std::string& name) {
    Syntaxes().erase(name);
}

CommandFunction PluginCommand::Function(std::string name, MCreatorFunction creator,
                                        MCreateSyntaxFunction syntax) {
    if (syntax) Syntaxes()[name] = syntax();
    return [name, creator](CommandCall& call) -> Answer {
        std::unique_ptr<MPxCommand> command(static_cast<MPxCommand*>(creator()));
        if (!command) return CommandError{name + " could not be made by its module"};
        command->name_ = MString(name);
        ResultFrame frame(name);
        const MStatus status = command->doIt(MArgList(call.arguments));
        if (!status) return CommandError{name + " failed: " + status.errorString().str()};
        if (command->isUndoable())
            Host::Get().undo.Add(std::make_shared<PluginCommand>(std::move(command)));
        return frame.value;
    };
}

}  // namespace minihost

using minihost::ResultFrame;
using minihost::Value;

MPxCommand::MPxCommand() = default;
MPxCommand::~MPxCommand() = default;
MStatus MPxCommand::doIt(const MArgList&) {
    return MS::kFailure;
}
MStatus MPxCommand::undoIt() {
    return MS::kSuccess;
}
MStatus MPxCommand::redoIt() {
    return MS::kSuccess;
}

MSyntax MPxCommand::syntax() const {
    const MSyntax* known = minihost::PluginCommand::SyntaxOf(name_.str());
    return known ? *known : MSyntax();
}

namespace {

template <class T, class Array>
void SetArray(const Array& values) {
    ResultFrame::current() = Value(std::vector<T>(values.begin(), values.end()));
}

void Append(const Value& value) {
    Value& result = ResultFrame::current();
    if (!result.IsArray()) {
        Value array = Value::Default(minihost::ArrayType(value.GetType()));
        if (!result.IsNone()) array.SetElement(0, result);
        result = array;
    }
    result.SetElement(result.Size(), value);
}

}  // namespace

void MPxCommand::setResult(bool value) {
    ResultFrame::current() = Value(value);
}
void MPxCommand::setResult(int value) {
    ResultFrame::current() = Value(value);
}
void MPxCommand::setResult(double value) {
    ResultFrame::current() = Value(value);
}
void MPxCommand::setResult(const MString& value) {
    ResultFrame::current() = Value(value.str());
}
void MPxCommand::setResult(const MIntArray& values) {
    SetArray<int>(values);
}
void MPxCommand::setResult(const MDoubleArray& values) {
    SetArray<double>(values);
}

void MPxCommand::setResult(const MStringArray& values) {
    std::vector<std::string> texts;
    for (const MString& value : values) texts.push_back(value.str());
    ResultFrame::current() = Value(std::move(texts));
}

void MPxCommand::appendToResult(int value) {
    Append(Value(value));
}
void MPxCommand::appendToResult(double value) {
    Append(Value(value));
}
void MPxCommand::appendToResult(const MString& value) {
    Append(Value(value.str()));
}
void MPxCommand::clearResult() {
    ResultFrame::current() = Value();
}
void MPxCommand::displayError(const MString& text) {
    MGlobal::displayError(text);
}
void MPxCommand::displayWarning(const MString& text) {
    MGlobal::displayWarning(text);
}
void MPxCommand::displayInfo(const MString& text) {
    MGlobal::displayInfo(text);
}
