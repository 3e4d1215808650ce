#pragma once

#include <vector>

#include "maya/MDoubleArray.h"
#include "maya/MIntArray.h"
#include "maya/MStatus.h"
#include "maya/MString.h"
#include "maya/MStringArray.h"
#include "minihost/command/Value.h"

/// The words that a command was called with, flags among them.
class MArgList {
  public:
    MArgList() = default;

    unsigned length(MStatus* status = nullptr) const;
    /// The word at a place as a number or text; `status` tells where it is none.
    bool asBool(unsigned index, MStatus* status = nullptr) const;
    int asInt(unsigned index, MStatus* status = nullptr) const;
    double asDouble(unsigned index, MStatus* status = nullptr) const;
    MString asString(unsigned index, MStatus* status = nullptr) const;
    MStatus get(unsigned index, bool& value) const;
    MStatus get(unsigned index, int& value) const;
    MStatus get(unsigned index, double& value) const;
    MStatus get(unsigned index, MString& value) const;
    /// The place of a flag by either name.
    unsigned flagIndex(const char* flag, const char* longFlag = nullptr) const;
    MStatus addArg(bool value) { return Add(value); }
    MStatus addArg(int value) { return Add(value); }
    MStatus addArg(double value) { return Add(value); }
    MStatus addArg(const MString& value) { return Add(value.str()); }
    MStatus addArg(const char* value) { return Add(value); }

    static constexpr unsigned kInvalidArgIndex = ~0u;

    explicit MArgList(std::vector<minihost::Value> words) : words_(std::move(words)) {}
    const std::vector<minihost::Value>& words() const { return words_; }

  private:
    MStatus Add(minihost::Value value) {
        words_.push_back(std::move(value));
        return MS::kSuccess;
    }

    std::vector<minihost::Value> words_;
};
