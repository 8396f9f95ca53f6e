#include "processes/QuitRules.h"

#include <algorithm>
#include <iterator>

namespace trotlet::processes {
namespace {

// Names as the process table shows them (the kernel's name, completed from argv[0] when cut).
constexpr std::string_view sessionPrograms[] = {
    // Display servers and compositors: without them every window goes.
    "Xorg", "X", "Xwayland", "Xvfb", "Xephyr", "gnome-shell", "kwin_wayland", "kwin_x11", "mutter",
    "sway", "Hyprland", "weston", "labwc", "wayfire", "river", "niri", "cage", "cosmic-comp",
    "xfwm4", "openbox", "i3", "marco", "muffin", "budgie-wm", "gamescope",
    // Session managers and their launchers.
    "gnome-session-binary", "gnome-session", "gnome-session-ctl", "ksmserver", "plasma_session",
    "startplasma-x11", "startplasma-wayland", "xfce4-session", "lxsession", "lxqt-session",
    "mate-session", "cinnamon-session", "cinnamon-session-binary", "budgie-desktop",
    "gdm-x-session", "gdm-wayland-session", "sddm-helper", "lightdm",
    // The session bus and the user's service manager.
    "dbus-daemon", "dbus-broker", "dbus-broker-launch", "systemd", "(sd-pam)",
    // Hosts of the tray and the panels that carry it.
    "plasmashell", "xfce4-panel", "waybar", "lxqt-panel", "mate-panel", "cinnamon", "budgie-panel",
    "wingpanel", "tint2", "polybar", "xembedsniproxy", "snixembed", "stalonetray", "trayer"};

}  // namespace

bool isSessionProgram(std::string_view name) {
    return std::find(std::begin(sessionPrograms), std::end(sessionPrograms), name) !=
           std::end(sessionPrograms);
}

QuitBlock quitBlock(const metrics::ProcessRow& row, const QuitContext& context) {
    if (row.pid == context.selfPid) return QuitBlock::thisApp;
    if (row.isPrivileged) return QuitBlock::ownedByRoot;
    if (!row.canQuit) return QuitBlock::ownedByOtherUser;
    std::string_view file;
    if (row.executablePath) {
        file = *row.executablePath;
        file = file.substr(file.rfind('/') + 1);
    }
    if (isSessionProgram(row.name) || (!file.empty() && isSessionProgram(file)) ||
        std::find(context.sessionPids.begin(), context.sessionPids.end(), row.pid) !=
            context.sessionPids.end())
        return QuitBlock::neededBySession;
    return QuitBlock::none;
}

std::string_view quitBlockText(QuitBlock block) {
    switch (block) {
        case QuitBlock::none:
            return {};
        case QuitBlock::thisApp:
            return "Quit Trotlet from its menu";
        case QuitBlock::ownedByRoot:
            return "Owned by root";
        case QuitBlock::ownedByOtherUser:
            return "Owned by another user";
        case QuitBlock::neededBySession:
            return "Needed by your session";
    }
    return {};
}

}  // namespace trotlet::processes
