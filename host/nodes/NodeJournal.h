#pragma once

#include <memory>
#include <string>

#include "core/io/StrokeJournal.h"
#include "core/sculpt/StrokeRecorder.h"
#include "host/nodes/NodeTarget.h"

namespace VantrelSDK {

class MLNode;

/// The journal that a node keeps of what is done to it; it ends with this.
class NodeJournal {
  public:
    /// Null, with the reason, where the file can't be written.
    static std::unique_ptr<NodeJournal> Start(MLNode& node, const std::string& path,
                                              std::string& error);

    StrokeRecorder& recorder() { return *recorder_; }
    StrokeJournal& journal() { return journal_; }
    /// False, with the reason, when something could not be written.
    bool Stop(std::string& error);

  private:
    explicit NodeJournal(MLNode& node) : target_(node) {}

    NodeTarget target_;
    StrokeJournal journal_;
    std::unique_ptr<StrokeRecorder> recorder_;
};

/// Plays a journal on a node, up to its last whole stroke. Returns the strokes that it played; -1
/// with the reason, where it stands and what was done of it until then stays.
int PlayJournal(MLNode& node, const std::string& path, std::string& error);

}  // namespace VantrelSDK
