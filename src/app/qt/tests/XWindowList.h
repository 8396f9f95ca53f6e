#pragma once

#include <string>
#include <vector>

namespace trotlet::app::testing {

// A top-level window as the X server sees it, for checking from outside what an app shows.
struct XWindow {
    std::string name;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

// The viewable (mapped, on a mapped parent) children of the root window on `display`, with their
// WM_NAME. Kept apart from the tests because Xlib's macros clash with Qt's and GoogleTest's names.
std::vector<XWindow> viewableTopLevelWindows(const std::string& display);

}  // namespace trotlet::app::testing
