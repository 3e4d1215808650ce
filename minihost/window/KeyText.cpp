#include "minihost/window/KeyText.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace minihost {

KeyText::KeyText(Display* display, unsigned long window)
    : method_(XOpenIM(display, nullptr, nullptr, nullptr)) {
    if (method_)
        context_ = XCreateIC(method_, XNInputStyle, XIMPreeditNothing | XIMStatusNothing,
                             XNClientWindow, window, XNFocusWindow, window, nullptr);
}

KeyText::~KeyText() {
    if (context_) XDestroyIC(context_);
    if (method_) XCloseIM(method_);
}

void KeyText::Read(XEvent& event, unsigned long& key, std::string& text) const {
    char typed[64];
    KeySym symbol = NoSymbol;
    Status status = XLookupChars;
    int count = 0;
    if (context_ && event.type == KeyPress)
        count = Xutf8LookupString(context_, &event.xkey, typed, sizeof typed, &symbol, &status);
    else
        count = XLookupString(&event.xkey, typed, sizeof typed, &symbol, nullptr);
    // The key itself, whatever is held with it.
    key = symbol == NoSymbol ? XLookupKeysym(&event.xkey, 0) : symbol;
    const bool types = event.type == KeyPress && status != XBufferOverflow && count > 0 &&
                       static_cast<unsigned char>(typed[0]) >= ' ' && typed[0] != 127;
    if (types) text.assign(typed, static_cast<size_t>(count));
}

}  // namespace minihost
