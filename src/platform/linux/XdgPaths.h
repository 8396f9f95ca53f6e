#pragma once

#include <string>

namespace trotlet::platform {

// Where Trotlet keeps its files, following the XDG base directory rules:
//   settings:  $XDG_CONFIG_HOME/trotlet   (default ~/.config/trotlet)
//   app data:  $XDG_DATA_HOME/trotlet     (default ~/.local/share/trotlet; shop.json, weather.json)
//   runtime:   $XDG_RUNTIME_DIR           (the single-instance socket; /tmp fallback)
// Relative values are ignored, as the rules require. Nothing is created here.
struct XdgPaths {
    static std::string configDir();
    static std::string dataDir();
    // The bases themselves: $XDG_CONFIG_HOME (~/.config) and $XDG_DATA_HOME (~/.local/share).
    static std::string configHome();
    static std::string dataHome();
    static std::string runtimeDir();
    static std::string homeDir();
};

}  // namespace trotlet::platform
