#include "minihost/graph/Data.h"

#include <cstring>

namespace minihost {

bool SameValue(const Datum& a, const Datum& b) {
    if (a.index() != b.index()) return false;
    if (const double* x = std::get_if<double>(&a)) {
        // Bits: a number that is not one is equal to itself here.
        return std::memcmp(x, &std::get<double>(b), sizeof *x) == 0;
    }
    if (const auto* x = std::get_if<std::shared_ptr<Data>>(&a)) {
        const auto& y = std::get<std::shared_ptr<Data>>(b);
        return *x == y || (*x && y && (*x)->Equals(*y));
    }
    return true;
}

std::shared_ptr<Data> MakeData(MFnData::Type type) {
    switch (type) {
        case MFnData::kNumeric:
            return std::make_shared<NumericData>();
        case MFnData::kString:
            return std::make_shared<StringData>();
        case MFnData::kMatrix:
            return std::make_shared<MatrixData>();
        case MFnData::kStringArray:
            return std::make_shared<StringArrayData>();
        case MFnData::kDoubleArray:
            return std::make_shared<DoubleArrayData>();
        case MFnData::kIntArray:
            return std::make_shared<IntArrayData>();
        case MFnData::kPointArray:
            return std::make_shared<PointArrayData>();
        case MFnData::kVectorArray:
            return std::make_shared<VectorArrayData>();
        case MFnData::kComponentList:
            return std::make_shared<ComponentListData>();
        case MFnData::kMesh:
        case MFnData::kKeys:
        case MFnData::kPlugin:
        case MFnData::kAny:
        case MFnData::kInvalid:
            break;
    }
    return nullptr;
}

}  // namespace minihost
