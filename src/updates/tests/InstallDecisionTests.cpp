// "Install for this user" over real files: the decision table in a throwaway home, the
// install itself, and what the dry run says about a copy.
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/linux/AtomicFile.h"
#include "platform/linux/InstallPlaces.h"
#include "updates/InstallDecision.h"
#include "updates/qt/UserInstall.h"

namespace fs = std::filesystem;
using namespace trotlet;
using namespace trotlet::updates;

namespace {

struct Home {
    std::string root;
    platform::InstallPlaces places;
    Home() {
        std::string pattern = (fs::temp_directory_path() / "trotlet-install-XXXXXX").string();
        root = ::mkdtemp(pattern.data());
        places = platform::InstallPlaces::forHome(root + "/home");
        // The test lives under /tmp itself: only its own scratch folder counts as temporary.
        places.temporaryFolders = {root + "/scratch"};
    }
    ~Home() { fs::remove_all(root); }

    std::string program(const std::string& relative, const std::string& text = "#!/bin/sh\n") {
        const std::string path = root + "/" + relative;
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream(path) << text;
        fs::permissions(path, fs::perms::owner_all);
        return path;
    }
};

TEST(InstallDecision, TableOverRealPaths) {
    Home home;
    home.program("home/src/build/CMakeCache.txt");
    struct Case {
        std::string path;
        InstallRule rule;
        bool offer;
    };
    const std::vector<Case> cases = {
        {home.root + "/home/nothing-here", InstallRule::missing, false},
        {home.root + "/home", InstallRule::notAProgram, false},
        {home.program("home/.local/opt/trotlet/trotlet"), InstallRule::installFolder, false},
        {"/usr/bin/env", InstallRule::package, false},
        {home.program("home/src/build/trotlet"), InstallRule::buildTree, false},
        {TROTLET_BINARY, InstallRule::buildTree, false},
        // An unpacked archive: the folder stands for the program inside it.
        {fs::path(home.program("home/Downloads/trotlet-0.1.0-linux-x86_64/trotlet")).parent_path(),
         InstallRule::download, true},
        {home.program("scratch/trotlet"), InstallRule::temporary, true},
        {home.program("home/apps/trotlet"), InstallRule::elsewhere, false},
    };
    for (const auto& c : cases) {
        const auto d = decideInstall(platform::gatherInstallFacts(c.path, home.places),
                                     home.places.installFolder);
        EXPECT_EQ(installRuleName(d.rule), installRuleName(c.rule)) << c.path;
        EXPECT_EQ(d.shouldOffer, c.offer) << c.path;
        EXPECT_EQ(d.applicable,
                  c.rule != InstallRule::missing && c.rule != InstallRule::notAProgram)
            << c.path;
        EXPECT_FALSE(d.reason.empty());
        if (d.applicable) {
            EXPECT_EQ(d.target, home.places.installFolder + "/trotlet");
        }
    }
}

TEST(InstallDecision, DownloadFolderFromUserDirs) {
    EXPECT_EQ(platform::downloadDirFromUserDirs(
                  "# comment\nXDG_DOWNLOAD_DIR=\"$HOME/Téléchargements\"\n", "/h"),
              "/h/Téléchargements");
    EXPECT_EQ(platform::downloadDirFromUserDirs("XDG_DOWNLOAD_DIR=\"$HOME/\"\n", "/h"), "");
    EXPECT_EQ(platform::downloadDirFromUserDirs("XDG_MUSIC_DIR=\"/m\"", "/h"), "");
}

// A tmpfs mounted noexec, where the test may mount one (root in a container that allows it).
TEST(InstallDecision, NoexecMountIsOfferedAndTheCopyRuns) {
    Home home;
    const std::string mountPoint = home.root + "/stick";
    fs::create_directories(mountPoint);
    if (::mount("tmpfs", mountPoint.c_str(), "tmpfs", MS_NOEXEC | MS_NOSUID, "size=16m") != 0)
        GTEST_SKIP() << "cannot mount a tmpfs here";
    struct Unmount {
        std::string at;
        ~Unmount() { ::umount2(at.c_str(), MNT_DETACH); }
    } unmount{mountPoint};
    const std::string source = mountPoint + "/trotlet";
    fs::copy_file(TROTLET_BINARY, source);

    const auto d =
        decideInstall(platform::gatherInstallFacts(source, home.places), home.places.installFolder);
    EXPECT_EQ(d.rule, InstallRule::noexecMount);
    EXPECT_TRUE(d.shouldOffer);
    const RunVerdict onStick = checkWillRun(source, home.places);
    EXPECT_TRUE(onStick.noexecMount);
    EXPECT_FALSE(onStick.willRun);

    const auto installed = installForUser(source, home.places.installFolder, home.places);
    ASSERT_TRUE(installed.ok) << installed.error;
    EXPECT_TRUE(checkWillRun(installed.program, home.places).willRun);
}

TEST(UserInstall, InstallsProgramLauncherAndIcon) {
    Home home;
    const std::string unpacked = home.root + "/home/Downloads/trotlet-0.1.0-linux-x86_64";
    fs::create_directories(unpacked);
    fs::copy_file(TROTLET_BINARY, unpacked + "/trotlet");
    std::ofstream(unpacked + "/README.md") << "# Trotlet\n";
    // A home with a space and a quote: the launcher's Exec line must still name the program.
    home.places.installFolder = home.root + "/home/my \"apps\"/trotlet";

    const auto r = installForUser(unpacked, home.places.installFolder, home.places);
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_EQ(fs::status(r.program).permissions() & fs::perms::owner_exec, fs::perms::owner_exec);
    EXPECT_TRUE(fs::exists(home.places.installFolder + "/README.md"));
    const std::string launcher = platform::readWholeFile(r.launcher).contents;
    EXPECT_NE(
        launcher.find("Exec=\"" + home.root + "/home/my \\\\\"apps\\\\\"/trotlet/trotlet\"\n"),
        std::string::npos)
        << launcher;
    EXPECT_NE(launcher.find("TryExec=" + r.program + "\n"), std::string::npos);
    EXPECT_NE(platform::readWholeFile(r.icon).contents.find("<svg"), std::string::npos);

    const RunVerdict copy = checkWillRun(r.program, home.places);
    EXPECT_TRUE(copy.willRun) << copy.reason;
    ASSERT_TRUE(copy.selfCheck.build);

    // Installing again over the installed copy replaces it in place.
    EXPECT_TRUE(installForUser(unpacked, home.places.installFolder, home.places).ok);
}

TEST(UserInstall, DryRunNamesWhatStopsAProgram) {
    Home home;
    const std::string noExec = home.program("scratch/plain");
    fs::permissions(noExec, fs::perms::owner_read | fs::perms::owner_write);
    const RunVerdict plain = checkWillRun(noExec, home.places);
    EXPECT_FALSE(plain.executable);
    EXPECT_FALSE(plain.willRun);

    // What the dynamic loader prints when a library is gone.
    const std::string broken =
        home.program("scratch/broken",
                     "#!/bin/sh\necho './trotlet: error while loading shared libraries: "
                     "libQt6Gui.so.6: cannot open "
                     "shared object file: No such file or directory' >&2\nexit 127\n");
    const RunVerdict missing = checkWillRun(broken, home.places);
    EXPECT_FALSE(missing.willRun);
    EXPECT_EQ(missing.selfCheck.missingLibraries, std::vector<std::string>{"libQt6Gui.so.6"});
    EXPECT_NE(missing.reason.find("libQt6Gui.so.6"), std::string::npos);
}

}  // namespace
