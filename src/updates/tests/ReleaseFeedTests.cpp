// Versions, the feed document and the update policy's small rules.
#include <gtest/gtest.h>

#include "updates/PanelNotice.h"
#include "updates/ReleaseFeed.h"
#include "updates/UpdatePolicy.h"
#include "updates/Version.h"

using namespace trotlet::updates;

namespace {

BuildId id(const char* version, std::int64_t build) {
    return BuildId{*Version::parse(version), build};
}

TEST(Version, ParsesAndOrders) {
    for (const char* bad :
         {"", "1.", ".1", "1..2", "1.2.3.4.5", "v1", "1.2-rc1", "-1", " 1", "1.2a"})
        EXPECT_FALSE(Version::parse(bad)) << bad;
    EXPECT_EQ(*Version::parse("1.2"), *Version::parse("1.2.0"));
    EXPECT_LT(*Version::parse("0.9.9"), *Version::parse("0.10.0"));
    EXPECT_LT(id("0.2.0", 9), id("0.2.0", 10));
    EXPECT_GT(id("0.3.0", 1), id("0.2.0", 99));
    auto banner =
        parseHelpBanner("Trotlet 0.2.1 (417): a menu bar system monitor with a running mascot.");
    ASSERT_TRUE(banner);
    EXPECT_EQ(*banner, id("0.2.1", 417));
    EXPECT_FALSE(parseHelpBanner("Usage: Trotlet [mode]"));
}

TEST(ReleaseFeed, RoundTripAndOffer) {
    ReleaseFeed feed;
    for (auto [version, build] : {std::pair{"0.1.0", 10}, {"0.3.0", 30}, {"0.2.0", 20}}) {
        FeedRelease r;
        r.id = id(version, build);
        r.version = version;
        r.notes = {"A note."};
        r.downloads.push_back({"x86_64", "https://example.org/t.tar.gz", 5, std::string(64, 'f'),
                               std::string(86, 'A') + "=="});
        feed.releases.push_back(r);
    }
    const auto decoded = decodeReleaseFeed(encodeReleaseFeed(feed));
    ASSERT_TRUE(decoded);
    ASSERT_EQ(decoded->releases.size(), 3u);
    EXPECT_EQ(decoded->releases[1].downloads[0].sha256, std::string(64, 'f'));

    auto offer = newestOffer(*decoded, id("0.1.0", 10), "x86_64");
    ASSERT_TRUE(offer);
    EXPECT_EQ(offer->release.version, "0.3.0");
    EXPECT_TRUE(offer->download);
    EXPECT_FALSE(newestOffer(*decoded, id("0.1.0", 10), "riscv64")->download);
    EXPECT_FALSE(newestOffer(*decoded, id("0.3.0", 30), "x86_64"));
    EXPECT_FALSE(newestOffer(*decoded, id("1.0.0", 1), "x86_64"));
}

TEST(ReleaseFeed, BadDocumentsAndEntries) {
    for (const char* bad :
         {"", "[]", "{}", "{\"releases\": 3}", "{\"releases\": [{\"version\": \"x\"}]}"})
        EXPECT_FALSE(decodeReleaseFeed(bad)) << bad;
    EXPECT_TRUE(decodeReleaseFeed("{\"releases\": []}"));
    // One good release survives beside a broken one; a download over plain HTTP is dropped.
    const auto mixed = decodeReleaseFeed(R"({"releases": [
        {"version": "0.2.0"},
        {"version": "0.3.0", "build": 3, "downloads": [{"arch": "x86_64", "url": "http://example.org/t",
          "size": 5, "sha256": ")" + std::string(64, '0') +
                                         R"(", "signature": ")" + std::string(86, 'A') +
                                         R"(=="}]}]})");
    ASSERT_TRUE(mixed);
    ASSERT_EQ(mixed->releases.size(), 1u);
    EXPECT_TRUE(mixed->releases[0].downloads.empty());
    EXPECT_EQ(mixed->skipped.size(), 2u);
}

TEST(UpdatePolicy, AddressesAndSchedule) {
    EXPECT_TRUE(isAllowedUpdateURL("https://trotlet.github.io/releases/feed.json"));
    EXPECT_TRUE(isAllowedUpdateURL("http://127.0.0.1:8080/feed.json"));
    for (const char* bad :
         {"http://example.org/feed.json", "ftp://x/y", "https://", "https://a b", "file:///etc"})
        EXPECT_FALSE(isAllowedUpdateURL(bad)) << bad;

    EXPECT_TRUE(automaticChecksEnabled(false, std::nullopt));
    EXPECT_FALSE(automaticChecksEnabled(true, std::nullopt));
    EXPECT_TRUE(automaticChecksEnabled(true, "1"));
    EXPECT_FALSE(automaticChecksEnabled(false, "0"));

    const std::int64_t t = 1'800'000'000, day = 86400;
    EXPECT_EQ(secondsUntilAutomaticCheck(std::nullopt, t), automaticCheckStartDelay);
    EXPECT_EQ(secondsUntilAutomaticCheck(t - 3600, t), day - 3600);
    EXPECT_EQ(secondsUntilAutomaticCheck(t - 2 * day, t), automaticCheckStartDelay);
    EXPECT_EQ(secondsUntilAutomaticCheck(t + day, t), automaticCheckStartDelay);  // clock set back
}

// One notice at a time: the install offer, then a newer version, then What's new.
TEST(PanelNotice, PriorityAndWords) {
    UpdateStatus status;
    status.phase = UpdatePhase::available;
    status.channel = InstallChannel::package;
    FeedRelease release;
    release.version = "0.2.0";
    status.offer = UpdateOffer{release, std::nullopt};
    const UpdateBanner banner = updateBanner(status);
    const std::vector<ReleaseNote> notes = {{"0.2.0", "", {"Two."}}, {"0.1.1", "", {"One."}}};
    InstallDecision offer{
        true, true, InstallRule::temporary,
        "Runs from a temporary folder (/tmp) that may be emptied; install it to keep it.",
        "/h/.local/opt/trotlet/trotlet"};

    auto n = panelNotice(offer, banner, notes, "0.2.0");
    ASSERT_TRUE(n);
    EXPECT_EQ(n->kind, PanelNotice::Kind::installOffer);
    EXPECT_EQ(n->detail,
              "Runs from a temporary folder (/tmp) that may be emptied. It goes to "
              "/h/.local/opt/trotlet, with a launcher in the app menu.");
    n = panelNotice(std::nullopt, banner, notes, "0.2.0");
    EXPECT_EQ(n->kind, PanelNotice::Kind::update);
    EXPECT_EQ(n->command, packageUpdateCommand);
    status.bannerDismissed = true;
    n = panelNotice(std::nullopt, updateBanner(status), notes, "0.2.0");
    EXPECT_EQ(n->kind, PanelNotice::Kind::whatsNew);
    EXPECT_EQ(n->lines, (std::vector<std::string>{"0.2.0: Two.", "0.1.1: One."}));
    EXPECT_FALSE(panelNotice(std::nullopt, updateBanner(status), {}, "0.2.0"));
}

}  // namespace
