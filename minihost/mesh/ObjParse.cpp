#include <algorithm>
#include <charconv>
#include <climits>
#include <filesystem>
#include <unordered_map>

#include "minihost/base/WholeFile.h"
#include "minihost/mesh/ObjFile.h"
#include "minihost/mesh/ObjLines.h"

namespace minihost {
namespace {

/// Each polygon is noted in each of its groups: without a limit a short file could fill the memory.
constexpr size_t kMostGroups = 64;

/// The numbers that corners name, which may come later in the file than the corner.
struct Names {
    int highest = -1;
    size_t line = 0;

    void Note(int number, size_t at) {
        if (number > highest) highest = number, line = at;
    }
};

/// Polygons by a name that lines set for what follows.
class ByName {
  public:
    NamedPolygons& At(std::string_view name) {
        const auto [found, isNew] = places_.try_emplace(std::string(name), named_.size());
        if (isNew) named_.push_back({found->first, {}});
        return named_[found->second];
    }
    size_t PlaceOf(std::string_view name) { return static_cast<size_t>(&At(name) - named_.data()); }
    std::vector<NamedPolygons>& all() { return named_; }

  private:
    std::vector<NamedPolygons> named_;
    std::unordered_map<std::string, size_t> places_;
};

class ObjParser {
  public:
    ObjParser(std::string_view text, std::string& error) : lines_(text), error_(error) {}

    bool Parse(ObjFile& file) {
        while (lines_.Next())
            if (!Line(file)) return false;
        if (!CheckNames(verts_, points_.size(), "vertex") ||
            !CheckNames(uvNames_, uvs_.size(), "UV"))
            return false;
        Split(file);
        return true;
    }

  private:
    /// How much of everything there is at a place of the file.
    struct Place {
        size_t polygon, corner, point, uv;
    };
    struct Object {
        std::string name;
        Place start;
    };

    Place Here() const { return {counts_.size(), corners_.size(), points_.size(), uvs_.size()}; }

    bool Fail(const std::string& reason) { return lines_.Fail(error_, reason); }

    bool Line(ObjFile& file) {
        const std::string_view word = lines_.Word();
        if (word == "v") return Vertex();
        if (word == "vt") return TexturePoint();
        if (word == "f") return Face();
        if (word == "g") return Groups();
        if (word == "usemtl") {
            const std::string_view name = lines_.Rest();
            material_ = name.empty() ? -1 : static_cast<int>(materials_.PlaceOf(name));
        } else if (word == "mtllib") {
            file.libraries.emplace_back(lines_.Rest());
        } else if (word == "o") {
            objects_.push_back({std::string(lines_.Rest()), Here()});
        }
        return true;
    }

    bool Groups() {
        current_.clear();
        for (auto name = lines_.Word(); !name.empty(); name = lines_.Word()) {
            if (name == "default") continue;
            const size_t group = groups_.PlaceOf(name);
            if (std::ranges::count(current_, group)) continue;
            if (current_.size() == kMostGroups)
                return Fail("a polygon can be in " + std::to_string(kMostGroups) + " groups");
            current_.push_back(group);
        }
        return true;
    }

    bool Vertex() {
        float n[7];
        size_t count = 0;
        while (count < 7 && lines_.Number(n[count])) ++count;
        if (count < 3 || count == 5 || !lines_.Word().empty())
            return Fail("a vertex is 3 numbers, then a weight or a colour");
        if (points_.size() == INT_MAX) return Fail("too many vertices");
        if (count >= 6 && colors_.size() == points_.size())
            colors_.emplace_back(n[count - 3], n[count - 2], n[count - 1]);
        points_.emplace_back(n[0], n[1], n[2]);
        return true;
    }

    bool TexturePoint() {
        UV uv;
        if (!lines_.Number(uv.u)) return Fail("a UV is 2 numbers");
        if (!lines_.Number(uv.v)) uv.v = 0;
        if (uvs_.size() == INT_MAX) return Fail("too many UVs");
        uvs_.push_back(uv);
        return true;
    }

    bool Face() {
        int corners = 0;
        for (auto word = lines_.Word(); !word.empty(); word = lines_.Word(), ++corners)
            if (!Corner(word)) return false;
        if (corners < 3) return Fail("a polygon has at least 3 corners");
        const int polygon = static_cast<int>(counts_.size());
        counts_.push_back(corners);
        for (const size_t group : current_) groups_.all()[group].polygons.push_back(polygon);
        if (material_ >= 0) materials_.all()[size_t(material_)].polygons.push_back(polygon);
        return true;
    }

    /// "v", "v/vt", "v//vn", "v/vt/vn".
    bool Corner(std::string_view word) {
        int vertex = 0, uv = -1;
        if (corners_.size() == INT_MAX) return Fail("too many corners");
        if (!Index(word, points_.size(), vertex))
            return Fail("'" + std::string(word) + "' names no vertex");
        verts_.Note(vertex, lines_.line());
        if (!word.empty() && word[0] == '/') {
            word.remove_prefix(1);
            if (!word.empty() && word[0] != '/') {
                if (!Index(word, uvs_.size(), uv))
                    return Fail("'" + std::string(word) + "' names no UV");
                uvNames_.Note(uv, lines_.line());
            }
        }
        corners_.push_back(vertex);
        if (uv >= 0 || !uvIds_.empty()) {
            uvIds_.resize(corners_.size() - 1, -1);
            uvIds_.push_back(uv);
        }
        return true;
    }

    /// Takes a number off the front of a word: from 1, or back from the last.
    static bool Index(std::string_view& word, size_t count, int& index) {
        int number = 0;
        const char* end = word.data() + word.size();
        const auto [behind, wrong] = std::from_chars(word.data(), end, number);
        if (wrong != std::errc() || number == 0 || (behind != end && *behind != '/')) return false;
        word.remove_prefix(static_cast<size_t>(behind - word.data()));
        index = number > 0 ? number - 1 : static_cast<int>(static_cast<long long>(count) + number);
        return index >= 0;
    }

    bool CheckNames(const Names& names, size_t count, const char* what) {
        if (names.highest < 0 || static_cast<size_t>(names.highest) < count) return true;
        error_ = std::to_string(names.line) + ": " + what + " " +
                 std::to_string(names.highest + 1ll) + " of " + std::to_string(count) + " is named";
        return false;
    }

    bool CanSplit() const;
    void Split(ObjFile& file);
    static void Share(const NamedPolygons& named, const std::vector<Object>& parts,
                      std::vector<ObjMesh>& meshes, std::vector<NamedPolygons> ObjMesh::*list);
    ObjMesh Part(const Place& from, const Place& to, const std::string& name);

    ObjLines lines_;
    std::string& error_;
    std::vector<MFloatVector> points_, colors_;
    std::vector<UV> uvs_;
    std::vector<int> counts_, corners_, uvIds_;
    Names verts_, uvNames_;
    ByName groups_, materials_;
    std::vector<size_t> current_;
    int material_ = -1;
    std::vector<Object> objects_;
};

/// Whether each object's polygons name only what stands in its own part of the file.
bool ObjParser::CanSplit() const {
    if (objects_.size() < 2 || objects_[0].start.polygon > 0) return false;
    for (size_t o = 0; o < objects_.size(); ++o) {
        const Place from = o == 0 ? Place{} : objects_[o].start;
        const Place to = o + 1 < objects_.size() ? objects_[o + 1].start : Here();
        if (from.polygon == to.polygon) return false;
        const auto isOwn = [](int name, size_t first, size_t end) {
            return name < 0 ||
                   (static_cast<size_t>(name) >= first && static_cast<size_t>(name) < end);
        };
        for (size_t c = from.corner; c < to.corner; ++c)
            if (!isOwn(corners_[c], from.point, to.point) ||
                (!uvIds_.empty() && !isOwn(uvIds_[c], from.uv, to.uv)))
                return false;
    }
    return true;
}

void ObjParser::Split(ObjFile& file) {
    if (!uvIds_.empty()) uvIds_.resize(corners_.size(), -1);
    std::vector<Object> parts{{objects_.size() == 1 ? objects_[0].name : "", {}}};
    if (CanSplit()) {
        parts = objects_;
        parts[0].start = {};
    }
    for (size_t i = 0; i < parts.size(); ++i)
        file.meshes.push_back(Part(
            parts[i].start, i + 1 < parts.size() ? parts[i + 1].start : Here(), parts[i].name));
    for (const NamedPolygons& group : groups_.all())
        Share(group, parts, file.meshes, &ObjMesh::groups);
    for (const NamedPolygons& material : materials_.all())
        Share(material, parts, file.meshes, &ObjMesh::materials);
}

/// Gives each mesh those of the polygons under a name that it has.
void ObjParser::Share(const NamedPolygons& named, const std::vector<Object>& parts,
                      std::vector<ObjMesh>& meshes, std::vector<NamedPolygons> ObjMesh::*list) {
    size_t i = 0, shared = parts.size();
    for (const int polygon : named.polygons) {
        const auto p = static_cast<size_t>(polygon);
        if (i + 1 < parts.size() && parts[i + 1].start.polygon <= p)
            i = static_cast<size_t>(
                    std::ranges::upper_bound(parts, p, {},
                                             [](const Object& o) { return o.start.polygon; }) -
                    parts.begin()) -
                1;
        auto& mine = meshes[i].*list;
        if (i != shared) mine.push_back({named.name, {}});
        shared = i;
        mine.back().polygons.push_back(polygon - static_cast<int>(parts[i].start.polygon));
    }
}

ObjMesh ObjParser::Part(const Place& from, const Place& to, const std::string& name) {
    const auto part = [](const auto& all, size_t first, size_t end) {
        return std::decay_t<decltype(all)>(all.begin() + static_cast<long>(first),
                                           all.begin() + static_cast<long>(end));
    };
    std::vector<int> corners = part(corners_, from.corner, to.corner);
    for (int& v : corners) v -= static_cast<int>(from.point);
    ObjMesh result{name, nullptr, {}, {}};
    std::string error;
    result.mesh =
        MeshData::Make(part(points_, from.point, to.point), part(counts_, from.polygon, to.polygon),
                       std::move(corners), error);
    if (!uvIds_.empty()) {
        std::vector<int> ids = part(uvIds_, from.corner, to.corner);
        for (int& id : ids)
            if (id >= 0) id -= static_cast<int>(from.uv);
        result.mesh->uvSets[0].corners.Set(std::move(ids));
    }
    result.mesh->uvSets[0].values.Set(part(uvs_, from.uv, to.uv));
    if (!points_.empty() && colors_.size() == points_.size()) {
        ColorSet& set = result.mesh->colorSets.emplace_back();
        set.name = result.mesh->currentColorSet = "colorSet1";
        std::vector<MColor> colors;
        for (const MFloatVector& c : part(colors_, from.point, to.point))
            colors.emplace_back(c.x, c.y, c.z);
        set.values.Set(std::move(colors));
        set.corners.Set(result.mesh->polygons().corners);
    }
    return result;
}

}  // namespace

bool ParseObj(std::string_view text, ObjFile& file, std::string& error) {
    if (text.starts_with("\xef\xbb\xbf")) text.remove_prefix(3);
    if (text.find('\0') != text.npos) {
        error = "1: a byte that is 0: this is no text";
        return false;
    }
    return ObjParser(text, error).Parse(file);
}

bool ParseMtl(std::string_view text, std::vector<ObjMaterial>& materials, std::string& error) {
    ObjLines lines(text);
    const size_t before = materials.size();
    while (lines.Next()) {
        const std::string_view word = lines.Word();
        if (word == "newmtl") materials.emplace_back().name = lines.Rest();
        if (materials.size() == before) continue;
        ObjMaterial& material = materials.back();
        bool valid = true;
        if (word == "Kd") {
            MFloatVector& c = material.color;
            valid = lines.Number(c.x) && lines.Number(c.y) && lines.Number(c.z);
        } else if (word == "d") {
            float opacity = 1;
            valid = lines.Number(opacity);
            material.transparency = 1 - opacity;
        } else if (word == "map_Kd") {
            material.texture = lines.Rest();
        }
        if (!valid) return lines.Fail(error, "'" + std::string(word) + "' takes numbers");
    }
    return true;
}

bool ReadObjFile(const std::string& path, ObjFile& file, std::string& error) {
    std::string text;
    if (!ReadWholeFile(path, text, error)) return false;
    if (!ParseObj(text, file, error)) {
        error = path + ":" + error;
        return false;
    }
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    for (const std::string& name : file.libraries) {
        const std::string library = folder / name;
        std::string ignored;
        if (!ReadWholeFile(library, text, ignored)) continue;
        if (!ParseMtl(text, file.materials, error)) {
            error = library + ":" + error;
            return false;
        }
    }
    for (ObjMaterial& material : file.materials)
        if (!material.texture.empty()) material.texture = folder / material.texture;
    return true;
}

}  // namespace minihost
