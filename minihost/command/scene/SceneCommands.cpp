#include "minihost/command/scene/SceneCommands.h"

#include <algorithm>

#include "maya/MAngle.h"
#include "minihost/Host.h"
#include "minihost/base/Ticks.h"
#include "minihost/command/builtins/Builtins.h"

namespace minihost {

void AddSceneCommands(Host& host) {
    AddNodeCommands(host);
    AddPlugCommands(host);
    AddSelectCommands(host);
    AddTransformCommands(host);
    AddModelCommands(host);
    AddHostCommands(host);
    AddViewCommands(host);
    AddAnimCommands(host);
    AddFileCommands(host);
}

void AddEdit(Host& host, std::string name, Syntax syntax,
             std::function<Answer(Modifier&, const ParsedFlags&)> function) {
    AddParsed(
        host.commands, std::move(name), std::move(syntax),
        [&host, function = std::move(function)](CommandCall&, const ParsedFlags& flags) -> Answer {
            const auto edits = std::make_shared<Modifier>(host.scene);
            Answer answer = function(*edits, flags);
            if (!answer.Good())
                edits->Undo();
            else if (!edits->IsEmpty())
                host.undo.Add(edits);
            return answer;
        });
}

void AddQuestion(Host& host, std::string name, Syntax syntax,
                 std::function<Answer(const ParsedFlags&)> function) {
    AddParsed(host.commands, std::move(name), std::move(syntax),
              [function = std::move(function)](CommandCall&, const ParsedFlags& flags) {
                  return function(flags);
              });
}

bool FindObjects(Host& host, const ParsedFlags& flags, std::vector<Named>& found,
                 CommandError& error) {
    if (flags.Objects().empty()) {
        for (const Selected& item : host.scene.selection)
            found.push_back({item.node, {}, item.component});
        return true;
    }
    for (const Value& object : flags.Objects()) {
        const auto named = FindNamed(host.scene, object.AsString());
        if (named.empty()) {
            error.message = "there is nothing called '" + object.AsString() + "'";
            return false;
        }
        found.insert(found.end(), named.begin(), named.end());
    }
    return true;
}

bool FindNodes(Host& host, const ParsedFlags& flags, std::vector<NodePtr>& found,
               CommandError& error) {
    std::vector<Named> objects;
    if (!FindObjects(host, flags, objects, error)) return false;
    for (const Named& object : objects)
        if (std::ranges::count(found, object.node) == 0) found.push_back(object.node);
    return true;
}

NodePtr FindNode(Host& host, const std::string& name, CommandError& error) {
    const auto nodes = host.scene.FindAll(name);
    if (nodes.size() == 1) return nodes[0];
    error.message =
        (nodes.empty() ? "there is no node '" : "more than one node is called '") + name + "'";
    return nullptr;
}

bool FindPlug(Host& host, const std::string& name, Plug& plug, CommandError& error) {
    plug = FindPlugNamed(host.scene, name, &error.message);
    return !plug.IsNull();
}

bool IsOfType(const Node& node, const std::string& type) {
    return node.type().IsA(type) || type == "dependNode";
}

double FromScript(const Attribute& attribute, double number) {
    if (attribute.kind == AttributeKind::Angle) return number * MAngle::kPerDegree;
    return attribute.kind == AttributeKind::Time ? ToTicks(MTime(number)) : number;
}

double ToScript(const Attribute& attribute, double number) {
    if (attribute.kind == AttributeKind::Angle) return number / MAngle::kPerDegree;
    return attribute.kind == AttributeKind::Time ? FromTicks(number).value() : number;
}

namespace {

bool IsWhole(const Attribute& attribute) {
    if (attribute.kind == AttributeKind::Enum) return true;
    switch (attribute.numeric) {
        case MFnNumericData::kBoolean:
        case MFnNumericData::kByte:
        case MFnNumericData::kChar:
        case MFnNumericData::kShort:
        case MFnNumericData::kInt:
            return attribute.kind == AttributeKind::Numeric;
        default:
            return false;
    }
}

template <class T>
Value Numbers(const std::vector<T>& points, int count) {
    std::vector<double> numbers;
    for (const T& p : points)
        for (int i = 0; i < count; ++i) numbers.push_back(p[static_cast<unsigned>(i)]);
    return Value(std::move(numbers));
}

Value DataValue(const Data& data) {
    if (const auto* text = dynamic_cast<const StringData*>(&data)) return Value(text->value);
    if (const auto* matrix = dynamic_cast<const MatrixData*>(&data)) {
        const double* first = matrix->value[0];
        return Value(std::vector<double>(first, first + 16));
    }
    if (const auto* tuple = dynamic_cast<const NumericData*>(&data)) {
        const double* first = tuple->value.numbers;
        return Value(std::vector<double>(first, first + MFnNumericData::Count(tuple->value.kind)));
    }
    if (const auto* texts = dynamic_cast<const StringArrayData*>(&data)) return Value(texts->value);
    if (const auto* ints = dynamic_cast<const IntArrayData*>(&data)) return Value(ints->value);
    if (const auto* doubles = dynamic_cast<const DoubleArrayData*>(&data))
        return Value(doubles->value);
    if (const auto* points = dynamic_cast<const PointArrayData*>(&data))
        return Numbers(points->value, 4);
    if (const auto* vectors = dynamic_cast<const VectorArrayData*>(&data))
        return Numbers(vectors->value, 3);
    return Value();
}

Value LeafValue(const Attribute& attribute, const Datum& held) {
    if (const double* number = std::get_if<double>(&held)) {
        const double shown = ToScript(attribute, *number);
        return IsWhole(attribute) ? Value(static_cast<int>(shown)) : Value(shown);
    }
    const auto data = DataOf<Data>(held);
    return data ? DataValue(*data) : Value();
}

}  // namespace

Answer PlugValue(const Plug& plug) {
    if (plug.IsArray())
        return CommandError{plug.FullName() + " is an array: tell an index, as in " +
                            plug.node->UniqueName() + "." + plug.attribute->longName + "[0]"};
    Slot* slot = plug.FindToRead();
    if (!slot) {
        if (plug.attribute->IsCompound()) return Value();
        return LeafValue(*plug.attribute, plug.attribute->defaultValue);
    }
    if (!Evaluate(*slot)) return CommandError{plug.FullName() + " could not be computed"};
    if (slot->IsLeaf()) return LeafValue(*plug.attribute, slot->value);
    std::vector<double> numbers;
    for (const auto& part : slot->parts) {
        if (!part->attribute->IsNumber())
            return CommandError{plug.FullName() + " is made of parts: tell which, as in " +
                                plug.FullName() + "." + part->attribute->longName};
        numbers.push_back(ToScript(*part->attribute, NumberOf(part->value)));
    }
    return Value(std::move(numbers));
}

}  // namespace minihost
