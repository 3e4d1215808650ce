#pragma once

#include <maya/MPxData.h>

#include "core/io/LBlindData.h"

namespace VantrelSDK {

class MLNode;

/// A node's whole state as a value of the host's, which keeps it in scenes. In a text scene its
/// size and then each byte as a number; in a binary one its size in 32 bits and the bytes.
class KelmoBlindData : public MPxData, public LBlindData {
  public:
    KelmoBlindData() = default;
    /// The node, borrowed, writes itself when a binary scene wants a value that is empty.
    explicit KelmoBlindData(MLNode* node) : kelmo2(node) {}

    static void* creator() { return new KelmoBlindData; }

    MStatus readASCII(const MArgList& words, unsigned& index) override;
    MStatus readBinary(std::istream& in, unsigned length) override;
    MStatus writeASCII(std::ostream& out) override;
    MStatus writeBinary(std::ostream& out) override;
    /// Of data of another type nothing is taken.
    void copy(const MPxData& other) override;
    MTypeId typeId() const override;
    MString name() const override;

    MLNode* kelmo2 = nullptr;

  private:
    MStatus WriteBytes(std::ostream& out);
};

}  // namespace VantrelSDK
