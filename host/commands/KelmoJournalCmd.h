#pragma once

#include <maya/MPxCommand.h>

namespace VantrelSDK {

/// KelmoJournal [flags] NODE: keeps what is done to a node on disk, stroke by stroke.
/// -start FILE begins, in place of a journal that the node has; -stop ends it; -wait waits until
/// all that was done is on disk; -play FILE does to the node what a journal holds, and answers how
/// many strokes. Queries: -path of the journal, "" without one; -strokes; -broken: something was
/// done that the journal can't tell, and only the scene holds it; -problem: why it can't be
/// written, "".
class KelmoJournalCmd : public MPxCommand {
  public:
    static void* creator() { return new KelmoJournalCmd; }
    static MSyntax newSyntax();
    MStatus doIt(const MArgList& words) override;
};

}  // namespace VantrelSDK
