#include "tests/Paths.h"
#include "tests/system/Program.h"

#include <fmt/core.h>
#include <fmt/ranges.h>

#include <nlohmann/json.hpp>

#include "core/io/ObjReader.h"
#include "core/io/ObjWriter.h"
#include "core/io/PlyFile.h"
#include "core/math/LMatrix3.h"
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

TEST(Program, PaintsMeshesOfEitherFormat) {
    Folder folder;
    const std::string mesh = folder.Write("in.obj", kSquare), painted = folder / "out.ply",
                      again = folder / "again.obj";
    const std::string log = folder.Write(
        "log.jsonl", kHeader +
                         "{\"op\":\"subdivide\",\"kind\":\"quad\"}\n"
                         "{\"op\":\"set\",\"name\":\"affectVertColor\",\"value\":true}\n"
                         "{\"op\":\"set\",\"name\":\"vertexPaintColor\",\"value\":[0,0.5,1]}\n" +
                         kPress + kMove);
    ASSERT_EQ(Kelmo("replay " + log + " --mesh " + mesh + " --out " + painted).code, 0);
    PolyMesh result, back;
    FileError error;
    ASSERT_TRUE(ReadPly(painted, result, error)) << error.Text();
    ASSERT_EQ(result.colours.size(), result.positions.size());
    const auto isBlue = [](const LPoint3& c) { return c.z > 0.7f && c.x < 0.7f; };
    EXPECT_TRUE(std::any_of(result.colours.begin(), result.colours.end(), isBlue));
    EXPECT_NE(Kelmo("info " + painted).text.find("4  (4 quads)"), std::string::npos);
    // A log of nothing takes them to the other format with the same bits.
    const std::string nothing = folder.Write("nothing.jsonl", kHeader);
    ASSERT_EQ(Kelmo("replay " + nothing + " --mesh " + painted + " --out " + again).code, 0);
    ASSERT_TRUE(ReadObj(again, back, error)) << error.Text();
    EXPECT_EQ(back.colours, result.colours);
    EXPECT_EQ(back.positions, result.positions);
    EXPECT_EQ(back.cornerVerts, result.cornerVerts);
    const Outcome bad = Kelmo("info " + folder.Write("bad.ply", "ply\nformat ascii 1.0\nhat\n"));
    EXPECT_EQ(bad.code, 1);
    EXPECT_NE(bad.text.find("bad.ply:3: \"hat\" is not a keyword"), std::string::npos) << bad.text;
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

// Each expression of the real head comes back, a sum is the plain sum, and in tangent space both
// turn with a head that is turned and scaled.
TEST(Program, SumsTheShapesOfARealHead) {
    const auto folderOf = shapes::ModelsFolder() / "head";
    if (!std::filesystem::exists(folderOf)) GTEST_SKIP() << "the shared models are not here";
    Folder folder;
    std::string list;
    std::vector<PolyMesh> meshes;
    FileError error;
    const auto unpacked = [&](const std::filesystem::path& packed) {
        const std::string path = folder.Write(packed.stem(), shapes::TextOf(packed));
        EXPECT_TRUE(ReadObj(path, meshes.emplace_back(), error)) << error.Text();
        return path;
    };
    const std::string neutral = unpacked(folderOf / "ict_neutral.obj.xz");
    for (const auto& file : shapes::ObjFilesIn(folderOf))
        if (file.stem() != "ict_neutral.obj") list += " " + unpacked(file);
    ASSERT_EQ(meshes.size(), 9u);
    const std::string out = folder / "out.obj";
    const auto sum = [&](const std::string& options) {
        const Outcome outcome = Kelmo("shapes " + neutral + list + " --out " + out + options);
        EXPECT_EQ(outcome.code, 0) << outcome.text;
        PolyMesh mesh;
        EXPECT_TRUE(ReadObj(out, mesh, error));
        return mesh.positions;
    };
    const auto& n = meshes[0].positions;
    const auto plain = [&](size_t v, const std::vector<float>& weights) {
        LPoint3 moved;
        for (size_t s = 0; s < 8; ++s) moved += (meshes[s + 1].positions[v] - n[v]) * weights[s];
        return moved;
    };
    const std::vector<float> mixed = {1, 0.5f, 0, -0.25f, 0.75f, 0, 0, 1};
    std::vector<std::vector<float>> cases = {mixed};
    for (int s = 0; s < 8; ++s) cases.emplace_back(8)[s] = 1;
    for (const auto& weights : cases) {
        const auto result = sum(fmt::format(" --weights {}", fmt::join(weights, ",")));
        for (size_t v = 0; v < n.size(); ++v)
            ASSERT_LT((result[v] - n[v] - plain(v, weights)).Len(), 2e-4f) << v;
    }

    LMatrix3 turn;
    turn.SetRotation(Normalized(LPoint3(1, 2, 3)), 1.1f);
    PolyMesh posed = meshes[0];
    for (LPoint3& p : posed.positions) p = turn.TransfromVector(p) * 2.0f + LPoint3(1, 0, 0);
    std::string message;
    ASSERT_TRUE(WriteObj(folder / "posed.obj", posed, message));
    const std::string weights = fmt::format(" --weights {}", fmt::join(mixed, ","));
    const auto turned = sum(weights + " --space tangent --on " + (folder / "posed.obj"));
    int moved = 0, strayed = 0;
    for (size_t v = 0; v < n.size(); ++v) {
        const LPoint3 offset = plain(v, mixed);
        const LPoint3 expected = posed.positions[v] + turn.TransfromVector(offset);
        moved += offset.Len() > 0.01f;
        // A fold has no frame, or another one in the other pose's last bits.
        strayed += (turned[v] - expected).Len() > 1e-3f;
    }
    EXPECT_GT(moved, 5000);
    EXPECT_LE(strayed, moved / 500);

    // On the surface that they were made on both spaces say the same, at any level.
    const auto object = sum(weights + " --level 1"),
               tangent = sum(weights + " --level 1 --space tangent");
    ASSERT_EQ(object.size(), tangent.size());
    strayed = 0;
    for (size_t v = 0; v < object.size(); ++v) strayed += (object[v] - tangent[v]).Len() > 1e-3f;
    EXPECT_LE(strayed, static_cast<int>(object.size()) / 1000);
}

TEST(Program, ALogStoresTargetsAndAppliesThem) {
    Folder folder;
    const std::string head = kExamples + "/head.obj", out = folder / "out.obj";
    const std::string strokes = Read(kExamples + "/modes/00_move.jsonl");
    PolyMesh input;
    FileError error;
    ASSERT_TRUE(ReadObj(head, input, error));
    const auto replay = [&](const std::string& more) {
        const std::string log = folder.Write("log.jsonl", strokes + more);
        const Outcome outcome =
            Kelmo("replay " + log + " --mesh " + head + " --out " + out + " --level 0");
        PolyMesh mesh;
        if (outcome.code == 0) {
            EXPECT_TRUE(ReadObj(out, mesh, error)) << error.Text();
        } else {
            EXPECT_EQ(outcome.code, 1);
            EXPECT_NE(outcome.text.find(log), std::string::npos) << outcome.text;
        }
        return std::pair(mesh.positions, outcome.text);
    };
    const auto store = [](const std::string& op, const std::string& name) {
        return "{\"op\":\"" + op + "\",\"target\":\"" + name + "\"}\n";
    };
    const auto apply = [](float weight) {
        return fmt::format("{{\"op\":\"apply\",\"target\":\"grin\",\"weight\":{}}}\n", weight);
    };
    const std::string finish = "{\"op\":\"finish\"}\n", neutral = "{\"op\":\"neutral\"}\n";
    const auto sculpted = replay("").first;
    EXPECT_EQ(replay(finish).first, sculpted) << "closing the session changes no bit";
    const auto expect = [&](const std::string& more, float weight) {
        const auto result = replay(more).first;
        ASSERT_EQ(result.size(), sculpted.size()) << more;
        for (size_t v = 0; v < result.size(); ++v) {
            const LPoint3 place = input.positions[v] + (sculpted[v] - input.positions[v]) * weight;
            ASSERT_LT((result[v] - place).Len(), 1e-4f) << more << v;
        }
    };
    const std::string stored = store("store", "grin");
    expect(stored + apply(0.5f), 0.5f);
    expect(stored + finish + apply(0.5f) + apply(-1), -1);
    expect(stored + apply(0) + store("load", "grin"), 1);
    expect(neutral + store("load", "AH"), 1);
    // Stored over the neutral it was nothing more.
    expect(neutral + stored + apply(3), 1);
    expect(stored + neutral + "{\"op\":\"clear_neutral\"}\n" + apply(2), 2);
    EXPECT_NE(replay(apply(1)).second.find("there is no target \"grin\""), std::string::npos);
    EXPECT_NE(replay("{\"op\":\"clear_neutral\"}\n").second.find("NEUTRAL is empty already."),
              std::string::npos);
    EXPECT_NE(replay("{\"op\":\"set\",\"name\":\"neutralize\",\"value\":true}\n")
                  .second.find("can't neutralize"),
              std::string::npos);
}

TEST(Program, GoesOnWithASavedState) {
    Folder folder;
    const std::string head = kExamples + "/head.obj", state = folder / "head.node";
    const std::string first = folder / "first.obj", second = folder / "second.obj";
    const std::string sculpt =
        folder.Write("log.jsonl", Read(kExamples + "/modes/00_move.jsonl") +
                                      "{\"op\":\"store\",\"target\":\"grin\"}\n"
                                      "{\"op\":\"subdivide\",\"kind\":\"quad\"}\n");
    const std::string nothing =
        folder.Write("none.jsonl", "{\"kelmo\":\"strokes\",\"version\":1}\n");
    const auto replay = [](const std::string& log, const std::string& more) {
        return Kelmo("replay " + log + " --mesh " + more);
    };
    ASSERT_EQ(replay(sculpt, head + " --out " + first + " --save " + state).code, 0);
    const Outcome again = replay(nothing, head + " --load " + state + " --out " + second);
    ASSERT_EQ(again.code, 0) << again.text;
    PolyMesh a, b;
    FileError error;
    ASSERT_TRUE(ReadObj(first, a, error) && ReadObj(second, b, error));
    ASSERT_EQ(a.positions.size(), b.positions.size());
    for (size_t v = 0; v < a.positions.size(); ++v)
        ASSERT_LT((a.positions[v] - b.positions[v]).Len(), 1e-4f) << v;

    const auto facts = nlohmann::json::parse(Kelmo("info --json " + state).text);
    EXPECT_EQ(facts["version"], "v 6.5.03");
    EXPECT_EQ(facts["levels"].size(), 2u);
    ASSERT_EQ(facts["targets"].size(), 1u);
    EXPECT_EQ(facts["targets"][0]["name"], "grin");
    EXPECT_NE(Kelmo("info " + state).text.find("grin"), std::string::npos);
    const std::string page = Read(std::string(paths::kSource) + "/docs/formats.md");
    for (const auto& [name, value] : facts.items())
        EXPECT_NE(page.find("`" + name + "`"), page.npos) << name;
    const std::string other = folder.Write("tri.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n");
    const Outcome wrong = replay(nothing, other + " --load " + state + " --out " + second);
    EXPECT_EQ(wrong.code, 1);
    EXPECT_NE(wrong.text.find("the state of another mesh"), wrong.text.npos) << wrong.text;
    std::filesystem::resize_file(state, std::filesystem::file_size(state) - 1);
    const Outcome cut = Kelmo("info " + state);
    EXPECT_EQ(cut.code, 1);
    EXPECT_NE(cut.text.find(state), cut.text.npos) << cut.text;
}

TEST(Program, ReplaysWithAnyNumberOfThreads) {
    Folder folder;
    const std::string out = folder / "out.obj", head = kExamples + "/head.obj";
    std::string first;
    for (const int threads : {1, 2, 8}) {
        const Outcome outcome = Kelmo("replay " + kExamples + "/face.jsonl --mesh " + head +
                                      " --out " + out + " --threads " + std::to_string(threads));
        ASSERT_EQ(outcome.code, 0) << outcome.text;
        if (threads == 1) first = Read(out);
        EXPECT_EQ(Read(out), first) << threads << " workers";
    }
    EXPECT_NE(first, Read(head)) << "changes nothing";
}
