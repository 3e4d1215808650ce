#pragma once

#include <functional>
#include <string>
#include <vector>

#include "minihost/command/CommandTable.h"
#include "minihost/command/ParsedFlags.h"
#include "minihost/graph/Modifier.h"
#include "minihost/graph/Names.h"

namespace minihost {

class Host;

/// Adds all commands that work on the scene.
void AddSceneCommands(Host& host);

/// createNode, delete, rename, parent, ls, objExists, nodeType, listRelatives.
void AddNodeCommands(Host& host);
/// getAttr, setAttr, connectAttr, disconnectAttr, listAttr, listConnections, attributeQuery,
/// removeMultiInstance, isConnected.
void AddPlugCommands(Host& host);
/// select, selectMode, selectType.
void AddSelectCommands(Host& host);
/// move, rotate, scale, xform.
void AddTransformCommands(Host& host);
/// polyPlane, polyCube, polySphere, deformer, skinCluster, blendShape, sets, createAndAssignShader.
void AddModelCommands(Host& host);
/// undo, redo, undoInfo, modules, tools, confirmDialog, progressWindow.
void AddHostCommands(Host& host);

/// refresh, viewFit.
void AddViewCommands(Host& host);
/// currentTime, playbackOptions, play, autoKeyframe, setKeyframe, cutKey, keyframe.
void AddAnimCommands(Host& host);
/// file.
void AddFileCommands(Host& host);

/// Adds a command that edits the scene. What its function does through the modifier is taken back
/// when it answers an error, and is a part of the statement for undo when it does not.
void AddEdit(Host& host, std::string name, Syntax syntax,
             std::function<Answer(Modifier&, const ParsedFlags&)> function);
/// Adds a command that only asks.
void AddQuestion(Host& host, std::string name, Syntax syntax,
                 std::function<Answer(const ParsedFlags&)> function);

/// What the objects of a call name, or what is selected when there are none. False, with `error`,
/// where a name finds nothing.
bool FindObjects(Host& host, const ParsedFlags& flags, std::vector<Named>& found,
                 CommandError& error);
/// The nodes of them, each once.
bool FindNodes(Host& host, const ParsedFlags& flags, std::vector<NodePtr>& found,
               CommandError& error);
/// The only node of a name; null, with `error`, where there is none or more than one.
NodePtr FindNode(Host& host, const std::string& name, CommandError& error);
/// Whether `plug` could be found; else `error` says why.
bool FindPlug(Host& host, const std::string& name, Plug& plug, CommandError& error);

/// A node's type, and all that it is built on, as `ls -type` knows them.
bool IsOfType(const Node& node, const std::string& type);

/// The value of a plug as scripts see it: angles in degrees, times in the person's unit.
Answer PlugValue(const Plug& plug);
/// A number of a script as the plug holds it, and back.
double FromScript(const Attribute& attribute, double number);
double ToScript(const Attribute& attribute, double number);

}  // namespace minihost
