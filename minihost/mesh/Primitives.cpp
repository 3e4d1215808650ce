#include "minihost/mesh/Primitives.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

#include "minihost/graph/Evaluation.h"
#include "minihost/graph/Node.h"

namespace minihost {
namespace {

constexpr int kMaxDivisions = 3000;

int Divisions(int n, int least = 1) {
    return std::clamp(n, least, kMaxDivisions);
}

/// Gathers polygons, and meets of vertices told by the same key.
struct Builder {
    std::vector<MFloatVector> points;
    std::vector<UV> uvs;
    std::vector<int> counts, corners, uvIds;

    int Point(double x, double y, double z) {
        points.emplace_back(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
        return static_cast<int>(points.size()) - 1;
    }
    int AddUV(double u, double v) {
        uvs.push_back({static_cast<float>(u), static_cast<float>(v)});
        return static_cast<int>(uvs.size()) - 1;
    }
    void Polygon(std::initializer_list<int> verts, std::initializer_list<int> ids) {
        counts.push_back(static_cast<int>(verts.size()));
        corners.insert(corners.end(), verts);
        uvIds.insert(uvIds.end(), ids);
    }
    MeshPtr Build() {
        std::string error;
        MeshPtr mesh = MeshData::Make(std::move(points), counts, std::move(corners), error);
        UVSet& set = mesh->uvSets[0];
        set.values.Set(std::move(uvs));
        set.corners.Set(std::move(uvIds));
        return mesh;
    }
};

}  // namespace

MeshPtr MakePlane(double width, double height, int columns, int rows) {
    columns = Divisions(columns), rows = Divisions(rows);
    Builder b;
    for (int y = 0; y <= rows; ++y)
        for (int x = 0; x <= columns; ++x) {
            const double u = double(x) / columns, v = double(y) / rows;
            b.Point((u - 0.5) * width, 0, (0.5 - v) * height);
            b.AddUV(u, v);
        }
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x) {
            const int a = y * (columns + 1) + x, d = a + columns + 1;
            b.Polygon({a, a + 1, d + 1, d}, {a, a + 1, d + 1, d});
        }
    return b.Build();
}

MeshPtr MakeCube(double width, double height, double depth, int columns, int rows, int layers) {
    const int n[3] = {Divisions(columns, 1), Divisions(rows, 1), Divisions(layers, 1)};
    const double size[3] = {width, height, depth};
    Builder b;
    std::map<std::array<int, 3>, int> known;  // points on an edge belong to two sides
    const auto point = [&](const std::array<int, 3>& at) {
        const auto [found, isNew] = known.try_emplace(at, 0);
        const auto place = [&](size_t i) { return (double(at[i]) / n[i] - 0.5) * size[i]; };
        if (isNew) found->second = b.Point(place(0), place(1), place(2));
        return found->second;
    };
    // axis across, axis up, whether each runs backwards, axis of the side's normal, whether it is
    // the far side, and where its square lies in the UVs
    struct Side {
        size_t across, up;
        bool backAcross, backUp;
        size_t normal;
        bool far;
        double u, v;
    };
    for (const Side& s : {Side{0, 1, false, false, 2, true, 0.375, 0},
                          {0, 2, false, true, 1, true, 0.375, 0.25},
                          {0, 1, false, true, 2, false, 0.375, 0.5},
                          {0, 2, false, false, 1, false, 0.375, 0.75},
                          {2, 1, true, false, 0, true, 0.625, 0},
                          {2, 1, false, false, 0, false, 0.125, 0}}) {
        const int across = n[s.across], up = n[s.up];
        const int first = static_cast<int>(b.uvs.size());
        for (int y = 0; y <= up; ++y)
            for (int x = 0; x <= across; ++x) b.AddUV(s.u + 0.25 * x / across, s.v + 0.25 * y / up);
        const auto at = [&](int x, int y) {
            std::array<int, 3> place{};
            place[s.across] = s.backAcross ? across - x : x;
            place[s.up] = s.backUp ? up - y : y;
            place[s.normal] = s.far ? n[s.normal] : 0;
            return point(place);
        };
        for (int y = 0; y < up; ++y)
            for (int x = 0; x < across; ++x) {
                const int uv = first + y * (across + 1) + x, above = uv + across + 1;
                b.Polygon({at(x, y), at(x + 1, y), at(x + 1, y + 1), at(x, y + 1)},
                          {uv, uv + 1, above + 1, above});
            }
    }
    return b.Build();
}

MeshPtr MakeSphere(double radius, int around, int rows) {
    around = Divisions(around, 3), rows = Divisions(rows, 2);
    Builder b;
    for (int y = 1; y < rows; ++y)
        for (int x = 0; x < around; ++x) {
            const double up = std::numbers::pi * (double(y) / rows - 0.5);
            const double turn = 2 * std::numbers::pi * x / around;
            b.Point(radius * std::cos(up) * std::cos(turn), radius * std::sin(up),
                    -radius * std::cos(up) * std::sin(turn));
        }
    const int south = b.Point(0, -radius, 0), north = b.Point(0, radius, 0);
    for (int y = 0; y <= rows; ++y)
        for (int x = 0; x <= around; ++x)
            b.AddUV((x + (y == 0 || y == rows ? 0.5 : 0)) / around, double(y) / rows);
    const auto vertex = [&](int x, int y) { return (y - 1) * around + x % around; };
    const auto uv = [&](int x, int y) { return y * (around + 1) + x; };
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < around; ++x) {
            const int right = x + 1, above = y + 1;
            if (y == 0)
                b.Polygon({south, vertex(right, 1), vertex(x, 1)},
                          {uv(x, 0), uv(right, 1), uv(x, 1)});
            else if (above == rows)
                b.Polygon({vertex(x, y), vertex(right, y), north},
                          {uv(x, y), uv(right, y), uv(x, rows)});
            else
                b.Polygon({vertex(x, y), vertex(right, y), vertex(right, above), vertex(x, above)},
                          {uv(x, y), uv(right, y), uv(right, above), uv(x, above)});
        }
    return b.Build();
}

namespace {

/// Makes a mesh of the node's numbers, in their order.
class PrimitiveLogic : public NodeLogic {
  public:
    using Make = MeshPtr (*)(const std::vector<double>& numbers);

    PrimitiveLogic(Node& node, Make make) : NodeLogic(node), make_(make) {}

    MStatus Compute(const Plug& plug) override {
        if (plug.attribute->longName != "output") return MS::kUnknownParameter;
        std::vector<double> numbers;
        const size_t inherited = node_.type().base->attributes().size();
        for (size_t i = inherited; i + 1 < node_.type().attributes().size(); ++i)
            numbers.push_back(NumberOf(Pull(node_.roots()[i])));
        SetResult(*plug.Find(), make_(numbers));
        return MS::kSuccess;
    }

  private:
    Make make_;
};

struct Input {
    const char *longName, *shortName;
    double value;
    MFnNumericData::Type type = MFnNumericData::kDouble;
};

void Register(NodeTypes& types, const char* name, unsigned id, const std::vector<Input>& inputs,
              PrimitiveLogic::Make make) {
    NodeType& type = types.Make(name, id, MFn::kDependencyNode);
    for (const Input& in : inputs)
        type.Add(NumericAttribute(in.longName, in.shortName, in.type, in.value))->isKeyable = true;
    Attribute* out = type.Add(TypedAttribute("output", "out", MFnData::kMesh));
    out->isStorable = out->isWritable = false;
    for (const Input& in : inputs) type.Affects({in.longName}, {"output"});
    type.maker = [make](Node& node) { return std::make_unique<PrimitiveLogic>(node, make); };
}

int Whole(double n) {
    return static_cast<int>(n);
}

}  // namespace

void RegisterPrimitives(NodeTypes& types) {
    constexpr auto kInt = MFnNumericData::kInt;
    Register(types, "polyPlane", 0x504d4553,
             {{"width", "w", 1},
              {"height", "h", 1},
              {"subdivisionsWidth", "sw", 10, kInt},
              {"subdivisionsHeight", "sh", 10, kInt}},
             [](const std::vector<double>& n) {
                 return MakePlane(n[0], n[1], Whole(n[2]), Whole(n[3]));
             });
    Register(types, "polyCube", 0x50435542,
             {{"width", "w", 1},
              {"height", "h", 1},
              {"depth", "d", 1},
              {"subdivisionsWidth", "sw", 1, kInt},
              {"subdivisionsHeight", "sh", 1, kInt},
              {"subdivisionsDepth", "sd", 1, kInt}},
             [](const std::vector<double>& n) {
                 return MakeCube(n[0], n[1], n[2], Whole(n[3]), Whole(n[4]), Whole(n[5]));
             });
    Register(
        types, "polySphere", 0x50535048,
        {{"radius", "r", 1},
         {"subdivisionsAxis", "sa", 20, kInt},
         {"subdivisionsHeight", "sh", 20, kInt}},
        [](const std::vector<double>& n) { return MakeSphere(n[0], Whole(n[1]), Whole(n[2])); });
}

std::string PrimitiveName(const std::string& type) {
    return "p" + type.substr(type.find("poly") == 0 ? 4 : 0) + "1";
}

}  // namespace minihost
