#include "host/nodes/KelmoBlindData.h"

#include <maya/MArgList.h>
#include <maya/MGlobal.h>

#include <algorithm>
#include <cstring>
#include <istream>
#include <ostream>

#include "host/ml/MLNode.h"
#include "host/nodes/NodeTypes.h"

namespace VantrelSDK {

namespace {

/// What is written at a time.
constexpr uint64_t kPiece = 100000000;

void Put(std::ostream& out, uint32_t value) {
    out.write(reinterpret_cast<const char*>(&value), sizeof value);
}

bool Take(std::istream& in, uint32_t& value) {
    return static_cast<bool>(in.read(reinterpret_cast<char*>(&value), sizeof value));
}

}  // namespace

MTypeId KelmoBlindData::typeId() const {
    return MTypeId(kBlindDataId);
}

MString KelmoBlindData::name() const {
    return kBlindDataName;
}

MStatus KelmoBlindData::readASCII(const MArgList& words, unsigned& index) {
    const unsigned length = words.length();
    int size = 0;
    if (index >= length || !words.get(index, size)) return MS::kFailure;
    ++index;
    // Each byte has a word of its own.
    if (size < 0 || static_cast<unsigned>(size) > length - index) return MS::kFailure;
    if (SetSize(static_cast<unsigned>(size)) != kDone) return MS::kFailure;
    for (int i = 0; i < size; ++i, ++index) {
        int byte = 0;
        if (!words.get(index, byte) || byte < 0 || byte > 255) {
            Clear();
            return MS::kFailure;
        }
        GetData()[i] = static_cast<uint8_t>(byte);
    }
    return MS::kSuccess;
}

MStatus KelmoBlindData::writeASCII(std::ostream& out) {
    out << GetSize();
    std::string text;
    for (uint64_t i = 0; i < GetSize(); ++i) text += " " + std::to_string(GetData()[i]);
    out << text;
    return out ? MS::kSuccess : MS::kFailure;
}

MStatus KelmoBlindData::readBinary(std::istream& in, unsigned length) {
    const unsigned expected = length >= 4 ? length - 4 : 0;
    uint32_t size = 0, wide = 0;
    if (!Take(in, size)) return MS::kFailure;
    const bool isWide = expected >= 4 && size == expected - 4;
    if (size != expected && !isWide) {
        MGlobal::displayError("KelmoBlindData: unexpected data size (expected size:" +
                              MString(std::to_string(expected)) +
                              " stored size:" + MString(std::to_string(size)) + ")");
        return MS::kFailure;
    }
    if (isWide && !Take(in, wide)) return MS::kFailure;
    if (SetSize(size) != kDone) return MS::kFailure;
    in.read(reinterpret_cast<char*>(GetData()), size);
    if (in) return MS::kSuccess;
    Clear();
    return MS::kFailure;
}

MStatus KelmoBlindData::WriteBytes(std::ostream& out) {
    Put(out, static_cast<uint32_t>(GetSize()));
    for (uint64_t at = 0; at < GetSize(); at += kPiece)
        out.write(reinterpret_cast<const char*>(GetData()) + at,
                  static_cast<std::streamsize>(std::min(kPiece, GetSize() - at)));
    return out ? MS::kSuccess : MS::kFailure;
}

MStatus KelmoBlindData::writeBinary(std::ostream& out) try {
    if (GetSize() > 0) return WriteBytes(out);
    if (kelmo2) {
        if (BeginWrite() != kDone || kelmo2->WriteTo(this) != kDone || EndWrite() != kDone)
            MGlobal::displayError("Kelmo: Save failed");
        const MStatus status = WriteBytes(out);
        Clear();
        return status;
    }
    // A value that holds nothing has to hold something.
    Put(out, 4);
    Put(out, 1);
    return out ? MS::kSuccess : MS::kFailure;
} catch (...) {
    MGlobal::displayError("KelmoBlindData: exception occured.");
    return MS::kFailure;
}

void KelmoBlindData::copy(const MPxData& other) {
    if (other.typeId() != typeId()) {
        MGlobal::displayError("KelmoBlindData: can not copy - type mismatch\n");
        return;
    }
    const auto& from = static_cast<const KelmoBlindData&>(other);
    kelmo2 = from.kelmo2;
    Clear();
    if (from.GetSize() == 0 || SetSize(static_cast<unsigned>(from.GetSize())) != kDone) return;
    std::memcpy(GetData(), from.GetData(), from.GetSize());
}

}  // namespace VantrelSDK
