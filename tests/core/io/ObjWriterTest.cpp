#include "core/io/ObjWriter.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <limits>

#include "core/io/ObjReader.h"
#include "tests/core/math/Generators.h"
#include "tests/shapes/Models.h"
#include "tests/shapes/Shapes.h"

using namespace VantrelSDK;
using namespace VantrelSDK::shapes;
namespace fs = std::filesystem;

namespace {

/// What comes back when the text of a mesh is read again.
PolyMesh ThereAndBack(const PolyMesh& mesh) {
    std::string text, message;
    PolyMesh back;
    FileError error;
    EXPECT_TRUE(FormatObj(mesh, text, message)) << message;
    EXPECT_TRUE(ParseObj(text, back, error)) << error.Text();
    return back;
}

TEST(ObjWriter, GivesBackEveryShape) {
    for (const Shape& shape : AllShapes()) {
        EXPECT_TRUE(SameBits(ThereAndBack(shape.mesh), shape.mesh)) << shape.name;
    }
}

TEST(ObjWriter, GivesBackRealFiles) {
    const auto files = RealObjFiles();
    if (files.empty()) GTEST_SKIP() << "neither shared models nor assimp-testmodels are here";
    int read = 0;
    for (const auto& file : files) {
        PolyMesh mesh;
        FileError error;
        if (!ParseObj(TextOf(file), mesh, error)) continue;  // the reader's tests tell which
        EXPECT_TRUE(SameBits(ThereAndBack(mesh), mesh)) << file;
        ++read;
    }
    EXPECT_GE(read, static_cast<int>(files.size()) - 1);
}

PolyMesh AnyMesh() {
    PolyMesh mesh;
    const int verts = *rc::gen::inRange(1, 20), uvs = *rc::gen::inRange(0, 4);
    const bool coloured = *rc::gen::arbitrary<bool>();
    const auto point = [] { return LPoint3(*AnyFloat(), *AnyFloat(), *AnyFloat()); };
    for (int i = 0; i < verts; ++i) {
        mesh.positions.push_back(point());
        if (coloured) mesh.colours.push_back(point());
    }
    for (int i = 0; i < uvs; ++i) mesh.uvs.emplace_back(*AnyFloat(), *AnyFloat());
    for (int p = *rc::gen::inRange(0, 5); p > 0; --p) {
        if (*rc::gen::arbitrary<bool>()) mesh.statements.Add(mesh.NumPolygons(), "g a\\ #b ");
        for (int c = *rc::gen::inRange(3, 7); c > 0; --c) {
            mesh.cornerVerts.push_back(*rc::gen::inRange(0, verts));
            if (uvs > 0) mesh.cornerUVs.push_back(*rc::gen::inRange(-1, uvs));
        }
        mesh.polygonStart.push_back(static_cast<int>(mesh.cornerVerts.size()));
    }
    mesh.statements.Add(mesh.NumPolygons(), "usemtl \u4e2d");
    const auto isNone = [](int uv) { return uv < 0; };
    if (std::all_of(mesh.cornerUVs.begin(), mesh.cornerUVs.end(), isNone)) mesh.cornerUVs.clear();
    return mesh;
}

RC_GTEST_PROP(ObjWriter, GivesBackAnyMesh, ()) {
    const PolyMesh mesh = AnyMesh();
    RC_ASSERT(SameBits(ThereAndBack(mesh), mesh));
}

TEST(ObjWriter, RefusesWhatCouldNotBeReadAgain) {
    std::string text, error;
    PolyMesh mesh = Grid(1, 1);
    mesh.positions[2].y = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(FormatObj(mesh, text, error));
    EXPECT_EQ(error, "vertex 3 is not finite");
    mesh = Grid(1, 1);
    mesh.statements.Add(0, "g a\nv 0 0 0");
    EXPECT_FALSE(FormatObj(mesh, text, error));
    EXPECT_EQ(error, "statement 1 is not one line");
}

/// A folder of the test's own with an old file in it.
class ObjWriterFiles : public testing::Test {
  protected:
    ObjWriterFiles() {
        fs::create_directory(folder_);
        std::ofstream(path_) << "old";
    }
    ~ObjWriterFiles() override {
        chmod(folder_.c_str(), 0755);
        fs::remove_all(folder_);
    }
    /// True when the folder holds the old file as it was and nothing else.
    bool IsUntouched() const {
        return std::distance(fs::directory_iterator(folder_), {}) == 1 && TextOf(path_) == "old";
    }

    const fs::path folder_ = fs::temp_directory_path() / ("kelmo-obj-" + std::to_string(getpid()));
    const fs::path path_ = folder_ / "mesh.obj";
    std::string error_;
};

TEST_F(ObjWriterFiles, ReplacesTheOldFileAndKeepsItsRights) {
    chmod(path_.c_str(), 0640);
    const fs::path link = folder_ / "link.obj";
    fs::create_symlink("mesh.obj", link);
    ASSERT_TRUE(WriteObj(link, Cube(), error_)) << error_;
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::status(path_).permissions(), fs::perms(0640));
    PolyMesh mesh;
    FileError error;
    ASSERT_TRUE(ReadObj(path_, mesh, error)) << error.Text();
    EXPECT_TRUE(SameBits(mesh, Cube()));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 2);
}

TEST_F(ObjWriterFiles, LeavesTheOldFileWhereTheMeshIsBad) {
    PolyMesh mesh = Sphere(6);
    mesh.positions.back().x = std::numeric_limits<float>::infinity();
    EXPECT_FALSE(WriteObj(path_, mesh, error_));
    EXPECT_TRUE(IsUntouched());
}

TEST_F(ObjWriterFiles, LeavesTheOldFileWhereTheFolderIsClosed) {
    chmod(folder_.c_str(), 0555);
    const bool root = geteuid() == 0;
    ASSERT_EQ(root ? seteuid(65534) : 0, 0);  // root may write anywhere
    const bool written = WriteObj(path_, Cube(), error_);
    ASSERT_EQ(root ? seteuid(0) : 0, 0);
    EXPECT_FALSE(written);
    EXPECT_EQ(error_, "cannot write: Permission denied");
    EXPECT_TRUE(IsUntouched());
}

// A limit on the size of files stands for the full disk: the write fails half way.
TEST_F(ObjWriterFiles, LeavesTheOldFileWhereTheDiskIsFull) {
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{1 << 19, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const bool written = WriteObj(path_, Grid(300, 300), error_);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, handler);
    EXPECT_FALSE(written);
    EXPECT_EQ(error_, "cannot write: File too large");
    EXPECT_TRUE(IsUntouched());
}

TEST_F(ObjWriterFiles, WritesIntoAPipeWithoutReplacingIt) {
    const fs::path pipe = folder_ / "pipe.obj";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_TRUE(WriteObj(pipe, Cube(), error_)) << error_;
    std::string text, read(4096, '\0');
    ASSERT_TRUE(FormatObj(Cube(), text, error_));
    read.resize(::read(reader, read.data(), read.size()));
    close(reader);
    EXPECT_EQ(read, text);
    EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST_F(ObjWriterFiles, RefusesAFolder) {
    EXPECT_FALSE(WriteObj(folder_, Cube(), error_));
    EXPECT_EQ(error_, "cannot write: Is a directory");
    EXPECT_TRUE(IsUntouched());
}

}  // namespace
