#include "core/io/LBlindData.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>

using namespace VantrelSDK;

namespace {

std::string BytesOf(const LBlindData& block) {
    return {reinterpret_cast<const char*>(block.GetData()), block.GetSize()};
}

/// What write(block) puts between the ends.
template <class Write>
std::string Written(const Write& write) {
    LBlindData block;
    EXPECT_EQ(block.BeginWrite(), 0);
    write(block);
    EXPECT_EQ(block.EndWrite(), 0);
    const std::string bytes = BytesOf(block);
    EXPECT_EQ(bytes.substr(0, 4) + bytes.back(), "007<>");
    return bytes.substr(4, bytes.size() - 5);
}

void SetBytes(LBlindData& block, const std::string& bytes) {
    ASSERT_EQ(block.SetSize(static_cast<unsigned>(bytes.size())), 0);
    if (!bytes.empty()) std::memcpy(block.GetData(), bytes.data(), bytes.size());
}

struct File {
    std::string path = testing::TempDir() + "kelmo-block-" + std::to_string(getpid());
    ~File() { std::filesystem::remove(path); }
    void Put(const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }
};

}  // namespace

TEST(BlindData, ItemsAreTheBytesThatTheFormatTells) {
    using namespace std::string_literals;
    EXPECT_EQ(Written([](LBlindData&) {}), "");
    EXPECT_EQ(Written([](LBlindData& b) {
                  b.BeginWriteChunk(0x1234);
                  b.Write(1);
                  b.EndWriteChunk();
              }),
              "\x21\x34\x12\x40\x01\0\0\0\x2a"s);
    EXPECT_EQ(Written([](LBlindData& b) { b.Write("ab"); }), "\x25\x03\0\0\0ab\0"s);
    EXPECT_EQ(Written([](LBlindData& b) { b.Write("xyz", 2u, 1u); }), "$\x02\0\0\0xy"s);
    EXPECT_EQ(Written([](LBlindData& b) { b.Write(1.0f); }), "#\0\0\x80\x3f"s);
    EXPECT_EQ(Written([](LBlindData& b) { b.Write(LPoint3(0, 1, 0)); }).substr(0, 9),
              "+\0\0\0\0\0\0\x80\x3f"s);
    EXPECT_EQ(Written([](LBlindData& b) { b.Write(LAColor(1, 0, 0, 0)); }).size(), 17u);
    EXPECT_EQ(LBlindData::GetVersion(), 7);
}

TEST(BlindData, ReadingTellsWhatIsWrong) {
    LBlindData block;
    char version[4];
    unsigned short tag = 0;
    float number = 5;
    int whole = 5;
    EXPECT_EQ(block.GetReadVersion(), -1);
    EXPECT_EQ(block.BeginRead(version), LBlindData::kNoData);
    SetBytes(block, "007");
    EXPECT_EQ(block.BeginRead(version), LBlindData::kTooShort);
    SetBytes(block, "004?@\1\2\3\4>");
    EXPECT_EQ(block.BeginRead(version), 0) << "the start mark isn't looked at";
    EXPECT_EQ(block.GetReadVersion(), 4);
    EXPECT_EQ(block.Read(number), LBlindData::kWrongMark);
    EXPECT_EQ(block.AtPos(), '@') << "and nothing has moved";
    EXPECT_EQ(block.EndReadChunk(), LBlindData::kWrongMark);
    EXPECT_EQ(block.EndRead(), LBlindData::kWrongMark);
    EXPECT_EQ(block.BeginReadChunk(tag), LBlindData::kWrongMark);
    EXPECT_TRUE(block.StepBackward());
    EXPECT_TRUE(block.SetpForward());
    EXPECT_EQ(block.Read(whole), 0);
    EXPECT_EQ(whole, 0x04030201);
    EXPECT_FALSE(block.SetpForward());
    EXPECT_TRUE(block.IsEndOfData());
    EXPECT_EQ(block.EndRead(), 0);
    for (const char* cut : {"007<!", "007<!ab", "007<@123", "007<+", "007<$\1", "007<%\5"}) {
        SetBytes(block, cut);
        ASSERT_EQ(block.BeginRead(version), 0);
        const bool chunk = cut[4] == '!';
        EXPECT_EQ(block.BeginReadChunk(tag), chunk ? LBlindData::kNoTag : LBlindData::kWrongMark);
        EXPECT_EQ(block.Read(number), LBlindData::kCutOff);
    }
    SetBytes(block, "007<");
    ASSERT_EQ(block.BeginRead(version), 0);
    EXPECT_EQ(block.BeginReadChunk(tag), LBlindData::kAtEnd);
    EXPECT_EQ(block.EndReadChunk(), LBlindData::kAtEnd);
}

RC_GTEST_PROP(BlindData, ValuesComeBack, ()) {
    const auto bytes = *rc::gen::container<std::string>(rc::gen::arbitrary<char>());
    const int whole = *rc::gen::arbitrary<int>();
    const float x = *rc::gen::arbitrary<float>();
    const auto text = *rc::gen::string<std::string>();
    LBlindData block;
    block.BeginWrite();
    block.BeginWriteChunk(7);
    block.Write(bytes.data(), static_cast<unsigned>(bytes.size()), 1u);
    block.Write(whole);
    block.Write(x, 1, 2, 3);
    block.Write(text.c_str());
    block.EndWriteChunk();
    block.EndWrite();
    for (int round = 0; round < 2; ++round) {
        char version[4], *readText = nullptr;
        unsigned short tag = 0;
        void* read = nullptr;
        unsigned size = 1;
        int readWhole = 0;
        LAColor color;
        RC_ASSERT(block.BeginRead(version) == 0 && block.BeginReadChunk(tag) == 0 && tag == 7);
        RC_ASSERT(block.GetDepth() == 1);
        RC_ASSERT(block.Read(read, size, 1u) == 0 && block.Read(readWhole) == 0);
        RC_ASSERT(block.Read(color) == 0 && block.Read(readText) == 0);
        RC_ASSERT(block.IsEndOfChunk() && block.EndReadChunk() == 0 && block.EndRead() == 0);
        RC_ASSERT(std::string(static_cast<char*>(read), size) == bytes && readWhole == whole);
        RC_ASSERT(color.r == x && color.a == 3 && std::string(text.c_str()) == readText);
        std::free(read);
        std::free(readText);
    }
}

TEST(BlindData, GrowsPastItsFirstRoom) {
    LBlindData block;
    ASSERT_EQ(block.BeginWrite(), 0);
    // To the last byte that the first room has, and one more.
    const std::string filler(16000000 - 4 - 5 - 1, 'x');
    ASSERT_EQ(block.Write(filler.data(), static_cast<unsigned>(filler.size()), 1u), 0);
    ASSERT_EQ(block.GetSize(), 15999999u);
    ASSERT_EQ(block.Write(42), 0);
    ASSERT_EQ(block.Write(std::string(40000000, 'y').c_str()), 0);
    EXPECT_EQ(block.EndWrite(), 0);
    const std::string bytes = BytesOf(block);
    EXPECT_EQ(bytes.substr(9, filler.size()), filler);
    EXPECT_EQ(bytes[16000000], 42);
    EXPECT_EQ(std::string_view(bytes).substr(16000000 + 9, 40000000).find_first_not_of('y'),
              std::string::npos);
    // A shorter buffer forgets the room that it had.
    ASSERT_EQ(block.SetSize(10), 0);
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(block.Write(i), 0);
    EXPECT_EQ(block.GetSize(), 5010u);
}

TEST(BlindData, FilesAreReadAndWrittenWhole) {
    File file;
    LBlindData block, back;
    int version = 0;
    std::string message;
    EXPECT_FALSE(block.WriteToFile(file.path.c_str(), 1)) << "without data";
    EXPECT_FALSE(block.ReadFromFile(nullptr, version));
    SetBytes(block, "007<>");
    ASSERT_TRUE(block.WriteToFile(file.path.c_str(), 6503, &message)) << message;
    ASSERT_TRUE(back.ReadFromFile(file.path.c_str(), version, &message)) << message;
    EXPECT_EQ(BytesOf(back), "007<>");
    EXPECT_EQ(version, 6503);

    using namespace std::string_literals;
    const std::string name = "file " + file.path;
    const std::pair<std::string, std::string> bad[] = {
        {"", "can not start reading " + name + " .\n"},
        {"\0\0\0\0"s, name + " does not contain data.\n"},
        {"\5\0\0\0\1"s, "can not start reading file (2) " + file.path + " .\n"},
        {"\5\0\0\0\1\0\0\0"s + "007<", "file size does 4 does not match expected 5.\n"},
        {"\5\0\0\0\1\0\0\0"s + "007<>>", "file size does 6 does not match expected 5.\n"},
        {"\xff\xff\xff\xff\1\0\0\0"s + "007<>",
         "file size does 5 does not match expected 4294967295.\n"},
    };
    for (const auto& [bytes, expected] : bad) {
        file.Put(bytes);
        EXPECT_FALSE(back.ReadFromFile(file.path.c_str(), version, &message));
        EXPECT_EQ(message, "Vantrel: " + expected);
        EXPECT_EQ(BytesOf(back) + std::to_string(version), "007<>6503") << "left as they were";
    }
    testing::internal::CaptureStdout();
    EXPECT_FALSE(back.ReadFromFile((file.path + "/none").c_str(), version));
    EXPECT_FALSE(back.WriteToFile((file.path + "/none").c_str(), 1));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Vantrel: can not open " + name + "/none for reading.\n" + "Vantrel: can not open " +
                  name + "/none for writing.\n");
}
