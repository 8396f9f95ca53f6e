#pragma once

#include <string>
#include <string_view>

namespace trotlet::updates {

// Which rule decided whether to offer "Install for this user", first match wins in this order.
enum class InstallRule {
    missing,         // nothing at the path
    notAProgram,     // a file or folder that holds no Trotlet program
    installFolder,   // already the user-local install
    package,         // under /usr: the distribution's package
    systemWide,      // /usr/local or /opt: installed by hand for every user
    buildTree,       // a folder with a CMakeCache.txt above it
    noexecMount,     // on a mount that forbids running programs
    removableMedia,  // a USB stick, an SD card, anything under /media or /run/media
    download,        // the user's download folder
    temporary,       // /tmp, /var/tmp, $TMPDIR: may be emptied at the next boot
    elsewhere,       // a folder the user chose: left where it is
};
std::string_view installRuleName(InstallRule rule);

// What the platform layer found out about a path; the decision reads nothing else.
struct InstallPathFacts {
    std::string path;     // as given
    std::string program;  // the program file itself (a folder's "trotlet"), resolved
    bool exists = false;
    bool isProgram = false;
    bool inInstallFolder = false;
    bool underUsr = false;
    std::string systemPrefix;   // "/usr/local" or "/opt" when under one
    std::string buildTreeRoot;  // the folder holding CMakeCache.txt, when found
    bool onNoexecMount = false;
    bool onRemovableMedia = false;
    std::string mountPoint;
    bool inDownloads = false;
    std::string temporaryFolder;  // the temporary folder it is in, when it is
};

struct InstallDecision {
    bool applicable = false;  // the path holds a Trotlet program
    bool shouldOffer = false;
    InstallRule rule = InstallRule::missing;
    std::string reason;
    std::string target;  // where the program would be installed (when applicable)
};

// `installFolder` is the user-local install folder, "~/.local/opt/trotlet" expanded.
InstallDecision decideInstall(const InstallPathFacts& facts, const std::string& installFolder);

// The program's file name inside an install folder or an unpacked archive.
inline constexpr std::string_view programFileName = "trotlet";

}  // namespace trotlet::updates
