#include "settings/qt/SettingsFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "settings/AppSettings.h"
#include "settings/SettingsKeys.h"
#include "settings/qt/SessionSettings.h"

namespace trotlet::settings {
namespace {

namespace fs = std::filesystem;

// A fresh directory per test, standing in for the user's config folder.
class SettingsFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/trotlet-settings-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern), nullptr);
        dir = pattern;
        path = dir + "/trotlet/settings.json";
    }
    void TearDown() override { fs::remove_all(dir); }

    void put(const std::string& contents) {
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream(path) << contents;
    }
    static std::string contentsOf(const std::string& file) {
        std::ifstream in(file);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }
    SettingValue onDisk() const { return SettingValue::parse(contentsOf(path)); }
    ino_t inode() const {
        struct stat st {};
        return ::stat(path.c_str(), &st) == 0 ? st.st_ino : 0;
    }
    std::vector<std::string> keptAsideFiles() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(fs::path(path).parent_path()))
            if (entry.path().filename().string().rfind("settings.corrupt-", 0) == 0)
                names.push_back(entry.path().string());
        return names;
    }

    static constexpr long long stampTime = 1795000000;  // 2026-11-18 in UTC (tests run with TZ=UTC)
    std::string dir;
    std::string path;
};

TEST_F(SettingsFileTest, MissingFileReadsDefaultsAndIsCreatedOnFirstChange) {
    auto file = SettingsFile::open(path, stampTime);
    EXPECT_TRUE(file->problem().empty());
    AppSettings settings{DefaultsStore(file), false};
    EXPECT_EQ(settings.menuBar().maxFPS(), 24);
    EXPECT_FALSE(fs::exists(path)) << "reading creates nothing";

    settings.menuBar().setMaxFPS(30);
    settings.monitoring().setHiddenCards({"gpu"});
    EXPECT_EQ(onDisk(),
              SettingValue::parse(R"({"menuBar.maxFPS":30,"monitoring.hiddenCards":["gpu"]})"));
    EXPECT_FALSE(fs::exists(path + ".tmp"));

    AppSettings reread{DefaultsStore(SettingsFile::open(path, stampTime)), false};
    EXPECT_EQ(reread.menuBar().maxFPS(), 30);
    EXPECT_EQ(reread.monitoring().hiddenCards(), std::vector<std::string>{"gpu"});
}

TEST_F(SettingsFileTest, UnknownKeysAndWrongTypedValuesSurviveOtherWrites) {
    put(R"({"future.feature": {"a": [1, 2]}, "monitoring.updateInterval": "fast", "menuBar.maxFPS": 12})");
    AppSettings settings{DefaultsStore(SettingsFile::open(path, stampTime)), false};
    EXPECT_DOUBLE_EQ(settings.monitoring().updateInterval(), 2.0);
    EXPECT_EQ(settings.menuBar().maxFPS(), 12);

    settings.mascot().setGoldenFish(false);
    const SettingValue disk = onDisk();
    EXPECT_EQ(disk.at("future.feature"), SettingValue::parse(R"({"a":[1,2]})"));
    EXPECT_EQ(disk.at("monitoring.updateInterval"), "fast");
    EXPECT_EQ(disk.at("menuBar.maxFPS"), 12);
    EXPECT_EQ(disk.at("mascot.goldenFish"), false);

    settings.weather().setEncodedLocation("x");
    settings.weather().setEncodedLocation(std::nullopt);
    EXPECT_FALSE(onDisk().contains(keys::weatherLocation));
}

TEST_F(SettingsFileTest, SettingTheCurrentValueDoesNotTouchTheFile) {
    put(R"({"menuBar.maxFPS": 12})");
    AppSettings settings{DefaultsStore(SettingsFile::open(path, stampTime)), false};
    const ino_t before = inode();
    settings.menuBar().setMaxFPS(12);
    settings.menuBar().setShowMascot(true);  // the default, never stored
    EXPECT_EQ(inode(), before) << "an atomic write would have replaced the file";
    settings.menuBar().setMaxFPS(13);
    EXPECT_NE(inode(), before);
}

TEST_F(SettingsFileTest, BrokenFilesAreKeptAsideAndDefaultsApply) {
    const std::vector<std::string> broken = {
        "{\"menuBar.maxFPS\": 30", "[1, 2, 3]", "", "42", "\"text\"", "{\"a\":1} trailing"};
    for (const auto& contents : broken) {
        put(contents);
        auto file = SettingsFile::open(path, stampTime);
        ASSERT_TRUE(file->keptAside()) << contents;
        // localStamp in UTC: 1795000000 is 2026-11-18 11:06:40.
        EXPECT_EQ(file->keptAside()->rfind(dir + "/trotlet/settings.corrupt-20261118-110640", 0),
                  0u);
        if (contents == broken.front()) {
            EXPECT_EQ(*file->keptAside(), dir + "/trotlet/settings.corrupt-20261118-110640.json");
        }
        EXPECT_EQ(contentsOf(*file->keptAside()), contents) << "the user's bytes are kept";
        EXPECT_FALSE(fs::exists(path));
        EXPECT_NE(file->problem().find("kept it as"), std::string::npos);

        AppSettings settings{DefaultsStore(file), true};
        EXPECT_EQ(settings.menuBar().maxFPS(), 24);
        settings.menuBar().setMaxFPS(60);
        EXPECT_EQ(onDisk(), SettingValue::parse(R"({"menuBar.maxFPS":60})"));
        fs::remove(path);
    }
    // Each broken file got its own name; none was overwritten.
    EXPECT_EQ(keptAsideFiles().size(), broken.size());
}

TEST_F(SettingsFileTest, AFolderWhereTheFileShouldBeIsMovedAsideNotDeleted) {
    fs::create_directories(path);
    std::ofstream(path + "/inside") << "keep me";
    auto file = SettingsFile::open(path, stampTime);
    ASSERT_TRUE(file->keptAside());
    EXPECT_EQ(contentsOf(*file->keptAside() + "/inside"), "keep me");
    AppSettings settings{DefaultsStore(file), false};
    settings.general().setLaunchAtLogin(true);
    EXPECT_EQ(onDisk().at(keys::launchAtLogin), true);
}

// The session choice as the app makes it, with the config folder pointed at the temp dir.
class SessionSettingsTest : public SettingsFileTest {
protected:
    void SetUp() override {
        SettingsFileTest::SetUp();
        const char* old = std::getenv("XDG_CONFIG_HOME");
        savedConfigHome = old ? std::optional<std::string>(old) : std::nullopt;
        ::setenv("XDG_CONFIG_HOME", dir.c_str(), 1);
    }
    void TearDown() override {
        if (savedConfigHome)
            ::setenv("XDG_CONFIG_HOME", savedConfigHome->c_str(), 1);
        else
            ::unsetenv("XDG_CONFIG_HOME");
        SettingsFileTest::TearDown();
    }
    std::optional<std::string> savedConfigHome;
};

TEST_F(SessionSettingsTest, OrdinarySessionUsesTheSettingsFile) {
    ASSERT_EQ(SettingsFile::standardPath(), path);
    put(R"({"general.hasCompletedOnboarding": true})");
    auto settings = makeSessionSettings(cli::LaunchOptions{}, {"trotlet"});
    EXPECT_FALSE(settings->store().isEphemeral());
    EXPECT_TRUE(settings->general().hasCompletedOnboarding());
    EXPECT_TRUE(settings->general().hasFinishedOnboardingOnce());
    settings->menuBar().setTextMetric(MenuBarTextMetric::cpuTemperature);
    EXPECT_EQ(onDisk().at(keys::textMetric), "cpuTemperature");
}

TEST_F(SessionSettingsTest, InMemorySessionNeverTouchesTheFile) {
    const std::string original =
        R"({"menuBar.maxFPS": 12, "general.hasCompletedOnboarding": false})";
    put(original);
    const ino_t before = inode();
    cli::LaunchOptions options;
    options.skipOnboarding = true;
    auto settings =
        makeSessionSettings(options, {"trotlet", "--skip-onboarding", "-monitoring.updateInterval",
                                      "0.5", "-AppleInterfaceStyle.x", "Dark", "-maxFPS", "5"});
    EXPECT_TRUE(settings->store().isEphemeral());
    EXPECT_TRUE(settings->general().hasCompletedOnboarding());
    EXPECT_DOUBLE_EQ(settings->monitoring().updateInterval(), 0.5);
    EXPECT_EQ(settings->menuBar().maxFPS(), 24) << "the saved file is not read either";

    settings->menuBar().setMaxFPS(60);
    settings->general().setLaunchAtLogin(true);
    settings->layout().setOverview("{\"version\":1,\"cards\":[]}");
    EXPECT_EQ(contentsOf(path), original);
    EXPECT_EQ(inode(), before);
    EXPECT_TRUE(keptAsideFiles().empty());
}

TEST_F(SessionSettingsTest, InMemorySessionWithNoConfigFolderCreatesNothing) {
    cli::LaunchOptions options;
    options.skipOnboarding = true;
    auto settings = makeSessionSettings(options, {"trotlet", "--skip-onboarding"});
    settings->mascot().setShowMoodLine(false);
    EXPECT_FALSE(fs::exists(fs::path(path).parent_path()));
}

}  // namespace
}  // namespace trotlet::settings
