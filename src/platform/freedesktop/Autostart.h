#pragma once

#include "platform/linux/AtomicFile.h"

#include <optional>
#include <string>

namespace trotlet::platform {

// "Launch at login" as the XDG autostart rules have it: a desktop entry named trotlet.desktop
// in $XDG_CONFIG_HOME/autostart (default ~/.config/autostart). Enabling writes it atomically;
// disabling removes it. Plain files, no Qt, so a test drives it in a temporary config home.
class Autostart {
public:
    static std::string directory();
    static std::string entryPath();

    // The entry for this executable. Fails (nothing) for a path a desktop entry cannot carry.
    static std::optional<std::string> desktopEntry(const std::string& executable);
    // One Exec argument, quoted and escaped when it needs to be, as a desktop entry value.
    static std::optional<std::string> execArgument(const std::string& path);
    // The program an entry starts: its Exec line's first argument, unescaped and unquoted.
    static std::optional<std::string> programOf(const std::string& entry);

    static WriteResult setEnabled(bool enabled, const std::string& executable);
    // Enabled when our entry exists and does not hide itself (Hidden=true is how the
    // desktop-entry standard lets a user switch an entry off without deleting it).
    static bool isEnabled();
};

}  // namespace trotlet::platform
