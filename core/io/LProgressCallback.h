#pragma once

namespace VantrelSDK {

/// Shows how far a long operation has come, and lets it be stopped.
///
/// Every operation that can last longer than a tenth of a second takes one; null means that nobody
/// is watching. Called on the thread that runs the operation.
class LProgressCallback {
  public:
    virtual ~LProgressCallback() = default;
    virtual void Show() = 0;
    /// `done` runs from 0 to 1.
    virtual void SetProgress(float done) = 0;
    virtual float GetProgress() = 0;
    virtual void Hide() = 0;
    /// True when the user wants the operation to end; it then fails without a change.
    virtual bool IsCancelled() const { return false; }
};

}  // namespace VantrelSDK
