#include "platform/freedesktop/GlobalShortcutX11.h"

#include <X11/Xlib.h>

namespace trotlet::platform {

namespace {

// Xlib reports a refused grab through the error handler, asynchronously; this flag carries it
// from the handler back to grab(), which syncs to collect it.
bool grabRefused = false;

int recordError(Display*, XErrorEvent* event) {
    if (event->error_code == BadAccess) grabRefused = true;
    return 0;
}

constexpr unsigned int kLockVariants[] = {0, LockMask, Mod2Mask, LockMask | Mod2Mask};

}  // namespace

GlobalShortcutX11::GlobalShortcutX11() { display_ = XOpenDisplay(nullptr); }

GlobalShortcutX11::~GlobalShortcutX11() {
    ungrab();
    if (display_) XCloseDisplay(static_cast<Display*>(display_));
}

int GlobalShortcutX11::fileDescriptor() const {
    return display_ ? ConnectionNumber(static_cast<Display*>(display_)) : -1;
}

std::optional<std::string> GlobalShortcutX11::grab(unsigned long keysym, unsigned int modifiers) {
    if (!display_) return std::string("No X11 display");
    ungrab();
    auto* display = static_cast<Display*>(display_);
    const KeyCode keycode = XKeysymToKeycode(display, keysym);
    if (keycode == 0) return std::string("The key is not on this keyboard layout");
    const Window root = DefaultRootWindow(display);

    XSync(display, False);
    grabRefused = false;
    auto* previous = XSetErrorHandler(recordError);
    for (unsigned int lock : kLockVariants) {
        XGrabKey(display, keycode, modifiers | lock, root, True, GrabModeAsync, GrabModeAsync);
    }
    XSync(display, False);
    XSetErrorHandler(previous);

    keycode_ = keycode;
    modifiers_ = modifiers;
    grabbed_ = true;
    if (grabRefused) {
        ungrab();
        return std::string("Another program already uses this shortcut");
    }
    return std::nullopt;
}

void GlobalShortcutX11::ungrab() {
    if (!display_ || !grabbed_) return;
    auto* display = static_cast<Display*>(display_);
    const Window root = DefaultRootWindow(display);
    for (unsigned int lock : kLockVariants) XUngrabKey(display, keycode_, modifiers_ | lock, root);
    XFlush(display);
    grabbed_ = false;
}

int GlobalShortcutX11::takePresses() {
    if (!display_) return 0;
    auto* display = static_cast<Display*>(display_);
    int presses = 0;
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == KeyPress && grabbed_ && int(event.xkey.keycode) == keycode_ &&
            (event.xkey.state & ~(LockMask | Mod2Mask)) == modifiers_) {
            ++presses;
        }
    }
    return presses;
}

}  // namespace trotlet::platform
