#pragma once

#include <cstdint>
#include <new>
#include <span>
#include <vector>

#include "core/mesh/ZeroedArray.h"

namespace VantrelSDK {

/// A set of numbers from 0 up, such as the vertices that a stroke has touched: a mark for each
/// number that there could be and a list of those that are in. Adding and asking cost a look at the
/// mark, clearing and walking cost what is in it. Not to be changed by two threads at a time.
class LIndexCache {
  public:
    struct Node {
        int index;
    };
    /// What Traverse calls.
    class NodeCallback {
      public:
        virtual ~NodeCallback() = default;
        virtual void proc(Node* node) = 0;
    };

    /// Numbers below `universe` need no growth of the marks; larger ones are welcome.
    explicit LIndexCache(int universe = 0) { marks_.Reset(universe > 0 ? universe : 0); }
    LIndexCache(const LIndexCache&) = delete;
    LIndexCache& operator=(const LIndexCache&) = delete;

    /// True when i is new. False for one that is present or below 0, and without memory.
    bool Add(int i) {
        if (unmarked_) MarkItems();
        if (static_cast<size_t>(i) >= marks_.size() && !Grow(i)) return false;
        if (marks_[i]) return false;
        try {
            items_.push_back(i);
        } catch (const std::bad_alloc&) {
            return false;
        }
        marks_[i] = 1;
        return true;
    }
    bool Get(int i) {
        if (unmarked_) MarkItems();
        return static_cast<size_t>(i) < marks_.size() && marks_[i];
    }
    /// Adds numbers of the universe of which none is in and none comes twice. When nothing else has
    /// been added since Clear, marking them waits until somebody asks.
    void AddUnique(std::span<const int> items) {
        if (!unmarked_ && !items_.empty()) {
            for (const int i : items) Add(i);
            return;
        }
        unmarked_ = true;
        items_.insert(items_.end(), items.begin(), items.end());
    }

    /// Add in two halves, for workers that each have numbers of their own (all below the universe):
    /// a worker sets the mark of a number that has none, 1 in Marks(); Join, called by one thread
    /// afterwards, takes the numbers that were marked so.
    uint8_t* Marks() { return marks_.data(); }
    void Join(std::span<const int> marked) {
        items_.insert(items_.end(), marked.begin(), marked.end());
    }
    /// Takes all out, and keeps the memory.
    void Clear();
    /// Makes room for `count` numbers in the list. False without memory.
    bool Reserve(size_t count);
    /// Takes all out and makes the universe 0 to universe - 1, whatever it was.
    bool Reset(int universe);

    int GetCount() const { return static_cast<int>(items_.size()); }
    /// In the order in which they were added. Valid until the next Add or Clear.
    std::span<const int> Items() const { return items_; }
    /// Calls back for each number in that order; those that the callback adds come too.
    void Traverse(NodeCallback* callback) const;

  private:
    bool Grow(int i);
    void MarkItems();

    ZeroedArray<uint8_t> marks_;
    std::vector<int> items_;
    /// The items came by AddUnique and have no marks yet.
    bool unmarked_ = false;
};

}  // namespace VantrelSDK
