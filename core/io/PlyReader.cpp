#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "core/io/FloatText.h"
#include "core/io/PlyFile.h"
#include "core/io/Quoted.h"
#include "core/io/ReadParsed.h"

namespace VantrelSDK {

namespace {

static_assert(std::endian::native == std::endian::little);

constexpr size_t kReportEvery = 1 << 16;  // rows between two reports of progress

enum class Type { kInt8, kUint8, kInt16, kUint16, kInt32, kUint32, kFloat, kDouble };

struct TypeFacts {
    std::string_view name, other;
    Type type;
    int size;
    double least, most;
};
constexpr TypeFacts kTypes[] = {
    {"char", "int8", Type::kInt8, 1, INT8_MIN, INT8_MAX},
    {"uchar", "uint8", Type::kUint8, 1, 0, UINT8_MAX},
    {"short", "int16", Type::kInt16, 2, INT16_MIN, INT16_MAX},
    {"ushort", "uint16", Type::kUint16, 2, 0, UINT16_MAX},
    {"int", "int32", Type::kInt32, 4, INT32_MIN, INT32_MAX},
    {"uint", "uint32", Type::kUint32, 4, 0, UINT32_MAX},
    {"float", "float32", Type::kFloat, 4, 0, 0},
    {"double", "float64", Type::kDouble, 8, 0, 0},
};

const TypeFacts& FactsOf(Type type) {
    return kTypes[static_cast<int>(type)];
}
bool IsReal(Type type) {
    return type == Type::kFloat || type == Type::kDouble;
}

/// What a property is to a mesh: a number of a vertex, a list of a face, or nothing.
enum Role { kX, kY, kZ, kRed, kGreen, kBlue, kU, kV, kNumVertexRoles, kIndices, kTexcoord, kNone };

constexpr std::pair<std::string_view, Role> kVertexRoles[] = {
    {"x", kX}, {"y", kY}, {"z", kZ}, {"red", kRed}, {"green", kGreen}, {"blue", kBlue},
    {"s", kU}, {"t", kV}, {"u", kU}, {"v", kV},     {"texture_u", kU}, {"texture_v", kV}};

struct Property {
    std::string name;
    Type type = Type::kFloat;
    /// The type of a list's length; none for a single number.
    std::optional<Type> length;
    Role role = kNone;

    /// Bytes that it takes at least.
    size_t LeastSize(bool ascii) const {
        return ascii ? 2 : static_cast<size_t>(FactsOf(length ? *length : type).size);
    }
};

struct Element {
    std::string name;
    size_t count = 0;
    std::vector<Property> properties;

    bool Has(Role role) const {
        return std::any_of(properties.begin(), properties.end(),
                           [=](const Property& p) { return p.role == role; });
    }
};

class PlyParser {
  public:
    PlyParser(std::string_view bytes, FileError& error, LProgressCallback* progress)
        : begin_(bytes.data()),
          p_(bytes.data()),
          end_(bytes.data() + bytes.size()),
          error_(error),
          progress_(progress) {}

    bool Parse() {
        return ReadHeader() && CheckHeader() && ReadElements() && CheckEnd() && CheckCorners();
    }
    PolyMesh TakeMesh() { return std::move(mesh_); }

  private:
    bool ReadHeader();
    bool ReadFormat();
    bool ReadElement();
    bool ReadProperty();
    bool CheckHeader();
    bool ReadElements();
    bool ReadRow(const Element& element);
    bool ReadList(const Property& property);
    bool ReadValue(const Property& property, Type type, double& value);
    bool ReadBinary(Type type, double& value);
    bool ReadText(const Property& property, Type type, double& value);
    bool EndRow(const Element& element);
    bool TakeVertex(const Element& element);
    bool TakeFace();
    bool CheckEnd();
    bool CheckCorners();

    bool NextLine();
    std::string_view NextWord();
    bool ReadType(Type& type);
    bool Fail(std::string message);
    /// A message about the running row.
    bool FailRow(std::string message);

    const char* begin_;
    const char* p_;
    const char* end_;
    FileError& error_;
    LProgressCallback* progress_;
    PolyMesh mesh_;

    size_t line_ = 0;
    /// What is left of the line.
    std::string_view rest_;
    bool ascii_ = false;
    std::vector<Element> elements_;
    const Element* element_ = nullptr;
    size_t row_ = 0, firstFaceLine_ = 0;
    double values_[kNumVertexRoles] = {};
    std::vector<double> indices_, texcoords_;
    bool hasFaceUVs_ = false, hasVertexUVs_ = false;
};

bool PlyParser::Fail(std::string message) {
    error_.line = line_;
    error_.message = std::move(message);
    return false;
}

bool PlyParser::FailRow(std::string message) {
    if (!ascii_) line_ = 0;
    return Fail(fmt::format("{} {}: {}", element_->name, row_, message));
}

/// The next line without its end; false where there is none.
bool PlyParser::NextLine() {
    ++line_;
    if (p_ == end_) return false;
    const char* const start = p_;
    p_ = std::find(p_, end_, '\n');
    rest_ = {start, static_cast<size_t>(p_ - start)};
    if (p_ < end_) ++p_;
    if (rest_.ends_with('\r')) rest_.remove_suffix(1);
    return true;
}

/// The next word of the line, empty at its end.
std::string_view PlyParser::NextWord() {
    const size_t start = std::min(rest_.find_first_not_of(" \t"), rest_.size());
    const size_t end = std::min(rest_.find_first_of(" \t", start), rest_.size());
    const std::string_view word = rest_.substr(start, end - start);
    rest_.remove_prefix(end);
    return word;
}

bool PlyParser::ReadHeader() {
    if (!NextLine() || rest_ != "ply") return Fail("this is not a PLY file: it starts otherwise");
    if (!NextLine() || NextWord() != "format") return Fail("expected the format");
    if (!ReadFormat()) return false;
    while (NextLine()) {
        const std::string_view keyword = NextWord();
        if (keyword == "end_header") return true;
        if (keyword == "comment" || keyword == "obj_info") continue;
        const bool ok = keyword == "element"    ? ReadElement()
                        : keyword == "property" ? ReadProperty()
                                                : Fail(Quoted(keyword) + " is not a keyword");
        if (!ok) return false;
        if (!NextWord().empty()) return Fail("more words than the line takes");
    }
    return Fail("the header has no end");
}

bool PlyParser::ReadFormat() {
    const std::string_view format = NextWord(), version = NextWord();
    ascii_ = format == "ascii";
    if (!ascii_ && format != "binary_little_endian")
        return Fail("the format " + Quoted(format) +
                    " is not read; write the file as ascii or binary_little_endian");
    return version == "1.0" || Fail("the version " + Quoted(version) + " is not 1.0");
}

bool PlyParser::ReadElement() {
    Element element;
    element.name = NextWord();
    const std::string_view count = NextWord();
    const auto [behind, ec] =
        std::from_chars(count.data(), count.data() + count.size(), element.count);
    if (element.name.empty() || count.empty() || ec != std::errc() ||
        behind != count.data() + count.size() || element.count > INT_MAX)
        return Fail("an element has a name and a count up to 2147483647");
    for (const Element& other : elements_)
        if (other.name == element.name)
            return Fail("the element " + Quoted(element.name) + " comes twice");
    elements_.push_back(std::move(element));
    return true;
}

bool PlyParser::ReadType(Type& type) {
    const std::string_view word = NextWord();
    for (const TypeFacts& facts : kTypes)
        if (word == facts.name || word == facts.other) return type = facts.type, true;
    return Fail(Quoted(word) + " is not a type");
}

bool PlyParser::ReadProperty() {
    if (elements_.empty()) return Fail("a property before the first element");
    Property property;
    const std::string_view line = rest_;
    if (NextWord() == "list") {
        Type length;
        if (!ReadType(length)) return false;
        if (IsReal(length)) return Fail("the length of a list is a whole number");
        property.length = length;
    } else {
        rest_ = line;
    }
    if (!ReadType(property.type)) return false;
    property.name = NextWord();
    if (property.name.empty()) return Fail("a property has a name");
    Element& element = elements_.back();
    for (const Property& other : element.properties)
        if (other.name == property.name)
            return Fail("the property " + Quoted(property.name) + " comes twice");
    if (element.name == "vertex" && !property.length)
        for (const auto& [name, role] : kVertexRoles)
            if (property.name == name && !element.Has(role)) property.role = role;
    if (element.name == "face" && property.length) {
        const bool indices = property.name == "vertex_indices" || property.name == "vertex_index";
        if (indices && !element.Has(kIndices)) property.role = kIndices;
        if (property.name == "texcoord") property.role = kTexcoord;
    }
    if (property.role == kIndices && IsReal(property.type))
        return Fail("vertex numbers are whole numbers");
    const bool color = property.role >= kRed && property.role <= kBlue;
    if (color && !IsReal(property.type) && property.type != Type::kUint8 &&
        property.type != Type::kUint16)
        return Fail("a colour is of uchar, ushort, float or double");
    element.properties.push_back(std::move(property));
    return true;
}

/// What a mesh needs is there, and what is announced can be.
bool PlyParser::CheckHeader() {
    bool hasVertices = false;
    for (const Element& element : elements_) {
        const auto needs = [&](Role role, const char* what) {
            return element.Has(role) ||
                   Fail(fmt::format("the element {} has no {}", element.name, what));
        };
        size_t least = 0;
        for (const Property& property : element.properties) least += property.LeastSize(ascii_);
        if (element.name == "vertex") {
            hasVertices = true;
            if (!needs(kX, "x") || !needs(kY, "y") || !needs(kZ, "z")) return false;
            hasVertexUVs_ = element.Has(kU) && element.Has(kV);
        }
        if (element.name == "face" && !needs(kIndices, "vertex_indices")) return false;
        hasFaceUVs_ |= element.Has(kTexcoord);
        if (element.count > 0 && least == 0)
            return Fail("the element " + Quoted(element.name) + " has no properties");
        // The last row of a text may lack its line end.
        const size_t room = static_cast<size_t>(end_ - p_) + 1;
        if (element.count > 0 && element.count > room / least)
            return Fail(fmt::format("{} rows of {} can't be in the {} bytes behind the header",
                                    element.count, Quoted(element.name), room - 1));
    }
    return hasVertices || Fail("the file has no element vertex");
}

bool PlyParser::ReadElements() {
    for (const Element& element : elements_) {
        element_ = &element;
        if (element.name == "face") firstFaceLine_ = line_ + 1;
        for (row_ = 0; row_ < element.count; ++row_) {
            if (progress_ && row_ % kReportEvery == 0) {
                line_ = ascii_ ? line_ : 0;
                if (progress_->IsCancelled()) return Fail("stopped");
                progress_->SetProgress(static_cast<float>(p_ - begin_) /
                                       static_cast<float>(end_ - begin_));
            }
            if (!ReadRow(element)) return false;
        }
    }
    return true;
}

bool PlyParser::ReadRow(const Element& element) {
    if (ascii_ && !NextLine())
        return FailRow(fmt::format("the file ends; {} rows were announced", element.count));
    for (const Property& property : element.properties) {
        if (property.length) {
            if (!ReadList(property)) return false;
            continue;
        }
        double value = 0;
        if (!ReadValue(property, property.type, value)) return false;
        if (property.role < kNumVertexRoles) values_[property.role] = value;
    }
    return EndRow(element);
}

bool PlyParser::EndRow(const Element& element) {
    if (ascii_ && !NextWord().empty()) return FailRow("more numbers than it has properties");
    if (element.name == "vertex") return TakeVertex(element);
    return element.name != "face" || TakeFace();
}

bool PlyParser::ReadList(const Property& property) {
    double length = 0;
    if (!ReadValue(property, *property.length, length)) return false;
    const size_t room = ascii_ ? rest_.size() / 2 : static_cast<size_t>(end_ - p_);
    if (!(length >= 0 && length <= static_cast<double>(room)))
        return FailRow(fmt::format("a list of {} numbers can't be there", length));
    std::vector<double>* list = property.role == kIndices    ? &indices_
                                : property.role == kTexcoord ? &texcoords_
                                                             : nullptr;
    if (list) list->clear();
    for (size_t i = 0; i < static_cast<size_t>(length); ++i) {
        double value = 0;
        if (!ReadValue(property, property.type, value)) return false;
        if (list) list->push_back(value);
    }
    return true;
}

bool PlyParser::ReadValue(const Property& property, Type type, double& value) {
    if (!(ascii_ ? ReadText(property, type, value) : ReadBinary(type, value))) return false;
    if (property.role == kNone || !IsReal(type)) return true;
    // Held as a float: what isn't in its range isn't finite there.
    return std::isfinite(static_cast<float>(value)) ||
           FailRow(fmt::format("{} is not a finite number in the range of a float", property.name));
}

bool PlyParser::ReadBinary(Type type, double& value) {
    const size_t size = FactsOf(type).size;
    if (static_cast<size_t>(end_ - p_) < size)
        return FailRow(fmt::format("the file ends; {} rows were announced", element_->count));
    const auto take = [&]<class T>(T number) {
        std::memcpy(&number, p_, sizeof number);
        value = static_cast<double>(number);
    };
    switch (type) {
        case Type::kInt8:
            take(int8_t{});
            break;
        case Type::kUint8:
            take(uint8_t{});
            break;
        case Type::kInt16:
            take(int16_t{});
            break;
        case Type::kUint16:
            take(uint16_t{});
            break;
        case Type::kInt32:
            take(int32_t{});
            break;
        case Type::kUint32:
            take(uint32_t{});
            break;
        case Type::kFloat:
            take(float{});
            break;
        case Type::kDouble:
            take(double{});
            break;
    }
    p_ += size;
    return true;
}

bool PlyParser::ReadText(const Property& property, Type type, double& value) {
    const std::string_view word = NextWord();
    if (word.empty()) return FailRow("fewer numbers than it has properties");
    const char *first = word.data(), *last = first + word.size();
    if (IsReal(type)) {
        // NaN and the like are the property's own affair where nobody reads it.
        float number = 0;
        const auto [behind, ec] = ParseFloat(first, last, number);
        if (behind != last || ec == std::errc::invalid_argument)
            return FailRow(Quoted(word) + " is not a number");
        value = ec == std::errc() ? number : std::numeric_limits<double>::infinity();
        return true;
    }
    long long number = 0;
    const auto [behind, ec] = std::from_chars(first, last, number);
    if (behind != last || ec == std::errc::invalid_argument)
        return FailRow(Quoted(word) + " is not a whole number");
    value = static_cast<double>(number);
    const TypeFacts& facts = FactsOf(type);
    if (ec == std::errc() && value >= facts.least && value <= facts.most) return true;
    return FailRow(
        fmt::format("{} is out of the range of {} of {}", Quoted(word), facts.name, property.name));
}

bool PlyParser::TakeVertex(const Element& element) {
    const auto number = [&](Role role) { return static_cast<float>(values_[role]); };
    mesh_.positions.emplace_back(number(kX), number(kY), number(kZ));
    if (hasVertexUVs_ && !hasFaceUVs_) mesh_.uvs.emplace_back(number(kU), number(kV));
    if (!element.Has(kRed) || !element.Has(kGreen) || !element.Has(kBlue)) return true;
    float color[3];
    for (const Property& property : element.properties)
        if (property.role >= kRed && property.role <= kBlue)
            color[property.role - kRed] =
                IsReal(property.type)
                    ? number(property.role)
                    : number(property.role) / static_cast<float>(FactsOf(property.type).most);
    mesh_.colours.emplace_back(color[0], color[1], color[2]);
    return true;
}

bool PlyParser::TakeFace() {
    if (indices_.size() < 3)
        return FailRow(
            fmt::format("a polygon has at least 3 corners; this one has {}", indices_.size()));
    if (mesh_.cornerVerts.size() + indices_.size() > INT_MAX) return FailRow("too many corners");
    for (const double index : indices_) {
        if (!(index >= 0 && index <= INT_MAX))
            return FailRow(fmt::format("vertex {:.0f} does not exist", index));
        mesh_.cornerVerts.push_back(static_cast<int>(index));
    }
    mesh_.polygonStart.push_back(static_cast<int>(mesh_.cornerVerts.size()));
    if (!hasFaceUVs_) return true;
    if (texcoords_.size() != 0 && texcoords_.size() != 2 * indices_.size())
        return FailRow(fmt::format("texcoord has {} numbers for {} corners", texcoords_.size(),
                                   indices_.size()));
    for (size_t c = 0; c < indices_.size(); ++c) {
        mesh_.cornerUVs.push_back(texcoords_.empty() ? -1 : static_cast<int>(mesh_.uvs.size()));
        if (!texcoords_.empty())
            mesh_.uvs.emplace_back(static_cast<float>(texcoords_[2 * c]),
                                   static_cast<float>(texcoords_[2 * c + 1]));
    }
    return true;
}

bool PlyParser::CheckEnd() {
    if (!ascii_) {
        line_ = 0;
        return p_ == end_ || Fail(fmt::format("{} bytes behind the last row", end_ - p_));
    }
    while (NextLine())
        if (!NextWord().empty()) return Fail("a line behind the last row");
    return true;
}

/// Corners of one vertex that have one UV share it: which do is told by the numbers alone.
void JoinUVs(PolyMesh& mesh) {
    std::vector<int> order(mesh.uvs.size()), vertOf(mesh.uvs.size()), joined(mesh.uvs.size());
    for (size_t c = 0; c < mesh.cornerUVs.size(); ++c)
        if (mesh.cornerUVs[c] >= 0) vertOf[mesh.cornerUVs[c]] = mesh.cornerVerts[c];
    for (size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
    const auto key = [&](int i) {
        return std::tuple(vertOf[i], std::bit_cast<uint32_t>(mesh.uvs[i].x),
                          std::bit_cast<uint32_t>(mesh.uvs[i].y));
    };
    std::sort(order.begin(), order.end(),
              [&](int a, int b) { return std::tuple(key(a), a) < std::tuple(key(b), b); });
    // Each takes the first of its kind; those that stay are numbered as they came.
    for (size_t i = 0; i < order.size(); ++i)
        joined[order[i]] =
            i > 0 && key(order[i]) == key(order[i - 1]) ? joined[order[i - 1]] : order[i];
    std::vector<int>& number = order;
    std::vector<LPoint2> uvs;
    for (size_t i = 0; i < joined.size(); ++i) {
        if (joined[i] != static_cast<int>(i)) continue;
        number[i] = static_cast<int>(uvs.size());
        uvs.push_back(mesh.uvs[i]);
    }
    for (int& uv : mesh.cornerUVs)
        if (uv >= 0) uv = number[joined[uv]];
    mesh.uvs = std::move(uvs);
}

bool PlyParser::CheckCorners() {
    const size_t count = mesh_.positions.size();
    for (int p = 0; p < mesh_.NumPolygons(); ++p)
        for (int c = mesh_.polygonStart[p]; c < mesh_.polygonStart[p + 1]; ++c)
            if (static_cast<size_t>(mesh_.cornerVerts[c]) >= count) {
                line_ = ascii_ ? firstFaceLine_ + p : 0;
                return Fail(fmt::format("face {}: vertex {} does not exist: the file has {}", p,
                                        mesh_.cornerVerts[c], count));
            }
    if (hasFaceUVs_) {
        JoinUVs(mesh_);
        if (mesh_.uvs.empty()) mesh_.cornerUVs.clear();
    } else if (hasVertexUVs_) {
        mesh_.cornerUVs = mesh_.cornerVerts;
    }
    return true;
}

}  // namespace

bool ParsePly(std::string_view bytes, PolyMesh& mesh, FileError& error,
              LProgressCallback* progress) {
    return ParseWatched(error, progress, [&] {
        PlyParser parser(bytes, error, progress);
        if (!parser.Parse()) return false;
        mesh = parser.TakeMesh();
        return true;
    });
}

bool ReadPly(const std::string& path, PolyMesh& mesh, FileError& error,
             LProgressCallback* progress) {
    return ReadParsed(path, error, [&](std::string_view bytes) {
        return ParsePly(bytes, mesh, error, progress);
    });
}

}  // namespace VantrelSDK
