#include "host/nodes/NodeJournal.h"

#include <fstream>
#include <iterator>

#include "core/sculpt/StrokePlayer.h"
#include "host/ml/MLNode.h"

namespace VantrelSDK {

std::unique_ptr<NodeJournal> NodeJournal::Start(MLNode& node, const std::string& path,
                                                std::string& error) {
    std::unique_ptr<NodeJournal> made(new NodeJournal(node));
    if (!made->journal_.Open(path, StrokeLogHeader, error)) return nullptr;
    made->recorder_ = std::make_unique<StrokeRecorder>(made->target_, made->journal_);
    return made;
}

bool NodeJournal::Stop(std::string& error) {
    recorder_.reset();
    return journal_.Close(error);
}

int PlayJournal(MLNode& node, const std::string& path, std::string& error) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        error = path + ": cannot open";
        return -1;
    }
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    NodeTarget target(node);
    StrokePlayer player(target);
    StrokeLogReader reader(WholeStrokes(text));
    StrokeOp op;
    FileError problem;
    int strokes = 0;
    StrokeLogReader::Result read;
    while ((read = reader.Next(op, problem)) == StrokeLogReader::Result::Operation) {
        if (std::holds_alternative<ReleaseOp>(op)) ++strokes;
        if (player.Play(op, problem.message)) continue;
        problem.line = reader.Line();
        read = StrokeLogReader::Result::Failed;
        break;
    }
    node.playedPressure = -1;
    if (read == StrokeLogReader::Result::End) return strokes;
    problem.file = path;
    error = problem.Text();
    return -1;
}

}  // namespace VantrelSDK
