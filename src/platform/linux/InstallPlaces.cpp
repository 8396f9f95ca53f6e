#include "platform/linux/InstallPlaces.h"

#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/linux/AtomicFile.h"
#include "platform/linux/VolumeReader.h"
#include "platform/linux/XdgPaths.h"

namespace trotlet::platform {

namespace {

bool isRegularFile(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

bool isDirectory(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

std::string parentOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string buildTreeAbove(std::string folder) {
    while (true) {
        if (isRegularFile(folder + "/CMakeCache.txt")) return folder;
        if (folder == "/" || folder.empty()) return {};
        folder = parentOf(folder);
    }
}

}  // namespace

std::string resolvedPath(const std::string& path) {
    char buffer[PATH_MAX];
    return ::realpath(path.c_str(), buffer) ? std::string(buffer) : path;
}

bool isInside(const std::string& path, const std::string& folder) {
    if (folder.empty()) return false;
    const std::string f = resolvedPath(folder);
    if (f == "/") return true;
    return path == f ||
           (path.size() > f.size() && path.compare(0, f.size(), f) == 0 && path[f.size()] == '/');
}

std::string downloadDirFromUserDirs(std::string_view text, const std::string& home) {
    size_t pos = 0;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string_view::npos) end = text.size();
        std::string_view line = text.substr(pos, end - pos);
        pos = end + 1;
        constexpr std::string_view key = "XDG_DOWNLOAD_DIR=";
        if (line.substr(0, key.size()) != key) continue;
        line.remove_prefix(key.size());
        if (line.size() < 2 || line.front() != '"' || line.back() != '"') continue;
        std::string value(line.substr(1, line.size() - 2));
        if (value.rfind("$HOME", 0) == 0) value = home + value.substr(5);
        // A download folder set to the home itself means "none" in the XDG rules.
        if (value.empty() || value[0] != '/' || value == home || value == home + "/") return {};
        return value;
    }
    return {};
}

InstallPlaces InstallPlaces::forHome(const std::string& home) {
    InstallPlaces p;
    p.home = home;
    p.installFolder = home + "/.local/opt/trotlet";
    p.applicationsDir = home + "/.local/share/applications";
    p.iconsDir = home + "/.local/share/icons/hicolor/scalable/apps";
    p.downloadDir =
        downloadDirFromUserDirs(readWholeFile(home + "/.config/user-dirs.dirs").contents, home);
    if (p.downloadDir.empty()) p.downloadDir = home + "/Downloads";
    p.temporaryFolders = {"/tmp", "/var/tmp"};
    return p;
}

InstallPlaces InstallPlaces::forCurrentUser() {
    InstallPlaces p = forHome(XdgPaths::homeDir());
    const std::string dataHome = XdgPaths::dataHome();
    p.applicationsDir = dataHome + "/applications";
    p.iconsDir = dataHome + "/icons/hicolor/scalable/apps";
    const std::string dirs = downloadDirFromUserDirs(
        readWholeFile(XdgPaths::configHome() + "/user-dirs.dirs").contents, p.home);
    if (!dirs.empty()) p.downloadDir = dirs;
    if (const char* tmp = std::getenv("TMPDIR"); tmp && tmp[0] == '/')
        p.temporaryFolders.insert(p.temporaryFolders.begin(), tmp);
    return p;
}

updates::InstallPathFacts gatherInstallFacts(const std::string& path, const InstallPlaces& places) {
    updates::InstallPathFacts f;
    f.path = path;
    struct stat st {};
    f.exists = !path.empty() && ::stat(path.c_str(), &st) == 0;
    if (!f.exists) return f;
    std::string program = resolvedPath(path);
    if (isDirectory(program)) program += "/" + std::string(updates::programFileName);
    f.isProgram = isRegularFile(program);
    if (!f.isProgram) return f;
    f.program = resolvedPath(program);

    f.inInstallFolder = isInside(f.program, places.installFolder);
    f.underUsr = isInside(f.program, "/usr") && !isInside(f.program, "/usr/local");
    for (const char* prefix : {"/usr/local", "/opt"})
        if (isInside(f.program, prefix)) f.systemPrefix = prefix;
    f.buildTreeRoot = buildTreeAbove(parentOf(f.program));

    const auto mounts =
        parseMountInfo(readWholeFile(underRoot(places.root, "/proc/self/mountinfo")).contents);
    if (const MountEntry* mount = mountHolding(mounts, f.program)) {
        f.mountPoint = mount->mountPoint;
        f.onNoexecMount = mount->noExec;
        f.onRemovableMedia = mount->mountPoint.rfind("/media/", 0) == 0 ||
                             mount->mountPoint.rfind("/run/media/", 0) == 0 ||
                             deviceIsRemovable(places.root, mount->device);
    }
    f.inDownloads = isInside(f.program, places.downloadDir);
    for (const auto& folder : places.temporaryFolders)
        if (isInside(f.program, folder)) {
            f.temporaryFolder = folder;
            break;
        }
    return f;
}

}  // namespace trotlet::platform
