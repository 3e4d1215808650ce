#include "maya/MArgDatabase.h"
#include "maya/MArgList.h"
#include "maya/MArgParser.h"
#include "maya/MGlobal.h"
#include "maya/MSyntax.h"
#include "minihost/Host.h"
#include "minihost/api/Status.h"
#include "minihost/command/ParsedFlags.h"
#include "minihost/command/Syntax.h"
#include "minihost/plugin/PluginCommand.h"

using minihost::ParsedFlags;
using minihost::Syntax;
using minihost::Tell;
using minihost::Value;

unsigned MArgList::length(MStatus* status) const {
    return Tell(status, MS::kSuccess, static_cast<unsigned>(words_.size()));
}

MStatus MArgList::get(unsigned index, MString& value) const {
    if (index >= words_.size()) return MS::kInvalidParameter;
    value = MString(words_[index].AsString());
    return MS::kSuccess;
}

MStatus MArgList::get(unsigned index, double& value) const {
    if (index >= words_.size()) return MS::kInvalidParameter;
    const Value& word = words_[index];
    const Value number = word.IsString() ? minihost::ParseNumber(word.String()) : word;
    if (!number.IsNumber()) return MS::kInvalidParameter;
    value = number.AsFloat();
    return MS::kSuccess;
}

MStatus MArgList::get(unsigned index, int& value) const {
    double number = 0;
    const MStatus status = get(index, number);
    if (status) value = Value(number).AsInt();
    return status;
}

MStatus MArgList::get(unsigned index, bool& value) const {
    if (index >= words_.size()) return MS::kInvalidParameter;
    value = words_[index].AsInt() != 0;
    return MS::kSuccess;
}

bool MArgList::asBool(unsigned index, MStatus* status) const {
    bool value = false;
    return Tell(status, get(index, value)) && value;
}
int MArgList::asInt(unsigned index, MStatus* status) const {
    int value = 0;
    Tell(status, get(index, value));
    return value;
}
double MArgList::asDouble(unsigned index, MStatus* status) const {
    double value = 0;
    Tell(status, get(index, value));
    return value;
}
MString MArgList::asString(unsigned index, MStatus* status) const {
    MString value;
    Tell(status, get(index, value));
    return value;
}

namespace {

std::string_view WithoutDash(std::string_view flag) {
    return flag.starts_with('-') ? flag.substr(1) : flag;
}

}  // namespace

unsigned MArgList::flagIndex(const char* flag, const char* longFlag) const {
    for (size_t i = 0; i < words_.size(); ++i) {
        if (!words_[i].IsString() || !words_[i].String().starts_with('-')) continue;
        const std::string_view word = WithoutDash(words_[i].String());
        if (word == WithoutDash(flag) || (longFlag && word == WithoutDash(longFlag)))
            return static_cast<unsigned>(i);
    }
    return kInvalidArgIndex;
}

MSyntax::MSyntax() : syntax_(std::make_unique<Syntax>()) {}
MSyntax::~MSyntax() = default;
MSyntax::MSyntax(const MSyntax& other)
    : syntax_(std::make_unique<Syntax>(*other.syntax_)),
      arguments_(other.arguments_),
      useSelection_(other.useSelection_) {}
MSyntax& MSyntax::operator=(const MSyntax& other) {
    *syntax_ = *other.syntax_;
    arguments_ = other.arguments_;
    useSelection_ = other.useSelection_;
    return *this;
}

namespace {

Syntax::Argument Kind(MSyntax::MArgType type) {
    switch (type) {
        case MSyntax::kBoolean:
            return Syntax::Argument::Boolean;
        case MSyntax::kLong:
            return Syntax::Argument::Int;
        case MSyntax::kUnsigned:
            return Syntax::Argument::Unsigned;
        case MSyntax::kDouble:
        case MSyntax::kDistance:
        case MSyntax::kAngle:
        case MSyntax::kTime:
            return Syntax::Argument::Float;
        default:
            return Syntax::Argument::String;
    }
}

}  // namespace

MStatus MSyntax::addFlag(const char* shortName, const char* longName, MArgType arg1, MArgType arg2,
                         MArgType arg3, MArgType arg4, MArgType arg5, MArgType arg6) {
    std::vector<Syntax::Argument> arguments;
    for (const MArgType type : {arg1, arg2, arg3, arg4, arg5, arg6})
        if (type != kNoArg && type != kInvalidArgType) arguments.push_back(Kind(type));
    return syntax_->AddFlag(shortName, longName, arguments) ? MS::kSuccess : MS::kFailure;
}

MStatus MSyntax::makeFlagMultiUse(const char* flag) {
    Syntax::Flag* found = syntax_->Find(flag);
    if (!found) return MS::kInvalidParameter;
    found->multiUse = true;
    return MS::kSuccess;
}

MStatus MSyntax::makeFlagQueryWithFullArgs(const char* flag, bool optional) {
    Syntax::Flag* found = syntax_->Find(flag);
    if (!found) return MS::kInvalidParameter;
    found->queryTakesArguments = true;
    found->queryArgumentsOptional = optional;
    return MS::kSuccess;
}

// Words that belong to no flag: they are objects to the parser, and arguments to the command.
MStatus MSyntax::addArg(MArgType) {
    ++arguments_;
    const int count = static_cast<int>(arguments_);
    syntax_->SetObjects(count, std::max(count, syntax_->MostObjects()));
    return MS::kSuccess;
}

void MSyntax::enableQuery(bool on) {
    syntax_->EnableQuery(on);
}
void MSyntax::enableEdit(bool on) {
    syntax_->EnableEdit(on);
}

MStatus MSyntax::setObjectType(MObjectFormat, unsigned least, unsigned most) {
    syntax_->SetObjects(static_cast<int>(least), most > 0x7fffffffu ? -1 : static_cast<int>(most));
    return MS::kSuccess;
}

MStatus MSyntax::useSelectionAsDefault(bool on) {
    useSelection_ = on;
    return MS::kSuccess;
}

void MSyntax::setMinObjects(unsigned least) {
    syntax_->SetObjects(static_cast<int>(least), syntax_->MostObjects());
}

void MSyntax::setMaxObjects(unsigned most) {
    syntax_->SetObjects(syntax_->LeastObjects(), static_cast<int>(most));
}

MArgParser::MArgParser(const MSyntax& syntax, const MArgList& words, MStatus* status)
    : syntax_(syntax) {
    minihost::CommandError error;
    auto parsed = ParsedFlags::Parse(syntax_.syntax(), minihost::ResultFrame::command(),
                                     words.words(), error);
    if (parsed)
        flags_ = std::make_unique<ParsedFlags>(std::move(*parsed));
    else
        minihost::Host::Get().output().Error(error.message);
    Tell(status, flags_ ? MS::kSuccess : MS::kInvalidParameter);
}

MArgParser::~MArgParser() = default;

bool MArgParser::isFlagSet(const char* flag, MStatus* status) const {
    return Tell(status, MS::kSuccess) && flags_ && flags_->IsSet(flag);
}
bool MArgParser::isEdit(MStatus* status) const {
    return Tell(status, MS::kSuccess) && flags_ && flags_->IsEdit();
}
bool MArgParser::isQuery(MStatus* status) const {
    return Tell(status, MS::kSuccess) && flags_ && flags_->IsQuery();
}
unsigned MArgParser::numberOfFlagUses(const char* flag) const {
    return flags_ ? static_cast<unsigned>(flags_->Uses(flag)) : 0;
}
unsigned MArgParser::numberOfFlagsUsed() const {
    return flags_ ? static_cast<unsigned>(flags_->Count()) : 0;
}

template <class T, class Convert>
MStatus MArgParser::Argument(const char* flag, unsigned index, T& value, Convert convert) const {
    const Value given = flags_ ? flags_->Get(flag, index) : Value();
    if (given.IsNone()) return MS::kFailure;
    value = convert(given);
    return MS::kSuccess;
}

MStatus MArgParser::getFlagArgument(const char* flag, unsigned index, bool& value) const {
    return Argument(flag, index, value, [](const Value& v) { return v.AsBool(); });
}
MStatus MArgParser::getFlagArgument(const char* flag, unsigned index, int& value) const {
    return Argument(flag, index, value, [](const Value& v) { return v.AsInt(); });
}
MStatus MArgParser::getFlagArgument(const char* flag, unsigned index, unsigned& value) const {
    return Argument(flag, index, value,
                    [](const Value& v) { return static_cast<unsigned>(v.AsInt()); });
}
MStatus MArgParser::getFlagArgument(const char* flag, unsigned index, double& value) const {
    return Argument(flag, index, value, [](const Value& v) { return v.AsFloat(); });
}
MStatus MArgParser::getFlagArgument(const char* flag, unsigned index, MString& value) const {
    return Argument(flag, index, value, [](const Value& v) { return MString(v.AsString()); });
}
MStatus MArgParser::getFlagArgument(const char* flag, unsigned index, MTime& value) const {
    return Argument(flag, index, value, [](const Value& v) { return MTime(v.AsFloat()); });
}

MStatus MArgParser::getFlagArgumentList(const char* flag, unsigned use, MArgList& words) const {
    if (!flags_ || use >= flags_->Uses(flag)) return MS::kInvalidParameter;
    std::vector<Value> values;
    for (size_t i = 0;; ++i) {
        Value value = flags_->Get(flag, i, use);
        if (value.IsNone()) break;
        values.push_back(std::move(value));
    }
    words = MArgList(std::move(values));
    return MS::kSuccess;
}

MStatus MArgParser::getCommandArgument(unsigned index, int& value) const {
    return flags_ ? MArgList(flags_->Objects()).get(index, value) : MStatus(MS::kFailure);
}
MStatus MArgParser::getCommandArgument(unsigned index, double& value) const {
    return flags_ ? MArgList(flags_->Objects()).get(index, value) : MStatus(MS::kFailure);
}
MStatus MArgParser::getCommandArgument(unsigned index, MString& value) const {
    return flags_ ? MArgList(flags_->Objects()).get(index, value) : MStatus(MS::kFailure);
}

MStatus MArgParser::getObjects(MStringArray& objects) const {
    objects.clear();
    if (!flags_) return MS::kFailure;
    for (const Value& object : flags_->Objects()) objects.append(MString(object.AsString()));
    return MS::kSuccess;
}

MArgDatabase::MArgDatabase(const MSyntax& syntax, const MArgList& words, MStatus* status)
    : MArgParser(syntax, words, status), useSelection_(syntax.usesSelection()) {}

MStatus MArgDatabase::getObjects(MSelectionList& list) const {
    list.clear();
    if (!flags()) return MS::kFailure;
    MStringArray names;
    getObjects(names);
    for (const MString& name : names)
        if (const MStatus status = list.add(name); !status) return status;
    if (names.length() == 0 && useSelection_) MGlobal::getActiveSelectionList(list);
    return MS::kSuccess;
}
