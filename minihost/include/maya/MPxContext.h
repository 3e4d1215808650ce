#pragma once

#include "maya/MCursor.h"
#include "maya/MStatus.h"
#include "maya/MString.h"

class MEvent;

/// A module's own tool. It is on between toolOnSetup and toolOffCleanup.
class MPxContext {
  public:
    virtual ~MPxContext() = default;

    virtual void toolOnSetup(MEvent&) {}
    virtual void toolOffCleanup() {}
    virtual MStatus doPress(MEvent&) { return MStatus::kSuccess; }
    virtual MStatus doDrag(MEvent&) { return MStatus::kSuccess; }
    virtual MStatus doRelease(MEvent&) { return MStatus::kSuccess; }
    virtual MStatus doHold(MEvent&) { return MStatus::kSuccess; }
    virtual MStatus doEnterRegion(MEvent&) { return MStatus::kSuccess; }
    virtual void getClassName(MString& name) const { name = name_; }
    virtual void completeAction() {}
    virtual void deleteAction() {}
    virtual void abortAction() {}

    /// The name by which scripts know the tool.
    MString name() const { return name_; }
    MString titleString() const { return title_; }
    MString helpString() const { return help_; }
    void setTitleString(const MString& title) { title_ = title; }
    void setHelpString(const MString& help) { help_ = help; }
    void setName(const MString& name) { name_ = name; }
    /// What the pointer looks like in views while the tool is on.
    const MCursor& cursor() const { return cursor_; }
    MStatus setCursor(const MCursor& cursor) {
        cursor_ = cursor;
        return MStatus::kSuccess;
    }

  private:
    MString name_, title_, help_;
    MCursor cursor_;
};
