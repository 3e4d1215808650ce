#pragma once

#include "maya/MArgList.h"
#include "maya/MArgParser.h"
#include "maya/MPxCommand.h"
#include "maya/MStatus.h"
#include "maya/MSyntax.h"

class MPxContext;

namespace minihost {
class ContextCommand;
}

/// The command that makes tools of a kind and edits and queries them: "COMMAND NAME" makes one,
/// "COMMAND -edit FLAGS NAME", "COMMAND -query FLAG NAME", "COMMAND -exists NAME".
class MPxContextCommand {
  public:
    virtual ~MPxContextCommand() = default;

    /// A new tool; the host owns it.
    virtual MPxContext* makeObj() = 0;
    virtual MStatus appendSyntax() { return MStatus::kSuccess; }
    virtual MStatus doEditFlags() { return MStatus::kSuccess; }
    virtual MStatus doQueryFlags() { return MStatus::kSuccess; }

    void setResult(bool value) { MPxCommand::setResult(value); }
    void setResult(int value) { MPxCommand::setResult(value); }
    void setResult(double value) { MPxCommand::setResult(value); }
    void setResult(const MString& value) { MPxCommand::setResult(value); }
    void setResult(const MStringArray& values) { MPxCommand::setResult(values); }

  protected:
    MSyntax syntax() const { return syntax_; }
    MSyntax& editSyntax() { return syntax_; }
    /// The words of the call that is being answered.
    MArgParser parser() const { return MArgParser(syntax_, words_); }

  private:
    friend class minihost::ContextCommand;

    MSyntax syntax_;
    MArgList words_;
};
