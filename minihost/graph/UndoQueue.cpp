#include "minihost/graph/UndoQueue.h"

#include <utility>

namespace minihost {

void UndoQueue::Statement::Undo() const {
    for (auto part = parts.rbegin(); part != parts.rend(); ++part) part->done->Undo();
}

void UndoQueue::Begin(const std::string& name) {
    if (marks_.empty()) open_ = {name, {}};
    marks_.push_back(open_.parts.size());
}

void UndoQueue::Keep(Statement statement) {
    if (statement.parts.empty()) return;
    undone_.clear();
    std::erase_if(statement.parts, [](const Part& part) { return !part.keep; });
    if (statement.parts.empty()) return;
    done_.push_back(std::move(statement));
    if (done_.size() > kLength) done_.erase(done_.begin());
}

void UndoQueue::Commit() {
    if (marks_.empty()) return;
    marks_.pop_back();
    if (marks_.empty()) Keep(std::exchange(open_, {}));
}

void UndoQueue::Rollback() {
    if (marks_.empty()) return;
    auto& parts = open_.parts;
    replaying_ = true;
    for (; parts.size() > marks_.back(); parts.pop_back()) parts.back().done->Undo();
    replaying_ = false;
    Commit();
}

void UndoQueue::Add(std::shared_ptr<Undoable> done) {
    if (replaying_ || suspended_ > 0) return;
    if (!marks_.empty())
        open_.parts.push_back({std::move(done), enabled});
    else
        Keep({"", {{std::move(done), enabled}}});
}

bool UndoQueue::Undo() {
    if (done_.empty() || replaying_) return false;
    Statement statement = std::move(done_.back());
    done_.pop_back();
    replaying_ = true;
    statement.Undo();
    replaying_ = false;
    undone_.push_back(std::move(statement));
    return true;
}

bool UndoQueue::Redo() {
    if (undone_.empty() || replaying_) return false;
    Statement statement = std::move(undone_.back());
    undone_.pop_back();
    replaying_ = true;
    for (const Part& part : statement.parts) part.done->Redo();
    replaying_ = false;
    done_.push_back(std::move(statement));
    return true;
}

void UndoQueue::Clear() {
    done_.clear();
    undone_.clear();
    open_.parts.clear();
    for (size_t& mark : marks_) mark = 0;
}

}  // namespace minihost
