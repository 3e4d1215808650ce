#include "minihost/scene/PlugPath.h"

#include <charconv>

namespace minihost {
namespace {

/// From this many elements on an array grows at its end only.
constexpr size_t kLongArray = 4096;

/// The last attribute's name and all indices of "input[2].groups[0].id". False where it is no such
/// name.
bool Split(std::string_view path, std::string& last, std::vector<int>& indices) {
    const size_t dot = path.rfind('.');
    const std::string_view tail = dot == path.npos ? path : path.substr(dot + 1);
    last = tail.substr(0, tail.find('['));
    for (size_t at = path.find('['); at != path.npos; at = path.find('[', at + 1)) {
        int index = 0;
        const char* begin = path.data() + at + 1;
        const auto [end, status] = std::from_chars(begin, path.data() + path.size(), index);
        const bool closed = end != path.data() + path.size() && *end == ']';
        if (status != std::errc() || !closed || index < 0) return false;
        indices.push_back(index);
    }
    return true;
}

}  // namespace

Slot* MakeElement(Slot& array, int index, std::string& why) {
    if (array.parts.size() < kLongArray || index > array.parts.back()->index)
        return array.Element(index);
    if (Slot* there = array.FindElement(index)) return there;
    why = "the elements of a long array do not rise";
    return nullptr;
}

Slot* MakeSlot(Node& node, std::string_view name, std::string& why) {
    std::string last;
    std::vector<int> indices;
    const Attribute* attribute = Split(name, last, indices) ? node.type().Find(last) : nullptr;
    const int depth = attribute ? attribute->ArrayDepth() : 0;
    const int given = static_cast<int>(indices.size());
    if (!attribute || given > depth || given < depth - (attribute->isArray ? 1 : 0)) {
        why = node.name() + " has no attribute '" + std::string(name) + "'";
        return nullptr;
    }
    std::vector<const Attribute*> way;
    for (const Attribute* a = attribute; a; a = a->parent) way.push_back(a);
    Slot* slot = node.Root(*way.back());
    size_t used = 0;
    for (size_t i = way.size(); slot;) {
        if (slot->IsArray() && used < indices.size())
            slot = MakeElement(*slot, indices[used++], why);
        else if (--i == 0)
            break;
        else
            slot = slot->parts[static_cast<size_t>(way[i - 1]->place)].get();
    }
    return slot;
}

}  // namespace minihost
