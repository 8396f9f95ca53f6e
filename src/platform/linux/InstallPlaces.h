#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "updates/InstallDecision.h"

namespace trotlet::platform {

// The folders that matter when Trotlet installs itself for the user, and where it looks for
// mounts. Tests build one over a throwaway home.
struct InstallPlaces {
    std::string home;
    std::string installFolder;    // ~/.local/opt/trotlet
    std::string applicationsDir;  // $XDG_DATA_HOME/applications: the launcher
    std::string iconsDir;         // $XDG_DATA_HOME/icons/hicolor/scalable/apps
    std::string downloadDir;      // XDG_DOWNLOAD_DIR of user-dirs.dirs, else ~/Downloads
    std::vector<std::string> temporaryFolders;  // $TMPDIR, /tmp, /var/tmp
    std::string root = "/";                     // where /proc and /sys are read

    static InstallPlaces forCurrentUser();
    // The same folders for another home (and its XDG folders below it).
    static InstallPlaces forHome(const std::string& home);
};

// XDG_DOWNLOAD_DIR from the text of user-dirs.dirs ("$HOME/Downloads" expanded); empty when
// the file does not set it.
std::string downloadDirFromUserDirs(std::string_view text, const std::string& home);

// Looks at the path on disk (the program file, or a folder with "trotlet" inside) and at the
// mount that holds it.
updates::InstallPathFacts gatherInstallFacts(const std::string& path, const InstallPlaces& places);

// The path with symbolic links resolved, or the path itself when it cannot be resolved.
std::string resolvedPath(const std::string& path);
// Whether `path` is `folder` or lies inside it (both resolved).
bool isInside(const std::string& path, const std::string& folder);

}  // namespace trotlet::platform
