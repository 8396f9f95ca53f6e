#include "app/qt/DisplayCheck.h"

// Qt first: Xlib defines macros (Bool, Status, CursorShape) that break Qt's headers.
#include <QDir>
#include <QLibraryInfo>

#include <X11/Xlib.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string_view>

namespace trotlet::app {

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

bool waylandSocketExists(const std::string& display) {
    std::string path = display;
    if (path.empty() || path[0] != '/') path = environment("XDG_RUNTIME_DIR") + "/" + display;
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0;
}

bool waylandPluginInstalled() {
    const QDir platforms(QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms");
    return !platforms.entryList({"libqwayland*.so"}, QDir::Files).isEmpty();
}

bool xDisplayReachable(const std::string& display) {
    Display* connection = XOpenDisplay(display.c_str());
    if (!connection) return false;
    XCloseDisplay(connection);
    return true;
}

}  // namespace

std::optional<std::string> displayProblem() {
    const std::string platform = environment("QT_QPA_PLATFORM");
    const std::string_view first = std::string_view(platform).substr(0, platform.find(';'));
    // A chosen platform that needs no display server (offscreen, vnc, ...) is the user's call.
    if (!platform.empty() && first.substr(0, 3) != "xcb" && first.substr(0, 7) != "wayland")
        return std::nullopt;

    const std::string x = environment("DISPLAY");
    const std::string wayland = environment("WAYLAND_DISPLAY");
    if (x.empty() && wayland.empty())
        return "no display to show the tray item on (neither DISPLAY nor WAYLAND_DISPLAY is set)";
    if (!wayland.empty() && first.substr(0, 3) != "xcb" && waylandSocketExists(wayland) &&
        waylandPluginInstalled())
        return std::nullopt;
    if (!x.empty()) {
        if (xDisplayReachable(x)) return std::nullopt;
        return "cannot connect to the X display \"" + x + "\"";
    }
    if (!waylandPluginInstalled())
        return "no X display, and Qt's Wayland platform plugin is not installed (qt6-wayland)";
    return "cannot connect to the Wayland display \"" + wayland + "\"";
}

}  // namespace trotlet::app
