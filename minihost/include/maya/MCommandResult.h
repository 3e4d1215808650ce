#pragma once

#include <memory>

#include "maya/MDoubleArray.h"
#include "maya/MIntArray.h"
#include "maya/MStatus.h"
#include "maya/MString.h"
#include "maya/MStringArray.h"

namespace minihost {
class Value;
}

/// What a script came to. Reading it as another type converts where scripts would.
class MCommandResult {
  public:
    enum Type { kInvalid, kInt, kIntArray, kDouble, kDoubleArray, kString, kStringArray, kVector };

    MCommandResult(MStatus* status = nullptr);
    ~MCommandResult();
    MCommandResult(const MCommandResult&) = delete;
    MCommandResult& operator=(const MCommandResult&) = delete;

    Type resultType(MStatus* status = nullptr) const;
    MStatus getResult(int& value) const;
    MStatus getResult(double& value) const;
    MStatus getResult(MString& value) const;
    MStatus getResult(MIntArray& values) const;
    MStatus getResult(MDoubleArray& values) const;
    MStatus getResult(MStringArray& values) const;
    MString stringResult(MStatus* status = nullptr) const;

    void set(minihost::Value value);
    const minihost::Value& get() const { return *value_; }

  private:
    std::unique_ptr<minihost::Value> value_;
};
