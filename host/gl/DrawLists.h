#pragma once

namespace VantrelSDK {

/// What OpenGL keeps compiled. May be let go of at any time, also without a context: what it
/// holds is freed by FreeUnusedNames.
class DrawList {
  public:
    DrawList() = default;
    ~DrawList();
    DrawList(DrawList&& other) noexcept;
    DrawList& operator=(DrawList&& other) noexcept;
    DrawList(const DrawList&) = delete;
    DrawList& operator=(const DrawList&) = delete;

    bool IsValid() const { return valid_; }
    void Invalidate() { valid_ = false; }
    /// Compiles what is drawn from here to End. False, with an error told, without a name.
    bool Begin();
    void End();
    /// Draws it, valid or not.
    void Call() const;

  private:
    unsigned name_ = 0;
    bool valid_ = false;
};

}  // namespace VantrelSDK
