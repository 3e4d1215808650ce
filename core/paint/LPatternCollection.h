#pragma once

#include <memory>
#include <vector>

#include "core/paint/LPattern.h"

namespace VantrelSDK {

class LNode;

/// The patterns of a node, of which at most one is active: the one that brushes use.
class LPatternCollection {
  public:
    /// The owner is borrowed and may be null.
    explicit LPatternCollection(LNode* owner) : owner_(owner) {}
    LPatternCollection(const LPatternCollection&) = delete;
    LPatternCollection& operator=(const LPatternCollection&) = delete;
    virtual ~LPatternCollection() = default;

    int GetNumPatterns() const { return static_cast<int>(patterns_.size()); }
    /// Null for a number that is none.
    LPattern* GetPattern(int i) const;
    /// Null, and -1, when none is.
    LPattern* GetActivePattern() const { return GetPattern(GetActiveIndex()); }
    int GetActiveIndex() const;
    /// -1 makes none active. False, and no change, for another number that is none and for a
    /// pattern without a picture.
    virtual bool SetAciveIndex(int i);
    /// Appends a pattern without a picture, and returns it.
    virtual LPattern* AddNewPattern();
    /// False for a number that is none.
    virtual bool DeletePattern(int i);
    /// Reads all pictures anew; false when one could not be.
    virtual bool Reload();
    LNode* owner() const { return owner_; }

  protected:
    /// One of the implementation's class, without a picture.
    virtual std::unique_ptr<LPattern> newPattern() = 0;
    void Append(std::unique_ptr<LPattern> pattern) { patterns_.push_back(std::move(pattern)); }

  private:
    LNode* owner_;
    std::vector<std::unique_ptr<LPattern>> patterns_;
};

}  // namespace VantrelSDK
