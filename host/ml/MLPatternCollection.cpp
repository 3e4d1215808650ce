#include "host/ml/MLPatternCollection.h"

#include <maya/MGlobal.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>
#include <vector>

#include "core/io/LStrFile.h"
#include "host/ml/Diagnostics.h"
#include "host/ml/MLNode.h"
#include "host/ml/MLPattern.h"
#include "host/ml/MLProgressCallback.h"

namespace VantrelSDK {

namespace {

/// Behind the last slash of either kind.
std::string BaseName(const std::string& path) {
    const size_t slash = path.rfind('/');
    const size_t at = slash != path.npos ? slash : path.rfind('\\');
    return at == path.npos ? path : path.substr(at + 1);
}

bool IsBlank(char c) {
    return std::isspace(static_cast<unsigned char>(c));
}

}  // namespace

MLPatternCollection::MLPatternCollection(MLNode* owner) : LPatternCollection(owner), node_(owner) {}

MLPattern* MLPatternCollection::Pattern(int i) const {
    return static_cast<MLPattern*>(GetPattern(i));
}

std::unique_ptr<LPattern> MLPatternCollection::newPattern() {
    return std::make_unique<MLPattern>(node_);
}

bool MLPatternCollection::SetAciveIndex(int i) {
    const int before = GetActiveIndex();
    MLPattern* former = Pattern(before);
    if (former && (i == -1 || (i != before && GetPattern(i) && GetPattern(i)->GetPreviewPixels())))
        former->ReleaseTex();
    if (!LPatternCollection::SetAciveIndex(i)) return false;
    if (ActivePattern() && GetActiveIndex() != before)
        ActivePattern()->CreateTex(1, nullptr, nullptr);
    return true;
}

bool MLPatternCollection::WriteSwatches() const {
    bool all = true;
    for (int i = 0; i < GetNumPatterns(); ++i) all &= Pattern(i)->WriteSwatch();
    return all;
}

bool MLPatternCollection::LoadPatterns(const MString& file, bool required) {
    const MString folder = GetPatternsPath(file, required);
    LStrFile list;
    if (!list.Open((folder + file).asChar(), "rt")) {
        if (required) MGlobal::displayError("Kelmo: can not open " + file);
        return false;
    }
    int count = 0;
    if (list.ReadNumPatternsTag(count) != 1) return false;
    MLProgressCallback progress;
    progress.Show();
    for (int i = 0; i < count; ++i) {
        LStrFile::Text name, field, image;
        if (list.ReadPatternTag(name, field, image) != 1 || !name || !image) return false;
        Append(std::make_unique<MLPattern>(node_, folder + image->c_str(), name->c_str()));
        progress.SetProgress(static_cast<float>(i + 1) / static_cast<float>(count));
    }
    return true;
}

bool MLPatternCollection::SavePatterns(const MString& file) const {
    if (GetNumPatterns() == 0) return true;
    // A list is of words: what has no file, or one with a blank in its name, would cut it short for
    // whoever reads it.
    std::vector<std::pair<std::string, std::string>> records;
    for (int i = 0; i < GetNumPatterns(); ++i) {
        std::string name = GetPattern(i)->GetName(), image = BaseName(GetPattern(i)->GetFileName());
        std::ranges::replace_if(name, IsBlank, '_');
        if (!image.empty() && std::ranges::none_of(image, IsBlank))
            records.emplace_back(std::move(name), std::move(image));
    }
    MString folder = FindPatternsPath(file);
    if (folder.length() == 0) folder = GetPatternsPath(file, false);
    LStrFile list;
    if (!list.Open((folder + file).asChar(), "wt") ||
        !list.WriteNumPatternsTag(static_cast<int>(records.size())))
        return false;
    return std::ranges::all_of(records, [&](const auto& record) {
        return list.WritePatternTag(record.first, {}, record.second);
    });
}

}  // namespace VantrelSDK
