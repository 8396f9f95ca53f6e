#include "platform/freedesktop/Autostart.h"

#include "platform/linux/AtomicFile.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace trotlet::platform {
namespace {

class AutostartTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        ::setenv("XDG_CONFIG_HOME", dir.path().toStdString().c_str(), 1);
    }
    void TearDown() override { ::unsetenv("XDG_CONFIG_HOME"); }
    QTemporaryDir dir;
};

TEST_F(AutostartTest, EnableWritesTheEntryAndDisableRemovesIt) {
    EXPECT_EQ(Autostart::entryPath(), dir.path().toStdString() + "/autostart/trotlet.desktop");
    EXPECT_FALSE(Autostart::isEnabled());

    ASSERT_TRUE(Autostart::setEnabled(true, "/usr/bin/trotlet"));
    EXPECT_TRUE(Autostart::isEnabled());
    const ReadResult file = readWholeFile(Autostart::entryPath());
    ASSERT_EQ(file.status, ReadStatus::ok);
    EXPECT_EQ(file.contents.rfind("[Desktop Entry]\n", 0), 0u);
    EXPECT_NE(file.contents.find("\nExec=/usr/bin/trotlet\n"), std::string::npos);
    EXPECT_NE(file.contents.find("\nType=Application\n"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(Autostart::entryPath() + ".tmp"));

    // Enabling twice rewrites in place; disabling twice is not an error.
    ASSERT_TRUE(Autostart::setEnabled(true, "/opt/trotlet/bin/trotlet"));
    EXPECT_EQ(Autostart::programOf(readWholeFile(Autostart::entryPath()).contents), "/opt/trotlet/bin/trotlet");
    ASSERT_TRUE(Autostart::setEnabled(false, {}));
    EXPECT_FALSE(std::filesystem::exists(Autostart::entryPath()));
    EXPECT_FALSE(Autostart::isEnabled());
    EXPECT_TRUE(Autostart::setEnabled(false, {}));
}

TEST_F(AutostartTest, AnEntryHiddenByTheUserCountsAsOff) {
    ASSERT_TRUE(ensureDirectory(Autostart::directory()));
    ASSERT_TRUE(writeAtomically(Autostart::entryPath(),
                                "[Desktop Entry]\nType=Application\nExec=/usr/bin/trotlet\nHidden=true\n"));
    EXPECT_FALSE(Autostart::isEnabled());
}

TEST_F(AutostartTest, AnUnwritableDirectoryIsReportedNotThrown) {
    // A file where the autostart directory should be.
    ASSERT_TRUE(writeAtomically(Autostart::directory(), "not a directory"));
    const WriteResult result = Autostart::setEnabled(true, "/usr/bin/trotlet");
    EXPECT_FALSE(result.ok);
    EXPECT_FALSE(result.error.empty());
}

TEST(AutostartExec, OddPathsSurviveTheRoundTrip) {
    const char* paths[] = {
        "/usr/bin/trotlet",
        "/home/ann/My Apps/trotlet",
        "/tmp/we\"ird/trot$let",
        "/tmp/back\\slash/trotlet",
        "/tmp/100%/trotlet",
        "/tmp/`tick`/a;b&c",
        "/tmp/it's/trotlet",
    };
    for (const char* path : paths) {
        const auto entry = Autostart::desktopEntry(path);
        ASSERT_TRUE(entry) << path;
        EXPECT_EQ(Autostart::programOf(*entry), std::string(path)) << *entry;
    }
    EXPECT_EQ(*Autostart::execArgument("/home/ann/My Apps/trotlet"), "\"/home/ann/My Apps/trotlet\"");
    EXPECT_EQ(*Autostart::execArgument("/tmp/100%/trotlet"), "/tmp/100%%/trotlet");
    EXPECT_EQ(*Autostart::execArgument("/a\\b"), "\"/a\\\\\\\\b\"");
    EXPECT_FALSE(Autostart::execArgument("/tmp/new\nline"));
    EXPECT_FALSE(Autostart::programOf("[Other]\nExec=/x\n"));
}

}  // namespace
}  // namespace trotlet::platform
