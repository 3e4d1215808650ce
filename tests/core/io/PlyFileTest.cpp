#include "core/io/PlyFile.h"

#include <gtest/gtest.h>

#include <rapidcheck/gtest.h>
#include <cstring>
#include <filesystem>

#include "core/io/MeshFile.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;

namespace {

const std::string kHeader =
    "ply\nformat ascii 1.0\ncomment of somebody\nobj_info more\nelement vertex 4\n"
    "property float x\nproperty double y\nproperty float z\nproperty float nx\n"
    "property uchar red\nproperty uchar green\nproperty uchar blue\n"
    "element face 1\nproperty list uchar int vertex_indices\nproperty uchar flags\nend_header\n";
const std::string kVertices =
    "0 0 0 nan 255 0 51\n1 0 0 0 0 255 0\n1 1 0 0 0 0 255\n0 1.5 -2e-3 0 1 2 3\n";

/// What is wrong with a file: line, message.
std::string ErrorOf(const std::string& text) {
    PolyMesh mesh;
    FileError error;
    if (ParsePly(text, mesh, error)) return "";
    EXPECT_EQ(mesh.positions.size(), 0u);
    return std::to_string(error.line) + ": " + error.message;
}

/// A mesh whose numbers are any bits that are finite, with polygons of its positions.
PolyMesh RandomMesh(bool large) {
    const auto number = [] {
        float x;
        do {
            const auto bits = *rc::gen::arbitrary<uint32_t>();
            std::memcpy(&x, &bits, sizeof x);
        } while (!std::isfinite(x));
        return x;
    };
    PolyMesh mesh;
    const int nverts = *rc::gen::inRange(3, 20), nuvs = *rc::gen::inRange(0, 12);
    const bool coloured = *rc::gen::arbitrary<bool>();
    for (int v = 0; v < nverts; ++v) {
        mesh.positions.emplace_back(number(), number(), number());
        if (coloured) mesh.colours.emplace_back(number(), number(), number());
    }
    for (int v = 0; v < nuvs; ++v) mesh.uvs.emplace_back(number(), number());
    for (int p = *rc::gen::inRange(0, 8); p-- > 0;) {
        const int corners = large && p == 0 ? 300 : *rc::gen::inRange(3, 7);
        const bool uvs = nuvs > 0 && *rc::gen::arbitrary<bool>();
        for (int c = 0; c < corners; ++c) {
            mesh.cornerVerts.push_back(*rc::gen::inRange(0, nverts));
            if (nuvs > 0) mesh.cornerUVs.push_back(uvs ? *rc::gen::inRange(0, nuvs) : -1);
        }
        mesh.polygonStart.push_back(static_cast<int>(mesh.cornerVerts.size()));
    }
    return mesh;
}

template <class T>
bool SameBytes(const std::vector<T>& a, const std::vector<T>& b) {
    return a.size() == b.size() &&
           (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

}  // namespace

TEST(PlyFile, ReadsAnAsciiFile) {
    PolyMesh mesh;
    FileError error;
    ASSERT_TRUE(ParsePly(kHeader + kVertices + "4 0 1 2 3 9\n\n", mesh, error)) << error.Text();
    ASSERT_EQ(mesh.positions.size(), 4u);
    EXPECT_EQ(mesh.positions[3], LPoint3(0, 1.5f, -0.002f));
    ASSERT_EQ(mesh.colours.size(), 4u);
    EXPECT_EQ(mesh.colours[0], LPoint3(1, 0, 0.2f));
    EXPECT_EQ(mesh.polygonStart, (std::vector{0, 4}));
    EXPECT_EQ(mesh.cornerVerts, (std::vector{0, 1, 2, 3}));
    EXPECT_TRUE(mesh.cornerUVs.empty());
    // UVs of vertices, and line ends of another system.
    const std::string uvs =
        "ply\r\nformat ascii 1.0\r\nelement vertex 3\r\nproperty float x\r\nproperty float y\r\n"
        "property float z\r\nproperty float s\r\nproperty float t\r\nelement face 1\r\n"
        "property list uint8 uint32 vertex_index\r\nend_header\r\n0 0 0 0.5 0\r\n1 0 0 1 0\r\n"
        "0 1 0 0 1\r\n3 0 1 2";
    ASSERT_TRUE(ParsePly(uvs, mesh, error)) << error.Text();
    EXPECT_EQ(mesh.uvs[0], LPoint2(0.5f, 0));
    EXPECT_EQ(mesh.cornerUVs, mesh.cornerVerts);
}

TEST(PlyFile, NamesWhatIsWrongAndWhere) {
    const std::string vertex =
        "ply\nformat ascii 1.0\nelement vertex 1\nproperty float x\nproperty float y\n"
        "property float z\n";
    const std::pair<std::string, const char*> wrong[] = {
        {"", "1: this is not a PLY file: it starts otherwise"},
        {"ply\nformat binary_big_endian 1.0\n",
         "2: the format \"binary_big_endian\" is not read; write the file as ascii or "
         "binary_little_endian"},
        {"ply\nformat ascii 2.0\n", "2: the version \"2.0\" is not 1.0"},
        {"ply\nformat ascii 1.0\nhat\n", "3: \"hat\" is not a keyword"},
        {"ply\nformat ascii 1.0\nproperty float x\n", "3: a property before the first element"},
        {"ply\nformat ascii 1.0\nelement vertex -1\n",
         "3: an element has a name and a count up to 2147483647"},
        {"ply\nformat ascii 1.0\nelement vertex 1\nproperty half x\n", "4: \"half\" is not a type"},
        {"ply\nformat ascii 1.0\nelement vertex 0\nend_header\n", "4: the element vertex has no x"},
        {"ply\nformat ascii 1.0\nend_header\n", "3: the file has no element vertex"},
        {vertex + "element vertex 2\n", "7: the element \"vertex\" comes twice"},
        {vertex + "property int x\n", "7: the property \"x\" comes twice"},
        {vertex + "property int red\n", "7: a colour is of uchar, ushort, float or double"},
        {vertex, "7: the header has no end"},
        {vertex + "end_header\n1 22222\n", "8: vertex 0: fewer numbers than it has properties"},
        {vertex + "end_header\n1 2 3 4\n", "8: vertex 0: more numbers than it has properties"},
        {vertex + "end_header\n1 2 inf\n",
         "8: vertex 0: z is not a finite number in the range of a float"},
        {vertex + "end_header\n1 2 x\n", "8: vertex 0: \"x\" is not a number"},
        {vertex + "end_header\n1 2 3\n4\n", "9: a line behind the last row"},
        {vertex + "element none 3\nend_header\n1 2 3\n",
         "8: the element \"none\" has no properties"},
        {vertex + "element a 2000000000\nproperty int b\nend_header\n1 2 3\n",
         "9: 2000000000 rows of \"a\" can't be in the 6 bytes behind the header"},
        {kHeader + kVertices + "2 0 1 0\n",
         "21: face 0: a polygon has at least 3 corners; this one has 2"},
        {kHeader + kVertices + "3 0 1 4 0\n",
         "21: face 0: vertex 4 does not exist: the file has 4"},
        {kHeader + kVertices + "3 0 1 -1 0\n", "21: face 0: vertex -1 does not exist"},
        {kHeader + kVertices + "3 0 1 2 256\n",
         "21: face 0: \"256\" is out of the range of uchar of flags"},
        {kHeader + kVertices + "200 0 1 2\n", "21: face 0: a list of 200 numbers can't be there"},
        {kHeader + kVertices, "21: face 0: the file ends; 1 rows were announced"},
    };
    for (const auto& [text, expected] : wrong) EXPECT_EQ(ErrorOf(text), expected);
}

RC_GTEST_PROP(PlyFile, WhatIsWrittenReadsBackEqual, (bool large)) {
    const PolyMesh mesh = RandomMesh(large);
    std::string bytes, message;
    FileError error;
    PolyMesh back;
    RC_ASSERT(FormatPly(mesh, bytes, message));
    RC_ASSERT(ParsePly(bytes, back, error));
    RC_ASSERT(SameBytes(back.positions, mesh.positions));
    RC_ASSERT(SameBytes(back.colours, mesh.colours));
    RC_ASSERT(back.polygonStart == mesh.polygonStart);
    RC_ASSERT(back.cornerVerts == mesh.cornerVerts);
    for (size_t c = 0; c < back.cornerUVs.size(); ++c) {
        const int uv = back.cornerUVs[c], was = mesh.cornerUVs[c];
        RC_ASSERT((uv < 0) == (was < 0));
        if (uv < 0) continue;
        RC_ASSERT(std::memcmp(&back.uvs[uv], &mesh.uvs[was], sizeof(LPoint2)) == 0);
        for (size_t d = 0; d < c; ++d)  // corners of a vertex share what is equal, nothing else
            RC_ASSERT(
                (back.cornerUVs[d] == uv) ==
                (mesh.cornerVerts[d] == mesh.cornerVerts[c] && back.cornerUVs[d] >= 0 &&
                 std::memcmp(&back.uvs[back.cornerUVs[d]], &back.uvs[uv], sizeof(LPoint2)) == 0));
    }
    // No file that is cut off passes, and none is read past its end.
    const size_t cut = *rc::gen::inRange<size_t>(0, bytes.size());
    const std::unique_ptr<char[]> exact(new char[cut]);
    std::memcpy(exact.get(), bytes.data(), cut);
    RC_ASSERT(!ParsePly({exact.get(), cut}, back, error));
    RC_ASSERT(!error.message.empty());
}

TEST(PlyFile, AMeshGoesByTheNameOfItsFile) {
    const std::string folder = testing::TempDir();
    PolyMesh mesh = shapes::Grid(4, 3), back;
    mesh.colours.assign(mesh.positions.size(), {0.1f, 0.25f, 1});
    std::string message;
    FileError error;
    for (const char* name : {"mesh.ply", "mesh.PLY", "mesh.obj"}) {
        ASSERT_TRUE(WriteMesh(folder + name, mesh, message)) << message;
        ASSERT_TRUE(ReadMesh(folder + name, back, error)) << error.Text();
        EXPECT_TRUE(SameBytes(back.positions, mesh.positions));
        EXPECT_TRUE(SameBytes(back.colours, mesh.colours));
        EXPECT_EQ(back.cornerVerts, mesh.cornerVerts);
        std::filesystem::remove(folder + name);
    }
    mesh.colours[1].y = NAN;
    EXPECT_FALSE(WriteMesh(folder + "mesh.ply", mesh, message));
    EXPECT_EQ(message, "the colour of vertex 1 is not finite");
    EXPECT_FALSE(std::filesystem::exists(folder + "mesh.ply"));
}
