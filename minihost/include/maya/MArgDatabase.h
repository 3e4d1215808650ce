#pragma once

#include "maya/MArgParser.h"

/// The words of a call with their objects as things of the scene.
class MArgDatabase : public MArgParser {
  public:
    using MArgParser::getObjects;
    MArgDatabase(const MSyntax& syntax, const MArgList& words, MStatus* status = nullptr);

    /// The objects by name, or what is selected where the syntax says so and there are none. Fails
    /// where a name finds nothing.
    MStatus getObjects(MSelectionList& list) const;

  private:
    bool useSelection_;
};
