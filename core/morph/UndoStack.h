#pragma once

#include <cstddef>
#include <deque>
#include <utility>

namespace VantrelSDK {

/// The last ten strokes, newest first; an older one falls off the end.
template <class Data>
class StrokeUndoStack {
  public:
    static constexpr size_t kDepth = 10;

    void Push(Data data) {
        records_.push_front(std::move(data));
        if (records_.size() > kDepth) records_.pop_back();
    }
    /// False when the stack is empty.
    bool Pop(Data& data) {
        if (records_.empty()) return false;
        data = std::move(records_.front());
        records_.pop_front();
        return true;
    }
    void Clear() { records_.clear(); }
    size_t GetSize() const { return records_.size(); }

  private:
    std::deque<Data> records_;
};

}  // namespace VantrelSDK
