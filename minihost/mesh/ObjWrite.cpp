#include <charconv>
#include <cmath>
#include <filesystem>

#include "minihost/base/WholeFile.h"
#include "minihost/mesh/ObjFile.h"

namespace minihost {
namespace {

class ObjText {
  public:
    std::string text;
    /// Whether all numbers so far were finite.
    bool finite = true;

    void Add(float number) {
        finite &= std::isfinite(number);
        AddNumber(' ', number);
    }
    void Add(char before, int number) { AddNumber(before, number); }
    void Line(const char* word, std::initializer_list<float> numbers) {
        text += word;
        for (const float n : numbers) Add(n);
        text += '\n';
    }

  private:
    void AddNumber(char before, auto number) {
        char digits[32];
        digits[0] = before;
        text.append(digits, std::to_chars(digits + 1, digits + sizeof digits, number).ptr);
    }
};

/// For each polygon the lines that name what it is in, told where they change; what was told last
/// holds from mesh to mesh.
class Statements {
  public:
    Statements(const std::vector<NamedPolygons>& all, int polygons, const char* word,
               const char* none, std::string& last)
        : word_(word), none_(none), last_(last), of_(static_cast<size_t>(polygons)) {
        for (const NamedPolygons& named : all)
            for (const int p : named.polygons)
                if (p >= 0 && p < polygons) (of_[static_cast<size_t>(p)] += " ") += named.name;
    }
    void Write(int polygon, std::string& text) {
        const std::string& now = of_[static_cast<size_t>(polygon)];
        if (now != last_) ((text += word_) += now.empty() ? none_ : now) += '\n';
        last_ = now;
    }

  private:
    const char *word_, *none_;
    std::string& last_;
    std::vector<std::string> of_;
};

/// One colour for each vertex, that of its first corner; empty where the mesh has none.
std::vector<MColor> VertexColors(const MeshData& mesh) {
    const ColorSet* set = mesh.FindColorSet("");
    if (!set || set->corners->empty()) return {};
    std::vector<MColor> colors(mesh.points().size(), MColor(1, 1, 1));
    for (size_t c = mesh.numCorners(); c-- > 0;)
        if (const int id = set->At(static_cast<int>(c)); id >= 0)
            colors[static_cast<size_t>(mesh.polygons().corners[c])] = (*set->values)[size_t(id)];
    return colors;
}

struct State {
    int firstPoint = 1, firstUV = 1;
    std::string group, material;
};

void WriteMesh(const ObjMesh& part, State& state, ObjText& out) {
    const MeshData& mesh = *part.mesh;
    const std::vector<MColor> colors = VertexColors(mesh);
    for (size_t v = 0; v < mesh.points().size(); ++v) {
        const MFloatVector& p = mesh.points()[v];
        if (colors.empty())
            out.Line("v", {p.x, p.y, p.z});
        else
            out.Line("v", {p.x, p.y, p.z, colors[v].r, colors[v].g, colors[v].b});
    }
    const UVSet* uvs = mesh.FindUVSet("");
    for (const UV& uv : *uvs->values) out.Line("vt", {uv.u, uv.v});
    const Polygons& polygons = mesh.polygons();
    Statements groups(part.groups, polygons.count(), "g", " default", state.group);
    Statements materials(part.materials, polygons.count(), "usemtl", " initialShadingGroup",
                         state.material);
    for (int p = 0; p < polygons.count(); ++p) {
        groups.Write(p, out.text);
        materials.Write(p, out.text);
        out.text += 'f';
        for (int c = polygons.StartOf(p); c < polygons.StartOf(p + 1); ++c) {
            out.Add(' ', polygons.corners[static_cast<size_t>(c)] + state.firstPoint);
            if (uvs->At(c) >= 0) out.Add('/', uvs->At(c) + state.firstUV);
        }
        out.text += '\n';
    }
}

}  // namespace

bool WriteObjFile(const std::string& path, const ObjFile& file, std::string& error) {
    ObjText out, library;
    for (const ObjMaterial& m : file.materials) {
        library.text += "newmtl " + m.name + "\n";
        library.Line("Kd", {m.color.x, m.color.y, m.color.z});
        library.Line("d", {1 - m.transparency});
        if (!m.texture.empty()) library.text += "map_Kd " + m.texture + "\n";
    }
    const std::string libraryPath = std::filesystem::path(path).replace_extension(".mtl");
    if (!library.text.empty())
        out.text += "mtllib " + std::filesystem::path(libraryPath).filename().string() + "\n";
    State state;
    for (const ObjMesh& part : file.meshes) {
        if (!part.name.empty()) out.text += "o " + part.name + "\n";
        WriteMesh(part, state, out);
        state.firstPoint += part.mesh->numVertices();
        state.firstUV += static_cast<int>(part.mesh->FindUVSet("")->values->size());
    }
    if (!out.finite || !library.finite) {
        error = path + ": a position, UV or colour is not finite, and cannot be written";
        return false;
    }
    return (library.text.empty() || WriteWholeFile(libraryPath, library.text, error)) &&
           WriteWholeFile(path, out.text, error);
}

}  // namespace minihost
