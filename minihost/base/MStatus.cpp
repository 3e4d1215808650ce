#include "maya/MStatus.h"

#include <cstdio>

#include "maya/MString.h"

MString MStatus::errorString() const {
    switch (code_) {
        case kSuccess:
            return "Success";
        case kInsufficientMemory:
            return "Insufficient memory to complete this method";
        case kInvalidParameter:
            return "Object is incompatible with this method";
        case kLicenseFailure:
            return "Not licensed";
        case kUnknownParameter:
            return "Unrecognized parameter";
        case kNotImplemented:
            return "Not implemented";
        case kNotFound:
            return "Item not found";
        case kEndOfFile:
            return "End of file";
        case kFailure:
            break;
    }
    return "Unexpected Internal Failure";
}

void MStatus::perror(const char* text) const {
    if (error())
        std::fprintf(stderr, "%s: (%s)\n", text, errorString().asChar());
    else
        std::fprintf(stderr, "%s\n", text);
}

void MStatus::perror(const MString& text) const {
    perror(text.asChar());
}
