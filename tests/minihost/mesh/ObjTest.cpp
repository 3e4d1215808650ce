#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "minihost/base/WholeFile.h"
#include "minihost/mesh/ObjFile.h"
#include "minihost/mesh/Primitives.h"
#include "minihost/shade/Assign.h"
#include "minihost/shade/ObjScene.h"
#include "tests/Paths.h"
#include "tests/minihost/SceneTest.h"
#include "tests/shapes/Models.h"

namespace minihost {
namespace {

namespace fs = std::filesystem;

class Obj : public SceneTest {
  protected:
    Obj() { fs::create_directory(folder); }
    ~Obj() override { fs::remove_all(folder); }
    std::string Path(const char* name) const { return folder / name; }

    fs::path folder = fs::temp_directory_path() / ("minihost-obj-" + std::to_string(getpid()));
};

/// As far as a file keeps it: corners' colours are those of vertices.
void SameInFile(const MeshData& a, const MeshData& b) {
    RC_ASSERT(a.points() == b.points());
    RC_ASSERT(a.polygons() == b.polygons());
    RC_ASSERT(*a.uvSets[0].values == *b.uvSets[0].values);
    for (int c = 0; c < static_cast<int>(a.numCorners()); ++c)
        RC_ASSERT(a.uvSets[0].At(c) == b.uvSets[0].At(c));
}

RC_GTEST_FIXTURE_PROP(Obj, AnyMeshesComeBackToTheBit, ()) {
    ObjFile out, in;
    std::string error;
    for (int n = *rc::gen::inRange(1, 4); n > 0; --n) {
        MeshPtr mesh = AnyMesh();
        if (mesh->polygons().count() == 0) mesh = MakePlane(1, 3, 2, 1);
        ObjMesh& part = out.meshes.emplace_back();
        part.name = "part" + std::to_string(n);
        part.mesh = mesh;
        for (const char* name : {"a", "b"}) {
            NamedPolygons named{name, {}};
            for (int p = 0; p < mesh->polygons().count(); ++p)
                if (*rc::gen::arbitrary<bool>()) named.polygons.push_back(p);
            if (!named.polygons.empty()) part.groups.push_back(named);
        }
        part.materials = {{"skin", {0}}, {"rest", {}}};
        for (int p = 1; p < mesh->polygons().count(); ++p) part.materials[1].polygons.push_back(p);
        if (mesh->polygons().count() == 1) part.materials.pop_back();
    }
    out.materials.push_back({"skin", {0.1f, 0.2f, 0.3f}, 0, ""});
    RC_ASSERT(WriteObjFile(Path("any.obj"), out, error));
    RC_ASSERT(ReadObjFile(Path("any.obj"), in, error));
    RC_ASSERT(in.meshes.size() == out.meshes.size());
    for (size_t i = 0; i < in.meshes.size(); ++i) {
        SameInFile(*in.meshes[i].mesh, *out.meshes[i].mesh);
        RC_ASSERT(in.meshes[i].name == out.meshes[i].name);
        RC_ASSERT(in.meshes[i].materials == out.meshes[i].materials);
        auto groups = in.meshes[i].groups;
        std::ranges::sort(groups, {}, &NamedPolygons::name);
        RC_ASSERT(groups == out.meshes[i].groups);
    }
    RC_ASSERT(in.materials.at(0).color == out.materials[0].color);
}

RC_GTEST_FIXTURE_PROP(Obj, NoTextBreaksTheReader, ()) {
    static const char* kWords[] = {"v",  "vt",  "f",    "o",    "g",          "usemtl", "1",
                                   "-1", "3/2", "0",    "1//2", "9999999999", "1e39",   "nan",
                                   "\n", "\n",  "\\\n", "#",    "x"};
    std::string text, error;
    for (const int word : *rc::gen::container<std::vector<int>>(rc::gen::inRange(0, 19)))
        (text += kWords[word]) += ' ';
    ObjFile file;
    if (!ParseObj(text, file, error)) RC_ASSERT(std::isdigit(static_cast<unsigned char>(error[0])));
    for (const ObjMesh& part : file.meshes)
        for (const int v : part.mesh->polygons().corners)
            RC_ASSERT(v >= 0 && v < part.mesh->numVertices());
}

TEST_F(Obj, SaysWhereAFileIsBroken) {
    ObjFile file;
    std::string error;
    for (const auto& [text, line] : {std::pair{"v 0 0 0\nv 1 1\n", "2: "},
                                     {"v 0 0 0\nv 0 0 0 \\\n\nf 1 2\n", "4: "},
                                     {"v 0 0 0\nf 1 1 1\nf 1 1 4\nf 1 1 1\n", "3: "},
                                     {"v 0 0 0\nf 1/1 1 1\n", "2: "},
                                     {"f 1 -1 1", "1: "},
                                     {"v 1 2 inf", "1: "}}) {
        EXPECT_FALSE(ParseObj(text, file, error)) << text;
        EXPECT_TRUE(error.starts_with(line)) << error;
    }
    EXPECT_FALSE(ReadObjFile(Path("missing.obj"), file, error));
    EXPECT_NE(error.find("missing.obj"), std::string::npos);
    const MeshPtr bad = MakePlane(1, 1, 1, 1);
    bad->EditPoints()[0].x = std::numeric_limits<float>::infinity();
    EXPECT_FALSE(WriteObjFile(Path("bad.obj"), {{{"", bad, {}, {}}}, {}, {}}, error));
    EXPECT_FALSE(fs::exists(Path("bad.obj")));
}

TEST_F(Obj, RealModelsComeBackAsTheyAre) {
    auto models = VantrelSDK::shapes::RealObjFiles();
    models.push_back(fs::path(paths::kSource) / "examples/head.obj");
    for (const fs::path& model : models) {
        ObjFile first, second;
        std::string error;
        if (!ParseObj(VantrelSDK::shapes::TextOf(model), first, error)) continue;  // broken ones
        ASSERT_TRUE(WriteObjFile(Path("model.obj"), first, error)) << error;
        ASSERT_TRUE(ReadObjFile(Path("model.obj"), second, error)) << model << error;
        size_t points[2] = {}, corners[2] = {};
        for (const ObjMesh& part : first.meshes)
            points[0] += part.mesh->points().size(), corners[0] += part.mesh->numCorners();
        for (const ObjMesh& part : second.meshes)
            points[1] += part.mesh->points().size(), corners[1] += part.mesh->numCorners();
        EXPECT_EQ(points[0], points[1]) << model;
        EXPECT_EQ(corners[0], corners[1]) << model;
        if (first.meshes.size() != second.meshes.size()) continue;
        for (size_t i = 0; i < first.meshes.size(); ++i)
            EXPECT_EQ(first.meshes[i].mesh->points(), second.meshes[i].mesh->points()) << model;
    }
    if (models.size() == 1) GTEST_SKIP() << "no shared models: only the sample head was read";
}

TEST_F(Obj, SceneKeepsGroupsMaterialsAndColors) {
    const std::string text =
        "mtllib two.mtl\nv 0 0 0 1 0 0\nv 1 0 0 0 1 0\nv 1 1 0 0 0 1\nv 0 1 0 1 1 1\n"
        "vt 0 0\nvt 1 0\nvt 1 1\n"
        "g lip\nusemtl red\nf 1/1 2/2 3/3\ng lip chin\nusemtl skin\nf 1 3 4\n";
    std::string error;
    ASSERT_TRUE(WriteWholeFile(Path("two.obj"), text, error));
    ASSERT_TRUE(WriteWholeFile(Path("two.mtl"), "newmtl red\nKd 1 0 0\nmap_Kd red.png\n", error));
    for (const char* name : {"two.obj", "again.obj"}) {
        host.NewScene();
        Modifier import(host.scene);
        const auto made = ImportObj(import, Path(name), error);
        ASSERT_EQ(made.size(), 1u) << error;
        const NodePtr shape = static_cast<DagNode&>(*made[0]).Shape()->Share();
        const Shading shading = ShadingOf(*shape);
        ASSERT_EQ(shading.ofPolygon.size(), 2u);
        EXPECT_EQ(shading.groups[size_t(shading.ofPolygon[0])]->name(), "redSG");
        EXPECT_EQ(shading.groups[size_t(shading.ofPolygon[1])]->name(), "skinSG");
        const NodePtr texture = host.scene.NodesOfType("file").at(0);
        EXPECT_EQ(DataOf<StringData>(texture->FindSlot("fileTextureName")->value)->value,
                  Path("red.png"));
        const MeshPtr mesh = MeshOf(*shape);
        ASSERT_TRUE(mesh->FindColorSet(""));
        EXPECT_EQ((*mesh->FindColorSet("")->values)[1], MColor(0, 1, 0));
        EXPECT_EQ(mesh->groups.size(), 4u);
        ASSERT_TRUE(host.scene.Find("lip") && host.scene.Find("chin"));
        ASSERT_TRUE(ExportObj({shape}, Path("again.obj"), error)) << error;
        import.Undo();
        EXPECT_FALSE(host.scene.Find("lip"));
        EXPECT_TRUE(host.scene.NodesOfType("mesh").empty());
    }
}

}  // namespace
}  // namespace minihost
