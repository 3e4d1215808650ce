#include "tests/system/Program.h"

#include <fmt/core.h>

#include <nlohmann/json.hpp>

#include "core/io/ObjReader.h"
#include "tests/shapes/Models.h"
#include "tests/shapes/Shapes.h"

using namespace kelmo_tests;
using namespace VantrelSDK;

namespace {

const std::string kHeader = "{\"kelmo\":\"strokes\",\"version\":1}\n";
const std::string kPress =
    "{\"op\":\"press\",\"mode\":8,\"pos\":[0,0,0],\"dir\":[0,0,-1],\"orth\":[1,0,0],"
    "\"normal\":[0,0,1],\"screen\":[0,0],\"radius\":1}\n";
const std::string kMove =
    "{\"op\":\"move\",\"pos\":[0.1,0,0],\"screen\":[0.1,0],\"normal\":[0,0,1]}\n";
const std::string kSquare =
    "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nvt 0 0\nvt 1 1\ng a b\nusemtl skin\n"
    "f 1/1 2/2 3/1 4/2\n";

}  // namespace

TEST(Program, TellsWrongUsageApartFromFailure) {
    for (const char* usage : {"--no-such", "replay", "info", "dance", "info a b",
                              "replay a --mesh b --out c --threads 0"})
        EXPECT_EQ(Kelmo(usage).code, 2) << usage;
    for (const char* help : {"--help", "replay --help", "info --help", "shapes --help"}) {
        const Outcome outcome = Kelmo(help);
        EXPECT_EQ(outcome.code, 0) << help;
        EXPECT_NE(outcome.text.find("Usage"), std::string::npos) << help;
    }
    const Outcome missing = Kelmo("info /no/such.obj");
    EXPECT_EQ(missing.code, 1);
    EXPECT_NE(missing.text.find("/no/such.obj"), std::string::npos) << missing.text;
}

TEST(Program, InfoCountsEveryModel) {
    const auto files = shapes::RealObjFiles();
    Folder folder;
    for (const auto& file : files) {
        const std::string path = folder.Write("model.obj", shapes::TextOf(file));
        const Outcome outcome = Kelmo("info --json " + path);
        ASSERT_EQ(outcome.code, 0) << file << outcome.text;
        PolyMesh mesh;
        FileError error;
        ASSERT_TRUE(ReadObj(path, mesh, error));
        const auto json = nlohmann::json::parse(outcome.text);
        EXPECT_EQ(json["vertices"], mesh.positions.size()) << file;
        EXPECT_EQ(json["polygons"], mesh.NumPolygons()) << file;
        EXPECT_EQ(json["triangles"], mesh.cornerVerts.size() - 2 * mesh.NumPolygons()) << file;
        EXPECT_EQ(json["levels"], 1);
    }
    if (files.empty()) GTEST_SKIP() << "neither shared models nor assimp-testmodels are here";
}

TEST(Program, ReplaysOnEveryModelAndKeepsWhatIsNotSculpted) {
    const auto files = shapes::RealObjFiles();
    Folder folder;
    const std::string idle =
        folder.Write("idle.jsonl", kHeader + kPress + "{\"op\":\"release\"}\n");
    for (const auto& file : files) {
        const std::string in = folder.Write("in.obj", shapes::TextOf(file)),
                          out = folder / "out.obj";
        PolyMesh before, after;
        FileError error;
        ASSERT_TRUE(ReadObj(in, before, error));
        const Outcome outcome = Kelmo("replay " + idle + " --mesh " + in + " --out " + out);
        if (before.NumPolygons() == 0) {
            EXPECT_EQ(outcome.code, 1) << file;
            EXPECT_NE(outcome.text.find("no polygons"), std::string::npos) << outcome.text;
            continue;
        }
        ASSERT_EQ(outcome.code, 0) << file << outcome.text;
        ASSERT_TRUE(ReadObj(out, after, error)) << error.Text();
        EXPECT_TRUE(shapes::SameBits(before, after)) << file;
    }
    if (files.empty()) GTEST_SKIP() << "neither shared models nor assimp-testmodels are here";
}

TEST(Program, WritesLevelsAndStats) {
    Folder folder;
    const std::string mesh = folder.Write("in.obj", kSquare), out = folder / "out.obj",
                      stats = folder / "stats.json";
    const std::string log = folder.Write(
        "log.jsonl",
        kHeader + "{\"op\":\"subdivide\",\"kind\":\"loop\"}\n" +
            "{\"op\":\"subdivide\",\"kind\":\"loop\"}\n{\"op\":\"level\",\"value\":1}\n" + kPress +
            kMove + "{\"op\":\"release\"}\n{\"op\":\"undo\"}\n" + kPress + kMove);
    const auto replay = [&](const std::string& more) {
        return Kelmo("replay " + log + " --mesh " + mesh + " --out " + out + " " + more);
    };
    for (const auto& [option, polygons, arity] :
         {std::tuple("", 8, 3), {"--level 0", 1, 4}, {"--level 2", 32, 3}}) {
        ASSERT_EQ(replay(option).code, 0) << option;
        PolyMesh result;
        FileError error;
        ASSERT_TRUE(ReadObj(out, result, error)) << error.Text();
        EXPECT_EQ(result.NumPolygons(), polygons);
        EXPECT_EQ(result.polygonStart[1], arity);
        ASSERT_EQ(result.statements.size(), 2u);
        EXPECT_EQ(result.statements[1].text, "usemtl skin");
        EXPECT_EQ(result.cornerUVs.size(), result.cornerVerts.size());
    }
    // Quads of a quad level, with the statements of the polygons that they lie in.
    std::string quads = Read(log);
    for (size_t at; (at = quads.find("loop")) != std::string::npos;) quads.replace(at, 4, "quad");
    folder.Write("log.jsonl", quads);
    for (const auto& [option, polygons] : {std::pair("", 4), {"--level 0", 1}, {"--level 2", 16}}) {
        ASSERT_EQ(replay(option).code, 0) << option;
        PolyMesh result, input;
        FileError error;
        ASSERT_TRUE(ReadObj(out, result, error)) << error.Text();
        ASSERT_EQ(result.NumPolygons(), polygons);
        for (int p = 0; p <= polygons; ++p) EXPECT_EQ(result.polygonStart[p], 4 * p);
        EXPECT_EQ(result.cornerUVs.size(), result.cornerVerts.size());
        ASSERT_TRUE(ReadObj(mesh, input, error));
        EXPECT_EQ(result.statements, input.statements);
        if (polygons > 1) continue;
        EXPECT_NE(result.positions, input.positions);
        result.positions = input.positions;
        EXPECT_TRUE(shapes::SameBits(result, input));
    }
    const Outcome above = replay("--level 3");
    EXPECT_EQ(above.code, 1);
    EXPECT_NE(above.text.find("levels 0 to 2"), std::string::npos) << above.text;

    ASSERT_EQ(replay("--stats " + stats + " --repeat 3").code, 0);
    const auto json = nlohmann::json::parse(Read(stats));
    for (const auto& [op, count] : std::map<std::string, int>{{"press", 6},
                                                              {"move", 6},
                                                              {"release", 6},
                                                              {"undo", 3},
                                                              {"level", 3},
                                                              {"subdivide", 6}}) {
        const auto& times = json["operations"][op];
        EXPECT_EQ(times["count"], count) << op;
        EXPECT_LE(times["median_ms"], times["p95_ms"]);
        EXPECT_LE(times["p95_ms"], times["max_ms"]);
    }
    EXPECT_GT(json["vertices_touched"], 0);
    EXPECT_GT(json["peak_memory_mb"], 1);
}

TEST(Program, NamesTheLineOfABrokenLogAndLeavesTheOldFileWhole) {
    Folder folder;
    const std::string mesh = folder.Write("in.obj", kSquare), out = folder.Write("out.obj", "old");
    const std::vector<std::pair<std::string, std::string>> broken = {
        {"", "log.jsonl:1: "},
        {kHeader + "{\"op\":\"level\",\"value\":1}\n", "log.jsonl:2: level 1 does not exist"},
        {kHeader + "{\"op\":\"select\",\"faces\":[0,1]}\n", "polygon 1 does not exist"},
        {kHeader + "{\"op\":\"hide\",\"faces\":[7]}\n", "polygon 7 does not exist"},
        {kHeader + "{\"op\":\"delete_level\"}\n", "log.jsonl:2: there is no level to delete"},
        {kHeader + kMove, "log.jsonl:2: "},
        {kHeader + kPress + kPress, "log.jsonl:3: "},
        {kHeader + "{\"op\":\"set\",\"name\":\"simetry\",\"value\":1}\n", "log.jsonl:2: "},
        {kHeader + kPress + "{\"op\":\"set\",\"name\":\"objSmIt\",\"value\":1}\n", "log.jsonl:3: "},
        {kHeader + std::string(40, '[') + "\n", "log.jsonl:2: "},
    };
    for (const auto& [text, expected] : broken) {
        const std::string log = folder.Write("log.jsonl", text);
        const Outcome outcome = Kelmo("replay " + log + " --mesh " + mesh + " --out " + out);
        EXPECT_EQ(outcome.code, 1) << text;
        EXPECT_NE(outcome.text.find(expected), std::string::npos) << outcome.text;
        EXPECT_EQ(Read(out), "old");
    }
    const std::string good = folder.Write("log.jsonl", kHeader + kPress + kMove);
    const std::string bad = folder.Write("bad.obj", "v 0 0 0\nv 1 0 nan\nf 1 2 2\n");
    const Outcome outcome = Kelmo("replay " + good + " --mesh " + bad + " --out " + out);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_NE(outcome.text.find("bad.obj:2: "), std::string::npos) << outcome.text;
    EXPECT_EQ(Kelmo("replay " + good + " --mesh " + mesh + " --out /no/such/folder/x.obj").code, 1);
    EXPECT_EQ(Read(out), "old");
}

TEST(Program, StrokesOutOfTheRangeOfNumbersAreRefused) {
    Folder folder;
    const std::string mesh = folder.Write("in.obj", kSquare), out = folder / "out.obj";
    std::string text = kHeader;
    for (const int mode : {2, 0, 4, 8, 10, 11, 12, 15, 16, 17, 19}) {
        std::string press = kPress;
        press.replace(press.find("8,"), 2, std::to_string(mode) + ",");
        if (mode == 2)
            press.replace(press.find("[1,0,0]"), 7, "[3e38,0,0]");
        else
            press.replace(press.find("radius\":1"), 9, "radius\":3e38");
        text += press +
                "{\"op\":\"move\",\"pos\":[3e38,-3e38,3e38],\"screen\":[3e38,0],"
                "\"normal\":[3e38,0,1]}\n"
                "{\"op\":\"move\",\"pos\":[-3e38,3e38,1e-38],\"screen\":[-3e38,0],"
                "\"normal\":[0,0,0]}\n{\"op\":\"release\"}\n";
    }
    const std::string log = folder.Write("log.jsonl", text);
    const Outcome outcome = Kelmo("replay " + log + " --mesh " + mesh + " --out " + out);
    EXPECT_EQ(outcome.code, 1) << outcome.text;
    EXPECT_NE(outcome.text.find("out of the range of numbers"), std::string::npos) << outcome.text;
}

TEST(Program, SumsShapes) {
    Folder folder;
    const auto square = [](float z1, float z3) {
        return fmt::format("v 0 0 0\nv 1 0 {}\nv 1 1 0\nv 0 1 {}\nf 1 2 3 4\n", z1, z3);
    };
    const std::string neutral = folder.Write("n.obj", square(0, 0)),
                      a = folder.Write("a.obj", square(2, 0)),
                      b = folder.Write("b.obj", square(1, 4)), out = folder / "out.obj";
    const auto shapes = [&](const std::string& more) {
        return Kelmo("shapes " + neutral + " " + a + " " + b + " --out " + out + " " + more);
    };
    PolyMesh result;
    FileError error;
    ASSERT_EQ(shapes("--weights 0.5,-1").code, 0);
    ASSERT_TRUE(ReadObj(out, result, error));
    EXPECT_EQ(result.positions[1].z, 0);
    EXPECT_EQ(result.positions[3].z, -4);
    ASSERT_EQ(shapes("--level 2").code, 0);
    ASSERT_TRUE(ReadObj(out, result, error));
    EXPECT_EQ(result.NumPolygons(), 16);
    EXPECT_EQ(result.positions[3].z, 4) << "a corner of a level stays";

    EXPECT_EQ(shapes("--weights 1").code, 2);
    const std::string other = folder.Write("other.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\n");
    const Outcome refused = Kelmo("shapes " + neutral + " " + other + " --out " + out);
    EXPECT_EQ(refused.code, 1);
    EXPECT_NE(refused.text.find("it has 3 vertices"), std::string::npos) << refused.text;
    EXPECT_NE(refused.text.find("has 4"), std::string::npos) << refused.text;
}

// Each expression of the real head comes back, and a sum is the plain sum.
TEST(Program, SumsTheShapesOfARealHead) {
    const auto folderOf = shapes::ModelsFolder() / "head";
    if (!std::filesystem::exists(folderOf)) GTEST_SKIP() << "the shared models are not here";
    Folder folder;
    const auto unpacked = [&](const std::string& name) {
        return folder.Write(name + ".obj", shapes::TextOf(folderOf / (name + ".obj.xz")));
    };
    const std::string neutral = unpacked("ict_neutral"), smile = unpacked("ict_mouthSmile_L"),
                      jaw = unpacked("ict_jawOpen"), out = folder / "out.obj";
    const auto sum = [&](const std::string& weights) {
        const Outcome outcome = Kelmo("shapes " + neutral + " " + smile + " " + jaw + " --out " +
                                      out + " --weights " + weights);
        EXPECT_EQ(outcome.code, 0) << outcome.text;
        PolyMesh mesh;
        FileError error;
        EXPECT_TRUE(ReadObj(out, mesh, error));
        return mesh.positions;
    };
    PolyMesh n, s, j;
    FileError error;
    ASSERT_TRUE(ReadObj(neutral, n, error) && ReadObj(smile, s, error) && ReadObj(jaw, j, error));
    const auto onlySmile = sum("1,0"), both = sum("0.5,0.75");
    for (size_t v = 0; v < n.positions.size(); ++v) {
        ASSERT_LT((onlySmile[v] - s.positions[v]).Len(), 5e-5f) << v;
        const LPoint3 plain = n.positions[v] + (s.positions[v] - n.positions[v]) * 0.5f +
                              (j.positions[v] - n.positions[v]) * 0.75f;
        ASSERT_LT((both[v] - plain).Len(), 1e-4f) << v;
    }
}

TEST(Examples, EachGivesTheSameBytesWithAnyNumberOfWorkers) {
    Folder folder;
    std::vector<std::string> logs;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kExamples))
        if (entry.path().extension() == ".jsonl") logs.push_back(entry.path());
    ASSERT_GE(logs.size(), 20u) << "one for each mode and the face";
    // Fine strokes on the second level of quads, which follow coarse ones on the first.
    const auto strokesOf = [](const std::string& name) {
        const std::string text = Read(kExamples + "/modes/" + name);
        return text.substr(text.find('\n') + 1);
    };
    const std::string subdivide = "{\"op\":\"subdivide\",\"kind\":\"quad\"}\n";
    logs.push_back(folder.Write(
        "quads.jsonl", kHeader + subdivide + subdivide + strokesOf("08_brush_pull.jsonl") +
                           "{\"op\":\"level\",\"value\":1}\n" + strokesOf("01_rotate.jsonl") +
                           "{\"op\":\"level\",\"value\":2}\n"));
    for (const std::string& log : logs) {
        std::string first;
        for (const int threads : {1, 2, 8}) {
            const std::string out = folder / "out.obj";
            const Outcome outcome =
                Kelmo("replay " + log + " --mesh " + kExamples + "/head.obj --out " + out +
                      " --threads " + std::to_string(threads));
            ASSERT_EQ(outcome.code, 0) << log << outcome.text;
            if (threads == 1) first = Read(out);
            EXPECT_EQ(Read(out), first) << log << ", " << threads << " workers";
        }
        EXPECT_NE(first, Read(kExamples + "/head.obj")) << log << " changes nothing";
    }
}
