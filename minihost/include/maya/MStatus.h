#pragma once

class MString;

/// What a call came to. True where it succeeded.
class MStatus {
  public:
    enum MStatusCode {
        kSuccess = 0,
        kFailure,
        kInsufficientMemory,
        kInvalidParameter,
        kLicenseFailure,
        kUnknownParameter,
        kNotImplemented,
        kNotFound,
        kEndOfFile,
    };

    MStatus() = default;
    MStatus(MStatusCode code) : code_(code) {}

    operator bool() const { return code_ == kSuccess; }
    bool error() const { return code_ != kSuccess; }
    MStatusCode statusCode() const { return code_; }
    /// The code in words.
    MString errorString() const;
    /// Shows `text`, and the code in words where there is one to tell, on standard error.
    void perror(const char* text) const;
    void perror(const MString& text) const;

    bool operator==(const MStatus& other) const { return code_ == other.code_; }
    bool operator!=(const MStatus& other) const { return code_ != other.code_; }
    bool operator==(MStatusCode code) const { return code_ == code; }
    bool operator!=(MStatusCode code) const { return code_ != code; }

  private:
    MStatusCode code_ = kSuccess;
};

using MS = MStatus;

/// Returns from the function, with `text` shown, when `status` is a failure.
#define CHECK_MSTATUS_AND_RETURN_IT(status) \
    do {                                    \
        const MStatus checked_ = (status);  \
        if (!checked_) return checked_;     \
    } while (false)
