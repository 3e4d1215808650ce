#pragma once

#include "minihost/graph/Modifier.h"

namespace minihost {

/// Registers "objectSet", "partition", "groupId" and "groupParts".
void RegisterSetTypes(NodeTypes& types);

/// Connects the lowest free element of an array of messages: a member of a set, a node in a list.
bool ConnectNext(Modifier& edits, const Plug& source, const NodePtr& node, const char* array);
/// The lowest logical index that an array does not have.
int FreeIndex(const Plug& array);
/// The lowest that a shape's objectGroups do not have.
Plug FreeObjectGroup(const NodePtr& shape);

/// A new "groupId" node, with a number that no other has.
NodePtr CreateGroupId(Modifier& edits, const std::string& name = {});
/// Puts components of a shape into a set: a group of the shape under the number of `groupId`. The
/// components themselves come with the shape's input, or are set here.
bool AddToSet(Modifier& edits, const NodePtr& shape, const NodePtr& set, const NodePtr& groupId,
              const Component* component = nullptr);
/// Takes a shape (its instObjGroups[0]) or one of its groups (an element of objectGroups, which
/// then goes) out of all sets. The number of a group goes too where nothing else has it, and with
/// it the groupParts that put it there.
void RemoveFromSets(Modifier& edits, const Plug& shapeOrGroup);

/// The node that feeds a plug, null for none.
NodePtr SourceNode(const Plug& destination);
/// Lets what a filter's output feeds be fed by what feeds its input instead.
void Bypass(Modifier& edits, const Plug& input, const Plug& output);

}  // namespace minihost
