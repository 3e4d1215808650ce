#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "core/io/ObjReader.h"
#include "core/sculpt/HeadlessTarget.h"
#include "core/sculpt/StrokePlayer.h"
#include "tests/Paths.h"
#include "tests/core/math/SameBits.h"
#include "tests/shapes/Models.h"

using namespace VantrelSDK;

namespace {

const std::filesystem::path kExamples = std::filesystem::path(paths::kSource) / "examples";

/// The example logs by their names, and one of fine strokes on the second level of quads, which
/// follow coarse ones on the first.
std::map<std::string, std::string> Logs() {
    std::map<std::string, std::string> logs;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kExamples))
        if (entry.path().extension() == ".jsonl")
            logs[entry.path().filename()] = shapes::TextOf(entry.path());
    const std::string &pull = logs["08_brush_pull.jsonl"], &rotate = logs["01_rotate.jsonl"];
    const size_t start = pull.find('\n') + 1;
    const std::string subdivide = "{\"op\":\"subdivide\",\"kind\":\"quad\"}\n";
    logs["quads"] = pull.substr(0, start) + subdivide + subdivide + pull.substr(start) +
                    "{\"op\":\"level\",\"value\":1}\n" + rotate.substr(rotate.find('\n') + 1) +
                    "{\"op\":\"level\",\"value\":2}\n";
    return logs;
}

/// What a log makes of a mesh.
std::vector<LPoint3> Played(const std::string& log, const PolyMesh& mesh, int workers) {
    LHeadlessNode node(workers);
    std::string message;
    EXPECT_TRUE(node.Load(mesh, message)) << message;
    HeadlessTarget target(node, mesh);
    StrokePlayer player(target);
    StrokeLogReader reader(log);
    StrokeOp op;
    FileError error;
    StrokeLogReader::Result read;
    while ((read = reader.Next(op, error)) == StrokeLogReader::Result::Operation)
        EXPECT_TRUE(player.Play(op, message)) << reader.Line() << ": " << message;
    EXPECT_EQ(read, StrokeLogReader::Result::End) << error.Text();
    PolyMesh result;
    const int level = node.lobject()->GetOrigGeom()->GetActiveLevel();
    EXPECT_TRUE(node.GetResult(mesh, level, result, message)) << message;
    return result.positions;
}

}  // namespace

TEST(Examples, EachGivesTheSameBitsWithAnyNumberOfWorkers) {
    PolyMesh head;
    FileError error;
    ASSERT_TRUE(ReadObj(kExamples / "head.obj", head, error)) << error.Text();
    const auto logs = Logs();
    ASSERT_GE(logs.size(), 21u) << "one for each mode, the face and the one made here";
    for (const auto& [name, log] : logs) {
        SCOPED_TRACE(name);
        const std::vector<LPoint3> first = Played(log, head, 1);
        for (const int workers : {2, 8}) EXPECT_TRUE(SameBits(Played(log, head, workers), first));
        EXPECT_FALSE(SameBits(first, head.positions)) << "changes nothing";
    }
}
