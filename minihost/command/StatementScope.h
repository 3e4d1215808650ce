#pragma once

namespace minihost {

/// Is told where the statements of a script begin and end, so that one that fails can be taken
/// back: an undo queue opens a group, closes it or undoes it. Calls come in pairs, Begin and then
/// Commit or Rollback, and nest: within a top-level statement what `catch` guards is a pair of its
/// own. Scripts that commands run belong to the statement that called them. Whether the outermost
/// pair is one step of undo is for the queue to say.
class StatementScope {
  public:
    virtual ~StatementScope() = default;
    virtual void Begin() = 0;
    virtual void Commit() = 0;
    virtual void Rollback() = 0;
};

}  // namespace minihost
