#pragma once

#include "host/commands/EditCommand.h"
#include "host/nodes/Finders.h"

namespace VantrelSDK {

/// KelmoNew -geometry MESH: makes a node and puts it at the end of what makes the mesh; the name of
/// the node. With -isdeformer it is one of the older class, which the host puts there.
///
/// With -maketweak what tweaks do to the mesh is gathered in one tweak right before the node, where
/// the person's later edits of vertices go too. Undo takes all of it back.
class KelmoNewCmd : public EditCommand {
  public:
    static void* creator() { return new KelmoNewCmd; }
    static MSyntax newSyntax();

    MStatus doIt(const MArgList& words) override;

  private:
    MStatus CreateDeformer(const MObject& shape);
    MStatus CreateNonDeformer(const MObject& shape, bool makeTweak);
    MStatus Insert(const MObject& shape);
};

/// Connects what the mesh was before it was deformed on the way to the node: the output of the
/// skin, or the shape that the way starts from, or what makes that. Done by the modifier's doIt.
MStatus ConnectPreDeformed(const MObject& node, MDGModifier& edits);
/// Puts a KelmoNode2 that stands alone between a shape and what feeds it. Done when it returns.
MStatus InsertBefore(const MObject& shape, const MObject& node, MDGModifier& edits);

}  // namespace VantrelSDK
