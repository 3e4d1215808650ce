#pragma once

#include <maya/MString.h>

#include "core/paint/LPatternCollection.h"

namespace VantrelSDK {

class MLNode;
class MLPattern;

/// The patterns of a host's node. They are listed in text files, which name images that lie in the
/// same folder; see LStrFile.
class MLPatternCollection : public LPatternCollection {
  public:
    explicit MLPatternCollection(MLNode* owner);

    MLPattern* Pattern(int i) const;
    MLPattern* ActivePattern() const { return Pattern(GetActiveIndex()); }
    /// The active pattern alone has a texture.
    bool SetAciveIndex(int i) override;
    /// False when one could not be written.
    bool WriteSwatches() const;
    /// Appends what a list names, which is looked for in the folders of icons. A pattern whose
    /// image can't be read is in it all the same. False, which is told where it is `required`, when
    /// there is no list, and for one that breaks off; what it named up to there stays.
    bool LoadPatterns(const MString& file, bool required);
    /// Writes the list, into the folder where it lies or else where it would be looked for. Nothing
    /// without patterns. False when it can't be written.
    bool SavePatterns(const MString& file) const;

  protected:
    std::unique_ptr<LPattern> newPattern() override;

  private:
    MLNode* node_;
};

}  // namespace VantrelSDK
