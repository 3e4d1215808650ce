#include "minihost/shade/FileTexture.h"

#include <cmath>

#include "minihost/graph/Evaluation.h"

namespace minihost {
namespace {

double Number(Node& node, const char* attribute, int part = -1) {
    Slot& slot = *node.FindSlot(attribute);
    return NumberOf(Pull(part < 0 ? slot : *slot.parts[static_cast<size_t>(part)]));
}

void Pair(Node& node, const char* attribute, double (&pair)[2]) {
    for (int i = 0; i < 2; ++i) pair[i] = Number(node, attribute, i);
}

/// Around the middle of the unit square.
void Rotate(double angle, double& u, double& v) {
    if (angle == 0) return;
    const double x = u - 0.5, y = v - 0.5, c = std::cos(angle), s = std::sin(angle);
    u = 0.5 + x * c - y * s;
    v = 0.5 + x * s + y * c;
}

}  // namespace

std::string ImagePathOf(Node& file) {
    const auto name = DataOf<StringData>(Pull(*file.FindSlot("fileTextureName")));
    return name ? name->value : std::string();
}

std::string FileTexture::Open(Node& file) {
    const std::string path = ImagePathOf(file);
    if (path.empty()) return file.UniqueName() + " names no image";
    if (const std::string why = ReadPicture(path, 4, picture_); !why.empty()) return why;
    Pair(file, "coverage", coverage_);
    Pair(file, "translateFrame", translate_);
    Pair(file, "repeatUV", repeat_);
    Pair(file, "offset", offset_);
    rotateFrame_ = Number(file, "rotateFrame");
    rotate_ = Number(file, "rotateUV");
    mirror_[0] = Number(file, "mirrorU") != 0;
    mirror_[1] = Number(file, "mirrorV") != 0;
    wrap_[0] = Number(file, "wrapU") != 0;
    wrap_[1] = Number(file, "wrapV") != 0;
    stagger_ = Number(file, "stagger") != 0;
    for (unsigned i = 0; i < 3; ++i)
        default_[i] = static_cast<float>(Number(file, "defaultColor", static_cast<int>(i)));
    return {};
}

bool FileTexture::Place(double& u, double& v) const {
    Rotate(-rotateFrame_, u, v);
    double at[2] = {u, v};
    for (int i = 0; i < 2; ++i) {
        at[i] -= translate_[i];
        if (wrap_[i]) at[i] -= std::floor(at[i]);
        if (coverage_[i] == 0 || at[i] < 0 || at[i] > coverage_[i]) return false;
        at[i] = at[i] / coverage_[i] * repeat_[i] + offset_[i];
    }
    if (stagger_ && std::fmod(std::floor(at[1]), 2) != 0) at[0] += 0.5;
    for (int i = 0; i < 2; ++i)
        if (mirror_[i] && std::fmod(std::floor(at[i]), 2) != 0) at[i] = -at[i];
    Rotate(-rotate_, at[0], at[1]);
    u = at[0];
    v = at[1];
    return std::isfinite(u) && std::isfinite(v);
}

MFloatVector FileTexture::At(double u, double v, float& alpha) const {
    alpha = 1;
    if (!Place(u, v)) return default_;
    const double size[2] = {static_cast<double>(picture_.width),
                            static_cast<double>(picture_.height)};
    // In texels from the first one's middle; rows count from the top.
    const double x = (u - std::floor(u)) * size[0] - 0.5,
                 y = (1 - (v - std::floor(v))) * size[1] - 0.5;
    const int left = static_cast<int>(std::floor(x)), top = static_cast<int>(std::floor(y));
    float sum[4] = {};
    for (int dy = 0; dy < 2; ++dy)
        for (int dx = 0; dx < 2; ++dx) {
            const auto column = static_cast<size_t>((left + dx + picture_.width) % picture_.width);
            const auto row = static_cast<size_t>((top + dy + picture_.height) % picture_.height);
            const double share = (dx ? x - left : 1 - (x - left)) * (dy ? y - top : 1 - (y - top));
            for (size_t c = 0; c < 4; ++c)
                sum[c] += static_cast<float>(
                    share * picture_.pixels[row * picture_.RowBytes() + column * 4 + c] / 255);
        }
    alpha = sum[3];
    return {sum[0], sum[1], sum[2]};
}

}  // namespace minihost
