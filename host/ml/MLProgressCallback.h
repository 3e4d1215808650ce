#pragma once

#include <string>

#include "core/io/LProgressCallback.h"

namespace VantrelSDK {

/// The host's progress window. There is one at a time: what is shown while another is shows nothing
/// of its own.
class MLProgressCallback : public LProgressCallback {
  public:
    ~MLProgressCallback() override { Hide(); }

    void Show() override;
    /// -1 moves it on by a little; above 1 it begins anew.
    void SetProgress(float done) override;
    float GetProgress() override { return done_; }
    void Hide() override;
    /// What is going on.
    void SetStatus(std::string status) { status_ = std::move(status); }

  private:
    static bool shown;

    float done_ = 0;
    int percent_ = -1;
    bool mine_ = false;
    std::string status_;
};

}  // namespace VantrelSDK
