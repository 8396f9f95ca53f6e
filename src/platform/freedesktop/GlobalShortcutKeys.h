#pragma once

#include <optional>
#include <string>

namespace trotlet::platform {

// The shortcut is stored the way the settings have always kept it: a Carbon virtual key code
// and Carbon modifier flags (35 = P; 256 Command, 512 Shift, 2048 Option, 4096 Control; the
// default 2304 is Command+Option). On Linux Command is the Super key and Option is Alt.
struct GlobalShortcutKeys {
    unsigned long keysym = 0;         // X11 keysym, lower case for letters
    unsigned int x11Modifiers = 0;    // ShiftMask 1, ControlMask 4, Mod1Mask 8 (Alt), Mod4Mask 64 (Super)
    std::string portalTrigger;        // the shortcuts spec's form for the portal, e.g. "LOGO+ALT+p"
    std::string displayText;          // for Settings, e.g. "Super+Alt+P"

    enum CarbonModifier : int { command = 256, shift = 512, option = 2048, control = 4096 };
    enum X11Modifier : unsigned int { x11Shift = 1, x11Control = 4, x11Alt = 8, x11Super = 64 };

    // Nothing for a key code this table does not know, or for no modifier at all (a bare key
    // grabbed globally would take that key away from every other program).
    static std::optional<GlobalShortcutKeys> fromCarbon(int keyCode, int modifiers);

    // The other way, for the Settings recorder: the Carbon key code of an X11 keysym (lower or
    // upper case for letters); nothing for a key the table does not know.
    static std::optional<int> carbonKeyCode(unsigned long keysym);
};

}  // namespace trotlet::platform
