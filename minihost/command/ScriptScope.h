#pragma once

#include "minihost/command/StatementScope.h"
#include "minihost/graph/UndoQueue.h"

namespace minihost {

/// A top-level statement of a script is one step of undo, and one that fails leaves nothing behind.
class ScriptScope : public StatementScope {
  public:
    explicit ScriptScope(UndoQueue& queue) : queue_(queue) {}
    void Begin() override { queue_.Begin(); }
    void Commit() override { queue_.Commit(); }
    void Rollback() override { queue_.Rollback(); }

  private:
    UndoQueue& queue_;
};

}  // namespace minihost
