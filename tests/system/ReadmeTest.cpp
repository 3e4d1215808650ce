#include <gtest/gtest.h>

#include <filesystem>

#include "core/io/ObjReader.h"
#include "tests/Paths.h"
#include "tests/system/Markdown.h"
#include "tests/system/Program.h"

using namespace kelmo_tests;
using namespace VantrelSDK;

namespace {

namespace fs = std::filesystem;
const fs::path kRoot = paths::kSource;

/// How far the surface of a file reaches to the upper left or (side 1) upper right front, where the
/// README has it pulled.
float Reach(const std::string& path, float side) {
    PolyMesh mesh;
    FileError error;
    EXPECT_TRUE(ReadObj(path, mesh, error)) << error.Text();
    float reach = 0;
    for (const LPoint3& p : mesh.positions)
        reach = std::max(reach, p % LPoint3(0.4f * side, 0.6f, 0.7f));
    return reach;
}

}  // namespace

/// In a folder that looks like a fresh clone with the program built, and ./test passing.
TEST(Readme, ItsCommandsRunOneAfterTheOther) {
    Folder folder;
    for (const char* name : {"examples", "tools"}) fs::create_symlink(kRoot / name, folder / name);
    fs::create_symlink(paths::kProgram, folder / "run");
    fs::create_symlink("/bin/true", folder / "test");
    const auto blocks = CodeBlocks(Read(kRoot / "README.md"), "sh");
    ASSERT_GE(blocks.size(), 4u);
    for (const std::string& block : blocks) {
        const std::string script = folder.Write("block.sh", block);
        const Outcome outcome =
            Shell("cd '" + folder / "" + "' && env -u DISPLAY bash -eu " + script);
        ASSERT_EQ(outcome.code, 0) << block << outcome.text;
    }
    EXPECT_TRUE(fs::exists(folder / "kelmo-out/face.obj")) << "what ./run is said to make";
    EXPECT_GT(fs::file_size(folder / "kelmo-out/first.png"), 1000u);
    for (const float side : {-1.0f, 1.0f})
        EXPECT_GT(Reach(folder / "kelmo-out/first.obj", side),
                  Reach(kExamples + "/head.obj", side) + 2)
            << "the head has no horn on side " << side;
}

TEST(Readme, LinksOfEveryPageLeadSomewhere) {
    int links = 0;
    for (const char* where : {".", "docs", "docs/pictures"})
        for (const auto& entry : fs::directory_iterator(kRoot / where)) {
            if (entry.path().extension() != ".md") continue;
            for (const std::string& link : LocalLinks(Read(entry.path()))) {
                EXPECT_TRUE(fs::exists(entry.path().parent_path() / link))
                    << entry.path() << " leads to " << link;
                ++links;
            }
        }
    EXPECT_GT(links, 10);
}
