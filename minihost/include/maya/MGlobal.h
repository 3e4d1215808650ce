#pragma once

#include "maya/MCommandResult.h"
#include "maya/MDoubleArray.h"
#include "maya/MIntArray.h"
#include "maya/MObject.h"
#include "maya/MSelectionList.h"
#include "maya/MStatus.h"
#include "maya/MString.h"
#include "maya/MStringArray.h"

/// What concerns the host as a whole: messages to the person, scripts, the selection.
class MGlobal {
  public:
    enum MMayaState { kInteractive, kBatch, kLibraryApp };
    enum ListAdjustment {
        kReplaceList,
        kXORWithList,
        kAddToList,
        kRemoveFromList,
        kAddToHeadOfList
    };

    static MMayaState mayaState(MStatus* status = nullptr);
    static MString mayaVersion();

    static void displayInfo(const MString& text);
    static void displayWarning(const MString& text);
    static void displayError(const MString& text);

    /// Runs a script at once. An error is told, and is kFailure. `undoEnabled`: what it does is
    /// part of the statement that is being run; else no undo takes it back.
    static MStatus executeCommand(const MString& script, bool display = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& script, int& result, bool display = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& script, double& result, bool display = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& script, MString& result, bool display = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& script, MStringArray& result, bool display = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& script, MIntArray& result, bool display = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& script, MDoubleArray& result, bool display = false,
                                  bool undoEnabled = false);
    static MStatus executeCommand(const MString& script, MCommandResult& result,
                                  bool display = false, bool undoEnabled = false);
    static MString executeCommandStringResult(const MString& script, bool display = false,
                                              bool undoEnabled = false, MStatus* status = nullptr);
    /// Runs it when the host is idle again, in the order of the calls.
    static MStatus executeCommandOnIdle(const MString& script, bool display = false);

    static MStatus getActiveSelectionList(MSelectionList& list);
    static MStatus setActiveSelectionList(const MSelectionList& list,
                                          ListAdjustment how = kReplaceList);
    static MStatus clearSelectionList();
    static MStatus getSelectionListByName(const MString& name, MSelectionList& list);
    static MStatus select(const MObject& node, ListAdjustment how = kAddToList);
    static MStatus selectByName(const MString& name, ListAdjustment how = kAddToList);
    static MStatus unselectByName(const MString& name);

    static int optionVarIntValue(const MString& name, bool* exists = nullptr);
    static bool setOptionVarValue(const MString& name, int value);
};
