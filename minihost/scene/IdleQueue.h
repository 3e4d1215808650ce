#pragma once

#include <deque>
#include <functional>
#include <utility>

namespace minihost {

/// What is to be done when nothing else is.
class IdleQueue {
  public:
    void Add(std::function<void()> task) { tasks_.push_back(std::move(task)); }
    /// Does what is queued, in order. What that queues is left for the next time, so that a task
    /// which queues itself again does not hold the loop.
    void Flush() {
        for (std::deque<std::function<void()>> now = std::exchange(tasks_, {}); !now.empty();) {
            const std::function<void()> task = std::move(now.front());
            now.pop_front();
            task();
        }
    }
    void Clear() { tasks_.clear(); }
    bool IsEmpty() const { return tasks_.empty(); }

  private:
    std::deque<std::function<void()>> tasks_;
};

}  // namespace minihost
