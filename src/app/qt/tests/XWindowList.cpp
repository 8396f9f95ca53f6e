#include "XWindowList.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace trotlet::app::testing {

std::vector<XWindow> viewableTopLevelWindows(const std::string& display) {
    std::vector<XWindow> windows;
    ::Display* connection = XOpenDisplay(display.c_str());
    if (!connection) return windows;
    Window root = DefaultRootWindow(connection);
    Window rootReturn = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned int count = 0;
    if (XQueryTree(connection, root, &rootReturn, &parent, &children, &count)) {
        for (unsigned int i = 0; i < count; ++i) {
            XWindowAttributes attributes{};
            if (!XGetWindowAttributes(connection, children[i], &attributes) ||
                attributes.map_state != IsViewable)
                continue;
            XWindow window{{}, attributes.x, attributes.y, attributes.width, attributes.height};
            XTextProperty name{};
            if (XGetWMName(connection, children[i], &name) && name.value) {
                window.name.assign(reinterpret_cast<const char*>(name.value), name.nitems);
                XFree(name.value);
            }
            windows.push_back(window);
        }
        if (children) XFree(children);
    }
    XCloseDisplay(connection);
    return windows;
}

}  // namespace trotlet::app::testing
