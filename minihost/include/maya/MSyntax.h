#pragma once

#include <memory>

#include "maya/MStatus.h"

namespace minihost {
class Syntax;
}

/// What words a command takes.
class MSyntax {
  public:
    enum MArgType {
        kInvalidArgType,
        kNoArg,
        kBoolean,
        kLong,
        kUnsigned,
        kDouble,
        kString,
        kDistance,
        kAngle,
        kTime,
        kSelectionItem,
        kLastArgType
    };
    enum MObjectFormat { kInvalidObjectFormat, kNone, kStringObjects, kSelectionList };

    MSyntax();
    ~MSyntax();
    MSyntax(const MSyntax& other);
    MSyntax& operator=(const MSyntax& other);

    /// Names with or without their '-': at most three letters, and at least four.
    MStatus addFlag(const char* shortName, const char* longName, MArgType arg1 = kNoArg,
                    MArgType arg2 = kNoArg, MArgType arg3 = kNoArg, MArgType arg4 = kNoArg,
                    MArgType arg5 = kNoArg, MArgType arg6 = kNoArg);
    MStatus makeFlagMultiUse(const char* flag);
    /// A query takes the flag's arguments too, as many as there are.
    MStatus makeFlagQueryWithFullArgs(const char* flag, bool optional);
    MStatus addArg(MArgType type);
    void enableQuery(bool on);
    void enableEdit(bool on);
    /// Names, or a selection, that follow the flags: how many at least and at most.
    MStatus setObjectType(MObjectFormat format, unsigned least = 0, unsigned most = ~0u);
    /// Without objects, the command works on what is selected.
    MStatus useSelectionAsDefault(bool on);
    void setMinObjects(unsigned least);
    void setMaxObjects(unsigned most);

    const minihost::Syntax& syntax() const { return *syntax_; }
    bool usesSelection() const { return useSelection_; }

  private:
    std::unique_ptr<minihost::Syntax> syntax_;
    unsigned arguments_ = 0;
    bool useSelection_ = false;
};
