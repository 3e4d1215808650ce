#include <algorithm>
#include <optional>

#include "minihost/Host.h"
#include "minihost/command/scene/SceneCommands.h"

namespace minihost {
namespace {

using Argument = Syntax::Argument;
using Words = std::vector<Value>;

/// The words behind the plug's name as numbers; none where a word is no number.
std::optional<std::vector<double>> NumbersOf(const Words& words, size_t first) {
    std::vector<double> numbers;
    for (size_t i = first; i < words.size(); ++i) {
        Value word = words[i];
        if (word.IsString()) {
            const std::string& text = word.String();
            word = ParseNumber(text);
            if (text == "true" || text == "on" || text == "yes") word = Value(1);
            if (text == "false" || text == "off" || text == "no") word = Value(0);
        }
        if (!word.IsNumber()) return std::nullopt;
        numbers.push_back(word.AsFloat());
    }
    return numbers;
}

MFnNumericData::Type TupleKind(const std::string& type) {
    constexpr std::pair<const char*, MFnNumericData::Type> kKinds[] = {
        {"short2", MFnNumericData::k2Short},   {"short3", MFnNumericData::k3Short},
        {"long2", MFnNumericData::k2Int},      {"long3", MFnNumericData::k3Int},
        {"float2", MFnNumericData::k2Float},   {"float3", MFnNumericData::k3Float},
        {"double2", MFnNumericData::k2Double}, {"double3", MFnNumericData::k3Double}};
    for (const auto& [name, kind] : kKinds)
        if (type == name) return kind;
    return MFnNumericData::kInvalid;
}

/// Points and vectors: their number, then `count` numbers each.
template <class T>
std::shared_ptr<Data> MakePoints(const std::vector<double>& numbers, size_t count) {
    using Item = typename decltype(T::value)::value_type;
    auto data = std::make_shared<T>();
    const size_t most = numbers.empty() ? 0 : (numbers.size() - 1) / count;
    if (numbers.empty() || numbers[0] != static_cast<double>(most)) return nullptr;
    for (size_t i = 0; i < most; ++i) {
        Item item;
        for (size_t k = 0; k < count; ++k)
            item[static_cast<unsigned>(k)] = numbers[1 + i * count + k];
        data->value.push_back(item);
    }
    return data;
}

/// Data in the words of setAttr -type; null where the words are not what the type takes.
std::shared_ptr<Data> MakeTypedData(const std::string& type, const Words& words) {
    if (type == "string")
        return words.size() == 2 ? std::make_shared<StringData>(words[1].AsString()) : nullptr;
    if (type == "stringArray") {
        auto texts = std::make_shared<StringArrayData>();
        for (size_t i = 2; i < words.size(); ++i) texts->value.push_back(words[i].AsString());
        return words.size() >= 2 && words[1].AsInt() == static_cast<int>(words.size()) - 2
                   ? texts
                   : nullptr;
    }
    const auto numbers = NumbersOf(words, 1);
    if (!numbers) return nullptr;
    if (type == "matrix") {
        if (numbers->size() != 16) return nullptr;
        auto matrix = std::make_shared<MatrixData>();
        std::ranges::copy(*numbers, matrix->value[0]);
        return matrix;
    }
    if (const auto kind = TupleKind(type); kind != MFnNumericData::kInvalid) {
        if (static_cast<int>(numbers->size()) != MFnNumericData::Count(kind)) return nullptr;
        auto tuple = std::make_shared<NumericData>(Tuple{kind, {}});
        std::ranges::copy(*numbers, tuple->value.numbers);
        return tuple;
    }
    if (type == "pointArray") return MakePoints<PointArrayData>(*numbers, 4);
    if (type == "vectorArray") return MakePoints<VectorArrayData>(*numbers, 3);
    const bool counted =
        !numbers->empty() && (*numbers)[0] == static_cast<double>(numbers->size() - 1);
    if (type == "doubleArray" && counted)
        return std::make_shared<DoubleArrayData>(
            std::vector<double>(numbers->begin() + 1, numbers->end()));
    if (type == "Int32Array" && counted)
        return std::make_shared<IntArrayData>(
            std::vector<int>(numbers->begin() + 1, numbers->end()));
    return nullptr;
}

Answer SetNumbers(Modifier& edits, const Plug& plug, std::vector<double> numbers) {
    if (!plug.attribute->IsCompound()) {
        if (numbers.size() != 1) return CommandError{plug.FullName() + " takes one number"};
        if (edits.Set(plug, FromScript(*plug.attribute, numbers[0]))) return {};
        return CommandError{edits.error()};
    }
    const auto& parts = plug.attribute->children;
    for (size_t i = 0; i < numbers.size() && i < parts.size(); ++i)
        numbers[i] = FromScript(*parts[i], numbers[i]);
    return edits.SetNumbers(plug, numbers) ? Answer() : Answer(CommandError{edits.error()});
}

Answer SetPlug(Modifier& edits, const Plug& plug, const ParsedFlags& flags) {
    const Words& words = flags.Objects();
    const std::string type = flags.Get("type").AsString();
    if (plug.IsArray()) return CommandError{plug.FullName() + " is an array: tell an index"};
    const bool isPlain = plug.attribute->IsNumber() || plug.attribute->IsCompound();
    if (isPlain && type != "string" && type != "matrix") {
        const auto numbers = NumbersOf(words, 1);
        if (!numbers || numbers->empty()) return CommandError{plug.FullName() + " takes numbers"};
        return SetNumbers(edits, plug, *numbers);
    }
    if (type.empty())
        return CommandError{plug.FullName() + " holds data: say of which type with -type"};
    const auto data = MakeTypedData(type, words);
    if (!data) return CommandError{"the values are not what -type \"" + type + "\" takes"};
    return edits.Set(plug, data) ? Answer() : Answer(CommandError{edits.error()});
}

void AddSetAttr(Host& host) {
    Syntax syntax;
    syntax.AddFlag("typ", "type", {Argument::String});
    syntax.SetObjects(1, -1);
    AddEdit(host, "setAttr", std::move(syntax),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                Plug plug;
                CommandError error;
                if (!FindPlug(host, flags.Objects()[0].AsString(), plug, error)) return error;
                return SetPlug(edits, plug, flags);
            });
}

std::string TypeOf(const Attribute& a) {
    switch (a.kind) {
        case AttributeKind::Time:
            return "time";
        case AttributeKind::Angle:
            return "doubleAngle";
        case AttributeKind::Distance:
            return "doubleLinear";
        case AttributeKind::Enum:
            return "enum";
        case AttributeKind::Matrix:
            return "matrix";
        case AttributeKind::Generic:
            return "generic";
        case AttributeKind::Compound:
            return "TdataCompound";
        case AttributeKind::Message:
            return "message";
        case AttributeKind::Typed:
            switch (a.dataType) {
                case MFnData::kMesh:
                    return "mesh";
                case MFnData::kString:
                    return "string";
                case MFnData::kMatrix:
                    return "matrix";
                case MFnData::kStringArray:
                    return "stringArray";
                case MFnData::kDoubleArray:
                    return "doubleArray";
                case MFnData::kIntArray:
                    return "Int32Array";
                case MFnData::kPointArray:
                    return "pointArray";
                case MFnData::kVectorArray:
                    return "vectorArray";
                case MFnData::kComponentList:
                    return "componentList";
                default:
                    return "typed";
            }
        case AttributeKind::Numeric:
            break;
    }
    switch (a.numeric) {
        case MFnNumericData::kBoolean:
            return "bool";
        case MFnNumericData::kByte:
        case MFnNumericData::kChar:
            return "byte";
        case MFnNumericData::kShort:
            return "short";
        case MFnNumericData::kInt:
            return "long";
        case MFnNumericData::kFloat:
            return "float";
        case MFnNumericData::k2Short:
            return "short2";
        case MFnNumericData::k3Short:
            return "short3";
        case MFnNumericData::k2Int:
            return "long2";
        case MFnNumericData::k3Int:
            return "long3";
        case MFnNumericData::k2Float:
            return "float2";
        case MFnNumericData::k3Float:
            return "float3";
        case MFnNumericData::k2Double:
            return "double2";
        case MFnNumericData::k3Double:
            return "double3";
        default:
            return "double";
    }
}

std::vector<int> Indices(const Plug& plug) {
    std::vector<int> indices;
    if (const Slot* slot = plug.IsArray() ? plug.Find() : nullptr)
        for (const auto& element : slot->parts) indices.push_back(element->index);
    return indices;
}

void AddGetAttr(Host& host) {
    Syntax syntax;
    for (const auto& [brief, name] : {std::pair{"typ", "type"},
                                      {"k", "keyable"},
                                      {"s", "size"},
                                      {"mi", "multiIndices"},
                                      {"se", "settable"}})
        syntax.AddFlag(brief, name);
    syntax.AddFlag("t", "time", {Argument::Float});
    syntax.SetObjects(1, 1);
    AddQuestion(host, "getAttr", std::move(syntax), [&host](const ParsedFlags& flags) -> Answer {
        Plug plug;
        CommandError error;
        if (!FindPlug(host, flags.Objects()[0].AsString(), plug, error)) return error;
        if (flags.IsSet("type")) return Value(TypeOf(*plug.attribute));
        if (flags.IsSet("keyable")) return Value(plug.attribute->isKeyable);
        if (flags.IsSet("size")) return Value(static_cast<int>(Indices(plug).size()));
        if (flags.IsSet("multiIndices")) return Value(Indices(plug));
        if (flags.IsSet("settable")) {
            const Slot* slot = plug.Find();
            return Value(plug.attribute->isWritable && !(slot && slot->IsFed()));
        }
        return PlugValue(plug);
    });
}

/// The plugs that a command's two objects name.
bool FindTwoPlugs(Host& host, const ParsedFlags& flags, Plug& from, Plug& to, CommandError& error) {
    return FindPlug(host, flags.Objects()[0].AsString(), from, error) &&
           FindPlug(host, flags.Objects()[1].AsString(), to, error);
}

void AddConnections(Host& host) {
    Syntax connect;
    connect.AddFlag("f", "force");
    connect.AddFlag("na", "nextAvailable");
    connect.SetObjects(2, 2);
    AddEdit(host, "connectAttr", std::move(connect),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                Plug from, to;
                CommandError error;
                if (!FindTwoPlugs(host, flags, from, to, error)) return error;
                if (flags.IsSet("nextAvailable") && to.IsArray()) {
                    const auto indices = Indices(to);
                    to = to.Element(indices.empty() ? 0 : indices.back() + 1);
                }
                if (!edits.Connect(from, to, flags.IsSet("force")))
                    return CommandError{edits.error()};
                return Value("Connected " + from.FullName() + " to " + to.FullName() + ".");
            });
    Syntax disconnect;
    disconnect.SetObjects(2, 2);
    AddEdit(host, "disconnectAttr", std::move(disconnect),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                Plug from, to;
                CommandError error;
                if (!FindTwoPlugs(host, flags, from, to, error)) return error;
                const Slot *source = from.Find(), *target = to.Find();
                if (!source || !target || target->source != source)
                    return CommandError{from.FullName() + " is not connected to " + to.FullName()};
                edits.Disconnect(to);
                return Value("Disconnect " + from.FullName() + " from " + to.FullName() + ".");
            });
    Syntax is;
    is.SetObjects(2, 2);
    AddQuestion(host, "isConnected", std::move(is), [&host](const ParsedFlags& flags) -> Answer {
        Plug from, to;
        CommandError error;
        if (!FindTwoPlugs(host, flags, from, to, error)) return error;
        const Slot *source = from.Find(), *target = to.Find();
        return Value(source && target && target->source == source);
    });
    Syntax remove;
    remove.AddFlag("b", "break", {Argument::Boolean});
    remove.SetObjects(1, -1);
    AddEdit(host, "removeMultiInstance", std::move(remove),
            [&host](Modifier& edits, const ParsedFlags& flags) -> Answer {
                for (const Value& name : flags.Objects()) {
                    Plug plug;
                    CommandError error;
                    if (!FindPlug(host, name.AsString(), plug, error)) return error;
                    if (!edits.RemoveElement(plug)) return CommandError{edits.error()};
                }
                return {};
            });
}

/// Every connection at or below a slot: its own end, then the other end.
void Collect(const Slot& slot, bool sources, bool destinations,
             std::vector<std::pair<Plug, Plug>>& found) {
    if (sources && slot.source) found.emplace_back(Plug(slot), Plug(*slot.source));
    if (destinations)
        for (const Slot* target : slot.destinations) found.emplace_back(Plug(slot), Plug(*target));
    for (const auto& part : slot.parts) Collect(*part, sources, destinations, found);
}

void AddListConnections(Host& host) {
    Syntax syntax;
    syntax.AddFlag("s", "source", {Argument::Boolean});
    syntax.AddFlag("d", "destination", {Argument::Boolean});
    syntax.AddFlag("p", "plugs", {Argument::Boolean});
    syntax.AddFlag("c", "connections", {Argument::Boolean});
    syntax.AddFlag("t", "type", {Argument::String});
    syntax.SetObjects(0, -1);
    AddQuestion(
        host, "listConnections", std::move(syntax), [&host](const ParsedFlags& flags) -> Answer {
            std::vector<Named> objects;
            CommandError error;
            if (!FindObjects(host, flags, objects, error)) return error;
            const bool sources = !flags.IsSet("source") || flags.Get("source").AsBool();
            const bool destinations =
                !flags.IsSet("destination") || flags.Get("destination").AsBool();
            std::vector<std::pair<Plug, Plug>> found;
            for (const Named& object : objects) {
                if (object.plug.IsNull()) {
                    for (const Slot& root : object.node->roots())
                        Collect(root, sources, destinations, found);
                } else if (const Slot* slot = object.plug.Find()) {
                    Collect(*slot, sources, destinations, found);
                }
            }
            std::vector<std::string> names;
            for (const auto& [own, other] : found) {
                if (flags.IsSet("type") && !IsOfType(*other.node, flags.Get("type").AsString()))
                    continue;
                if (flags.Get("connections").AsBool()) names.push_back(own.FullName());
                names.push_back(flags.Get("plugs").AsBool() ? other.FullName()
                                                            : other.node->UniqueName());
            }
            return Value(std::move(names));
        });
}

void AddListAttr(Host& host) {
    Syntax syntax;
    for (const auto& [brief, name] : {std::pair{"k", "keyable"},
                                      {"m", "multi"},
                                      {"sn", "shortNames"},
                                      {"w", "write"},
                                      {"r", "read"},
                                      {"v", "visible"}})
        syntax.AddFlag(brief, name);
    syntax.AddFlag("st", "string", {Argument::String});
    syntax.SetObjects(0, -1);
    AddQuestion(host, "listAttr", std::move(syntax), [&host](const ParsedFlags& flags) -> Answer {
        std::vector<Named> objects;
        CommandError error;
        if (!FindObjects(host, flags, objects, error)) return error;
        std::vector<std::string> names;
        const auto list = [&](auto&& self, const Attribute& a) -> void {
            const bool fits =
                (!flags.IsSet("keyable") || a.isKeyable) && (!flags.IsSet("multi") || a.isArray) &&
                (!flags.IsSet("write") || a.isWritable) && (!flags.IsSet("read") || a.isReadable) &&
                (!flags.IsSet("visible") || !a.isHidden) &&
                (!flags.IsSet("string") || a.Matches(flags.Get("string").AsString()));
            if (fits) names.push_back(flags.IsSet("shortNames") ? a.shortName : a.longName);
            for (const auto& child : a.children) self(self, *child);
        };
        for (const Named& object : objects) {
            if (object.plug.IsNull())
                for (const auto& a : object.node->type().attributes()) list(list, *a);
            else
                list(list, *object.plug.attribute);
        }
        return Value(std::move(names));
    });
}

void AddAttributeQuery(Host& host) {
    Syntax syntax;
    syntax.AddFlag("n", "node", {Argument::String});
    syntax.AddFlag("typ", "type", {Argument::String});
    for (const auto& [brief, name] : {std::pair{"ex", "exists"},
                                      {"sn", "shortName"},
                                      {"ln", "longName"},
                                      {"m", "multi"},
                                      {"k", "keyable"},
                                      {"h", "hidden"},
                                      {"st", "storable"},
                                      {"at", "attributeType"},
                                      {"ld", "listDefault"},
                                      {"le", "listEnum"},
                                      {"lc", "listChildren"}})
        syntax.AddFlag(brief, name);
    syntax.SetObjects(1, 1);
    AddQuestion(host, "attributeQuery", std::move(syntax),
                [&host](const ParsedFlags& flags) -> Answer {
                    CommandError error;
                    const NodeType* type = nullptr;
                    NodePtr node;
                    NodeTypePtr held;
                    if (flags.IsSet("type")) {
                        held = host.types.Find(flags.Get("type").AsString());
                        type = held.get();
                    } else if ((node = FindNode(host, flags.Get("node").AsString(), error))) {
                        type = &node->type();
                    }
                    if (!type)
                        return CommandError{"say of what with -node NODE or -type TYPE" +
                                            (error.message.empty() ? "" : ": " + error.message)};
                    const std::string name = flags.Objects()[0].AsString();
                    const Attribute* a = type->Find(name);
                    if (flags.IsSet("exists")) return Value(a != nullptr);
                    if (!a) return CommandError{type->name + " has no attribute '" + name + "'"};
                    if (flags.IsSet("shortName")) return Value(a->shortName);
                    if (flags.IsSet("longName")) return Value(a->longName);
                    if (flags.IsSet("multi")) return Value(a->isArray);
                    if (flags.IsSet("keyable")) return Value(a->isKeyable);
                    if (flags.IsSet("hidden")) return Value(a->isHidden);
                    if (flags.IsSet("storable")) return Value(a->isStorable);
                    if (flags.IsSet("attributeType")) return Value(TypeOf(*a));
                    std::vector<std::string> names;
                    if (flags.IsSet("listEnum"))
                        for (const auto& field : a->fields) names.push_back(field.first);
                    if (flags.IsSet("listChildren"))
                        for (const auto& child : a->children) names.push_back(child->longName);
                    if (!flags.IsSet("listDefault")) return Value(std::move(names));
                    std::vector<double> defaults;
                    if (a->children.empty())
                        defaults.push_back(ToScript(*a, NumberOf(a->defaultValue)));
                    for (const auto& child : a->children)
                        defaults.push_back(ToScript(*child, NumberOf(child->defaultValue)));
                    return Value(std::move(defaults));
                });
}

}  // namespace

void AddPlugCommands(Host& host) {
    AddGetAttr(host);
    AddSetAttr(host);
    AddConnections(host);
    AddListConnections(host);
    AddListAttr(host);
    AddAttributeQuery(host);
}

}  // namespace minihost
