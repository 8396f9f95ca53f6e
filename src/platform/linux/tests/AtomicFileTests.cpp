#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/linux/AtomicFile.h"

namespace fs = std::filesystem;
using namespace trotlet::platform;

namespace {

struct TempDir {
    std::string path;
    TempDir() {
        std::string pattern = (fs::temp_directory_path() / "trotlet-test-XXXXXX").string();
        path = ::mkdtemp(pattern.data());
    }
    ~TempDir() { fs::remove_all(path); }
};

}  // namespace

TEST(AtomicFile, WritesReplacesAndLeavesNoTempFile) {
    TempDir dir;
    const std::string file = dir.path + "/shop.json";
    ASSERT_TRUE(writeAtomically(file, "first"));
    ASSERT_TRUE(writeAtomically(file, "second"));
    const auto read = readWholeFile(file);
    EXPECT_EQ(read.status, ReadStatus::ok);
    EXPECT_EQ(read.contents, "second");
    EXPECT_FALSE(fs::exists(file + ".tmp"));
}

TEST(AtomicFile, FailedWriteKeepsOldFileAndSaysWhy) {
    TempDir dir;
    const std::string file = dir.path + "/settings.json";
    ASSERT_TRUE(writeAtomically(file, "old"));
    // A directory squatting on the temp name makes the write fail, even for root.
    fs::create_directory(file + ".tmp");
    const auto result = writeAtomically(file, "new");
    EXPECT_FALSE(result.ok);
    EXPECT_NE(result.error.find("settings.json.tmp"), std::string::npos);
    EXPECT_EQ(readWholeFile(file).contents, "old");
}

TEST(AtomicFile, MissingFileIsMissingNotUnreadable) {
    TempDir dir;
    EXPECT_EQ(readWholeFile(dir.path + "/absent.json").status, ReadStatus::missing);
    // A directory cannot be read as a file.
    EXPECT_EQ(readWholeFile(dir.path).status, ReadStatus::unreadable);
}

TEST(AtomicFile, KeepAsideUsesStampAndNeverOverwrites) {
    TempDir dir;
    const std::string file = dir.path + "/shop.json";
    EXPECT_EQ(stampedSiblingName(file, "corrupt", "20261122-043000"),
              dir.path + "/shop.corrupt-20261122-043000.json");
    EXPECT_EQ(stampedSiblingName(dir.path + "/settings", "", "20261122-043000"),
              dir.path + "/settings.20261122-043000");

    ASSERT_TRUE(writeAtomically(file, "one"));
    const auto first = keepAside(file, "corrupt", "20261122-043000");
    ASSERT_TRUE(first);
    ASSERT_TRUE(writeAtomically(file, "two"));
    const auto second = keepAside(file, "corrupt", "20261122-043000");
    ASSERT_TRUE(second);
    EXPECT_NE(*first, *second);
    EXPECT_EQ(readWholeFile(*first).contents, "one");
    EXPECT_EQ(readWholeFile(*second).contents, "two");
    EXPECT_FALSE(fs::exists(file));
}

TEST(AtomicFile, EnsureDirectoryCreatesParents) {
    TempDir dir;
    const std::string nested = dir.path + "/a/b/trotlet";
    EXPECT_TRUE(ensureDirectory(nested));
    EXPECT_TRUE(fs::is_directory(nested));
    EXPECT_TRUE(ensureDirectory(nested));
}

TEST(AtomicFile, LocalStampFormat) {
    ::setenv("TZ", "UTC", 1);
    ::tzset();
    EXPECT_EQ(localStamp(1795321800), "20261122-043000");
}
