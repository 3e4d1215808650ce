#pragma once

#include <memory>
#include <utility>

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

/// Shows a progress display, which may be null, for as long as it lives.
class ProgressScope {
  public:
    explicit ProgressScope(std::unique_ptr<LProgressCallback> callback)
        : callback_(std::move(callback)) {
        if (callback_) callback_->Show();
    }
    ~ProgressScope() {
        if (callback_) callback_->Hide();
    }
    ProgressScope(const ProgressScope&) = delete;
    ProgressScope& operator=(const ProgressScope&) = delete;

    /// False when the user stops the operation.
    bool Reach(float done) {
        if (callback_) callback_->SetProgress(done);
        return !callback_ || !callback_->IsCancelled();
    }

  private:
    std::unique_ptr<LProgressCallback> callback_;
};

}  // namespace VantrelSDK
