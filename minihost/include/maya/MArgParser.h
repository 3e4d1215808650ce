#pragma once

#include <memory>

#include "maya/MArgList.h"
#include "maya/MDoubleArray.h"
#include "maya/MSelectionList.h"
#include "maya/MStatus.h"
#include "maya/MString.h"
#include "maya/MStringArray.h"
#include "maya/MSyntax.h"
#include "maya/MTime.h"

namespace minihost {
class ParsedFlags;
}

/// The words of a call, sorted by a syntax. Flags are asked for by either name.
class MArgParser {
  public:
    /// A failure has been told on the command's output, with the reason.
    MArgParser(const MSyntax& syntax, const MArgList& words, MStatus* status = nullptr);
    virtual ~MArgParser();
    MArgParser(const MArgParser&) = delete;
    MArgParser& operator=(const MArgParser&) = delete;

    bool isFlagSet(const char* flag, MStatus* status = nullptr) const;
    bool isEdit(MStatus* status = nullptr) const;
    bool isQuery(MStatus* status = nullptr) const;
    unsigned numberOfFlagUses(const char* flag) const;
    unsigned numberOfFlagsUsed() const;

    MStatus getFlagArgument(const char* flag, unsigned index, bool& value) const;
    MStatus getFlagArgument(const char* flag, unsigned index, int& value) const;
    MStatus getFlagArgument(const char* flag, unsigned index, unsigned& value) const;
    MStatus getFlagArgument(const char* flag, unsigned index, double& value) const;
    MStatus getFlagArgument(const char* flag, unsigned index, MString& value) const;
    /// A number is in the unit that the person works in.
    MStatus getFlagArgument(const char* flag, unsigned index, MTime& value) const;
    MStatus getFlagArgumentList(const char* flag, unsigned use, MArgList& words) const;
    MStatus getCommandArgument(unsigned index, int& value) const;
    MStatus getCommandArgument(unsigned index, double& value) const;
    MStatus getCommandArgument(unsigned index, MString& value) const;
    MStatus getObjects(MStringArray& objects) const;

  protected:
    /// The parsed words, null after a failure.
    const minihost::ParsedFlags* flags() const { return flags_.get(); }

  private:
    template <class T, class Convert>
    MStatus Argument(const char* flag, unsigned index, T& value, Convert convert) const;

    MSyntax syntax_;
    std::unique_ptr<minihost::ParsedFlags> flags_;
};
