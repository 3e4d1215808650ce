#pragma once

#include <iosfwd>

#include "maya/MStatus.h"
#include "maya/MString.h"
#include "maya/MTypeId.h"

class MArgList;

/// Data of a module's own that travels along connections and is kept in scenes. The host owns what
/// the type's creator made, and copies it where a plug's value is to be changed.
class MPxData {
  public:
    enum Type { kData, kGeometryData };

    virtual ~MPxData() = default;

    /// From the words of a text scene, beginning with `lastParsedElement`, which is left behind the
    /// last word read.
    virtual MStatus readASCII(const MArgList& words, unsigned& lastParsedElement);
    /// From a binary scene; `length`: how many bytes the scene holds for the value, at the most.
    virtual MStatus readBinary(std::istream& in, unsigned length);
    virtual MStatus writeASCII(std::ostream& out);
    virtual MStatus writeBinary(std::ostream& out);
    virtual void copy(const MPxData& other) = 0;
    virtual MTypeId typeId() const = 0;
    virtual MString name() const = 0;
};
