#include "core/paint/LTexture.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>
#include <vector>

#include "core/paint/LMaterialSet.h"

namespace VantrelSDK {
namespace {

class Image : public LTexture {
  public:
    Image(std::vector<uint8_t> rgba, int width, int height) : LTexture(0) {
        took = fillBuffer(rgba.data(), width, height);
    }
    explicit Image(bool writable = true) : LTexture(2), writable_(writable) {}
    bool Take(const uint8_t* rgba, int width, int height) {
        return fillBuffer(rgba, width, height);
    }
    bool CheckWritePermissions() const override { return writable_; }
    void err(const char* text) override { told += text; }

    bool took = false;
    std::string told;

  private:
    bool writable_ = true;
};

std::vector<uint8_t> Bytes(const uint8_t* bytes, const LTexture& image) {
    return {bytes, bytes + 4 * image.GetWidth() * image.GetHeight()};
}

RC_GTEST_PROP(LTexture, EditsOfAllOfIt, ()) {
    const int width = *rc::gen::inRange(1, 9), height = *rc::gen::inRange(1, 9);
    const auto loaded = *rc::gen::container<std::vector<uint8_t>>(
        static_cast<size_t>(4 * width * height), rc::gen::arbitrary<uint8_t>());
    Image image(loaded, width, height);
    RC_ASSERT(image.took && !image.IsPainted());
    std::vector<uint8_t> wanted = loaded, stencil(loaded.size());
    std::vector<std::vector<uint8_t>> kept;
    for (int step = *rc::gen::inRange(1, 20); step > 0; --step) {
        const int edit = *rc::gen::inRange(0, 7);
        if (edit == 0) {
            image.Fill({0.5f, 1.5f, -1});
            for (size_t i = 0; i < wanted.size(); i += 4)
                wanted[i] = 127, wanted[i + 1] = 255, wanted[i + 2] = 0;
        } else if (edit == 1) {
            image.Clear();
            wanted = loaded;
        } else if (edit == 2) {
            image.Invert();
            for (size_t i = 0; i < wanted.size(); ++i)
                if (i % 4 != 3) wanted[i] = static_cast<uint8_t>(255 - wanted[i]);
        } else if (edit == 3) {
            image.ClearStencil();
            stencil.assign(stencil.size(), 0);
        } else if (edit == 4) {
            image.InvertStencil();
            for (size_t i = 3; i < stencil.size(); i += 4)
                stencil[i] = static_cast<uint8_t>(255 - stencil[i]);
        } else if (edit == 5) {
            image.CacheUndo();
            kept.push_back(wanted);
            if (kept.size() > 5) kept.erase(kept.begin());
        } else {
            RC_ASSERT(image.Undo() == !kept.empty());
            if (!kept.empty()) wanted = kept.back(), kept.pop_back();
        }
        RC_ASSERT(image.GetNumUndos() == kept.size());
        RC_ASSERT(Bytes(image.GetPixels(), image) == wanted);
        RC_ASSERT(Bytes(image.GetEraser(), image) == loaded);
        for (size_t i = 3; i < stencil.size(); i += 4)
            RC_ASSERT(image.GetStencil()[i] == stencil[i]);
        if (wanted != loaded) RC_ASSERT(image.IsPainted());
    }
}

TEST(LTexture, WithoutAnImageNothingHappens) {
    Image image;
    EXPECT_FALSE(image.Take(nullptr, 4, 4));
    const uint8_t texel[4] = {1, 2, 3, 4};
    for (const auto& [width, height] : {std::pair{0, 1}, {1, 0}, {-3, -3}})
        EXPECT_FALSE(image.Take(texel, width, height));
    image.Fill(LColor::cWhite);
    image.Clear();
    image.Invert();
    image.ClearStencil();
    image.InvertStencil();
    image.CacheUndo();
    EXPECT_FALSE(image.Undo());
    EXPECT_FALSE(image.IsPainted());
    EXPECT_EQ(image.GetPixels(), nullptr);
    EXPECT_EQ(image.GetUVChannel(), 2);
    // More than any machine has.
    EXPECT_FALSE(image.Take(texel, 1 << 30, 1 << 28));
    EXPECT_EQ(image.told, "MLTexture::fillBuffer is running out of memory");
    EXPECT_EQ(image.GetWidth(), 0);
    EXPECT_TRUE(image.Take(texel, 1, 1));
    image.Fill({NAN, INFINITY, 1});
    EXPECT_EQ(image.GetPixels()[0], 0);
    EXPECT_EQ(image.GetPixels()[1], 255);
    EXPECT_EQ(image.GetPixels()[3], 4);
}

class Mapped : public LMaterial {
  public:
    Mapped(int id, std::vector<bool> writable) : LMaterial(mtlMode::kPaint, id) {
        for (const bool w : writable) maps.push_back(std::make_unique<Image>(w));
    }
};

class Materials : public LMaterialSet {
  public:
    void Put(int shader, std::vector<bool> writable) {
        Add(shader, std::make_unique<Mapped>(shader, std::move(writable)));
    }
};

TEST(LMaterialSet, ShadersWithoutAMapCountAsNone) {
    Materials set;
    EXPECT_FALSE(set.CheckWritePermissions());
    EXPECT_FALSE(set.HasMaps());
    set.Put(0, {});
    set.Put(1, {true});
    set.Put(499, {true, true});
    set.Put(500, {true});
    set.Put(-1, {true});
    EXPECT_EQ(set.GetVoid(), (std::vector<int>{0, 500, -1}));
    EXPECT_EQ(set.GetNumMaterials(), 2u);
    EXPECT_EQ(set.GetMaterialById(1), set.GetMaterial(0));
    EXPECT_EQ(set.GetMaterialById(499)->GetMtlId(), 499);
    for (const int id : {-1, 0, 2, 500, 1 << 30}) EXPECT_EQ(set.GetMaterialById(id), nullptr) << id;
    EXPECT_EQ(set.GetMaterial(2), nullptr);
    EXPECT_EQ(set.GetMaterial(0)->GetMap(1), nullptr);
    EXPECT_TRUE(set.CheckWritePermissions() && set.HasMaps());
    set.Put(7, {true, false});
    EXPECT_FALSE(set.CheckWritePermissions());
}

}  // namespace
}  // namespace VantrelSDK
