#pragma once

#include <memory>
#include <string>
#include <vector>

#include "minihost/graph/Modifier.h"

namespace minihost {

/// What was done, a top-level statement at a time, and can be taken back. Something new that is
/// done drops what was taken back and not done again.
class UndoQueue {
  public:
    /// How many statements it keeps.
    static constexpr size_t kLength = 200;

    /// Opens a statement. Statements within it are parts of it.
    void Begin(const std::string& name = {});
    /// Closes the statement; the outermost is kept where something was done in it.
    void Commit();
    /// Closes the statement and takes back what was done in it, and in it alone.
    void Rollback();
    /// Within a statement: something that was done. Outside one it is a statement of its own.
    void Add(std::shared_ptr<Undoable> done);

    /// False where there is nothing.
    bool Undo();
    bool Redo();
    void Clear();
    /// What Undo and Redo would do; empty for nothing.
    std::string UndoName() const { return done_.empty() ? "" : done_.back().name; }
    std::string RedoName() const { return undone_.empty() ? "" : undone_.back().name; }
    size_t size() const { return done_.size(); }
    /// What is done while it isn't, be it in a statement that goes on, is not kept.
    bool enabled = true;

    /// While one lives, what is done is not known to the queue.
    class Suspension {
      public:
        explicit Suspension(UndoQueue& queue) : queue_(queue) { ++queue_.suspended_; }
        ~Suspension() { --queue_.suspended_; }
        Suspension(const Suspension&) = delete;
        Suspension& operator=(const Suspension&) = delete;

      private:
        UndoQueue& queue_;
    };

  private:
    struct Part {
        std::shared_ptr<Undoable> done;
        /// Done while the queue was enabled; else it is only there for a Rollback.
        bool keep;
    };
    struct Statement {
        std::string name;
        std::vector<Part> parts;
        void Undo() const;
    };

    void Keep(Statement statement);

    std::vector<Statement> done_, undone_;
    Statement open_;
    /// How many parts there were when each of the open statements began.
    std::vector<size_t> marks_;
    bool replaying_ = false;
    int suspended_ = 0;
};

}  // namespace minihost
