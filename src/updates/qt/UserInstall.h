#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/linux/InstallPlaces.h"
#include "updates/Version.h"

namespace trotlet::updates {

// A dry run of a copy: `<program> --help` loads every library the program needs and prints
// the build on its first line, without starting the app.
struct SelfCheck {
    bool started = false;  // the system ran it at all
    int exitCode = -1;
    std::optional<BuildId> build;
    std::vector<std::string> missingLibraries;  // as the dynamic loader named them
    std::string problem;                        // for people; empty when it passed

    bool passed() const { return started && exitCode == 0 && build.has_value(); }
};
SelfCheck runSelfCheck(const std::string& program, int timeoutMs = 15000);

// Whether the system will run a program file: the execute permission, the mount's noexec
// flag and the libraries the loader has to find.
struct RunVerdict {
    std::string program;
    bool exists = false;
    bool executable = false;
    bool noexecMount = false;
    std::string mountPoint;
    SelfCheck selfCheck;
    bool willRun = false;
    std::string reason;
};
RunVerdict checkWillRun(const std::string& program, const platform::InstallPlaces& places);

// The files of an installed copy: the program, the launcher and the icon.
struct UserInstallResult {
    bool ok = false;
    std::string error;
    std::string program;
    std::string launcher;
    std::string icon;
    std::vector<std::string> extraFiles;  // desktop entry, metainfo, README from the archive
};

// Installs the program at `source` (the file, or an unpacked archive folder holding it) into
// `folder`: the program replaced atomically, the archive's other files beside it, a launcher
// in the user's applications folder that starts the installed program, and the app icon.
UserInstallResult installForUser(const std::string& source, const std::string& folder,
                                 const platform::InstallPlaces& places);

// The launcher (desktop entry) for a program at `program`.
std::string launcherText(const std::string& program);
// A path quoted for a desktop entry's Exec key.
std::string quotedExecArgument(const std::string& path);

// Copies a file to `target` through a temporary sibling and one rename, with `mode`.
bool copyFileAtomically(const std::string& source, const std::string& target, unsigned mode,
                        std::string* error);

// The file names of the archive and the install folder besides the program.
inline constexpr const char* desktopFileName = "io.github.trotlet.Trotlet.desktop";
inline constexpr const char* iconFileName = "io.github.trotlet.Trotlet.svg";
inline constexpr const char* metainfoFileName = "io.github.trotlet.Trotlet.metainfo.xml";
inline constexpr const char* readmeFileName = "README.md";

}  // namespace trotlet::updates
