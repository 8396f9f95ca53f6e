#pragma once

#include <optional>
#include <string>

namespace trotlet::platform {

// A key grab on the X root window over an own Xlib connection, so that Xlib stays out of the
// Qt code and Qt's own connection is left alone. The grab is taken for every combination of
// Num Lock and Caps Lock, which X treats as modifiers too.
class GlobalShortcutX11 {
public:
    GlobalShortcutX11();
    ~GlobalShortcutX11();
    GlobalShortcutX11(const GlobalShortcutX11&) = delete;
    GlobalShortcutX11& operator=(const GlobalShortcutX11&) = delete;

    bool isAvailable() const { return display_ != nullptr; }
    int fileDescriptor() const;

    // Nothing on success, else why the grab failed (another program holds the key, say).
    std::optional<std::string> grab(unsigned long keysym, unsigned int modifiers);
    void ungrab();
    // Reads the pending events; returns how many presses of the grabbed key arrived.
    int takePresses();

private:
    void* display_ = nullptr;
    int keycode_ = 0;
    unsigned int modifiers_ = 0;
    bool grabbed_ = false;
};

}  // namespace trotlet::platform
