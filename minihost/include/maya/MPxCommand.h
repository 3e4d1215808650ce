#pragma once

#include <memory>

#include "maya/MArgList.h"
#include "maya/MStatus.h"
#include "maya/MString.h"
#include "maya/MStringArray.h"
#include "maya/MSyntax.h"

namespace minihost {
class PluginCommand;
}

/// A module's own command. The host makes one for each call, keeps it for undo when isUndoable says
/// so after doIt, and destroys it then.
class MPxCommand {
  public:
    virtual ~MPxCommand();

    virtual MStatus doIt(const MArgList& words);
    virtual MStatus undoIt();
    virtual MStatus redoIt();
    virtual bool isUndoable() const { return false; }
    virtual bool hasSyntax() const { return true; }
    MSyntax syntax() const;

    /// What a script gets. `append` lengthens an array result.
    static void setResult(bool value);
    static void setResult(int value);
    static void setResult(unsigned value) { setResult(static_cast<int>(value)); }
    static void setResult(double value);
    static void setResult(const char* value) { setResult(MString(value)); }
    static void setResult(const MString& value);
    static void setResult(const MIntArray& values);
    static void setResult(const MDoubleArray& values);
    static void setResult(const MStringArray& values);
    static void appendToResult(int value);
    static void appendToResult(double value);
    static void appendToResult(const MString& value);
    static void appendToResult(const char* value) { appendToResult(MString(value)); }
    static void clearResult();
    static void displayError(const MString& text);
    static void displayWarning(const MString& text);
    static void displayInfo(const MString& text);

  protected:
    MPxCommand();
    void setCommandString(const MString& name) { name_ = name; }
    MString commandString() const { return name_; }

  private:
    friend class minihost::PluginCommand;

    MString name_;
};
