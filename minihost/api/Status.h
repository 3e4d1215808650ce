#pragma once

#include "maya/MStatus.h"

namespace minihost {

/// Leaves a status where the caller asked for one; whether it is a success.
inline bool Tell(MStatus* status, MStatus value) {
    if (status) *status = value;
    return value;
}

/// The same, with a result that goes with it.
template <class T>
T Tell(MStatus* status, MStatus value, T result) {
    Tell(status, value);
    return result;
}

}  // namespace minihost
