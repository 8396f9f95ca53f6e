#include "platform/freedesktop/IdleMonitorX11.h"

#include <X11/Xlib.h>
#include <X11/extensions/scrnsaver.h>

namespace trotlet::platform {

IdleMonitorX11::IdleMonitorX11() {
    Display* display = XOpenDisplay(nullptr);
    if (!display) return;
    int eventBase = 0;
    int errorBase = 0;
    if (!XScreenSaverQueryExtension(display, &eventBase, &errorBase)) {
        XCloseDisplay(display);
        return;
    }
    display_ = display;
    info_ = XScreenSaverAllocInfo();
}

IdleMonitorX11::~IdleMonitorX11() {
    if (info_) XFree(info_);
    if (display_) XCloseDisplay(static_cast<Display*>(display_));
}

std::optional<unsigned long> IdleMonitorX11::idleMilliseconds() {
    if (!display_ || !info_) return std::nullopt;
    auto* display = static_cast<Display*>(display_);
    auto* info = static_cast<XScreenSaverInfo*>(info_);
    if (!XScreenSaverQueryInfo(display, DefaultRootWindow(display), info)) return std::nullopt;
    return info->idle;
}

}  // namespace trotlet::platform
