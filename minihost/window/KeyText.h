#pragma once

#include <string>

union _XEvent;
struct _XDisplay;
struct _XIM;
struct _XIC;

namespace minihost {

/// What keys type, with the input method of the desktop, so that accents and other scripts can be
/// typed; without one, what the keyboard alone says.
class KeyText {
  public:
    KeyText(_XDisplay* display, unsigned long window);
    ~KeyText();
    KeyText(const KeyText&) = delete;
    KeyText& operator=(const KeyText&) = delete;

    /// The key of a press or a release, and the text of a press, UTF-8.
    void Read(_XEvent& event, unsigned long& key, std::string& text) const;

  private:
    _XIM* method_ = nullptr;
    _XIC* context_ = nullptr;
};

}  // namespace minihost
