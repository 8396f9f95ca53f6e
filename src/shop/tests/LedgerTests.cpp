#include <gtest/gtest.h>

#include "shop/Calendar.h"
#include "shop/LedgerEntry.h"
#include "shop/Timestamp.h"

namespace trotlet::shop {
namespace {

TEST(Timestamp, FormatsAndParsesIsoText) {
    const struct {
        const char* text;
        std::optional<Timestamp> value;
    } cases[] = {
        {"2026-10-01T09:00:00Z", 1790845200.0},
        {"2026-10-01T09:00:00.250Z", 1790845200.25},
        {"2026-10-01T11:00:00+02:00", 1790845200.0},
        {"1970-01-01T00:00:00Z", 0.0},
        {"2200-12-31T23:59:59.999Z", 7289654399.999},
        // Outside the plausible years, offsets included.
        {"1969-12-31T23:59:59Z", std::nullopt},
        {"1970-01-01T00:30:00+01:00", std::nullopt},
        {"2201-01-01T00:00:00Z", std::nullopt},
        {"2200-12-31T23:30:00-01:00", std::nullopt},
        {"4200-01-01T00:00:00Z", std::nullopt},
        {"2026-02-30T00:00:00Z", std::nullopt},
        {"2026-10-01 09:00:00Z", std::nullopt},
        {"2026-10-01T09:00:00", std::nullopt},
        {"2026-10-01T09:00:00Zjunk", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(parseIso8601(c.text), c.value);
        if (c.value && std::string(c.text).back() == 'Z') {
            EXPECT_EQ(formatIso8601(*c.value), c.text);
        }
    }
}

TEST(DayKey, FollowsTheUsersZoneAndCalendar) {
    const FixedOffsetCalendar utc(0), tokyo(9 * 3600), hawaii(-10 * 3600);
    const Timestamp t = *parseIso8601("2026-10-01T20:30:00Z");
    EXPECT_EQ(DayKey::of(t, utc), "2026-10-01");
    EXPECT_EQ(DayKey::of(t, tokyo), "2026-10-02");
    EXPECT_EQ(DayKey::of(*parseIso8601("2026-10-01T05:00:00Z"), hawaii), "2026-09-30");
    EXPECT_EQ(DayKey::startOf("2026-10-02", tokyo), *parseIso8601("2026-10-01T15:00:00Z"));
    EXPECT_EQ(DayKey::distance("2026-12-31", "2027-01-01"), 1);
    EXPECT_EQ(DayKey::distance("2024-02-28", "2024-03-01"), 2);
    EXPECT_EQ(DayKey::distance("2026-10-05", "2026-10-01"), -4);
    EXPECT_EQ(DayKey::distance("garbage", "2026-10-01"), std::nullopt);
    EXPECT_EQ(DayKey::offset("2026-03-01", -1), "2026-02-28");
    EXPECT_FALSE(DayKey::isValid("2026-13-01"));
    EXPECT_FALSE(DayKey::startOf("2026-1-01", utc).has_value());
}

TEST(DayKey, StartOfDayAcrossADaylightSavingChange) {
    // A zone at +1 h that moves to +2 h at 2026-03-29T01:00Z.
    const Timestamp change = *parseIso8601("2026-03-29T01:00:00Z");
    const FunctionCalendar cet([&](Timestamp t) { return t < change ? 3600L : 7200L; });
    EXPECT_EQ(DayKey::startOf("2026-03-29", cet), *parseIso8601("2026-03-28T23:00:00Z"));
    EXPECT_EQ(DayKey::startOf("2026-03-30", cet), *parseIso8601("2026-03-29T22:00:00Z"));
    EXPECT_EQ(DayKey::of(*parseIso8601("2026-03-29T22:30:00Z"), cet), "2026-03-30");
}

TEST(LedgerReason, JsonIsOneKeyObjectsWithUnderscoreZeroPayloads) {
    const struct {
        LedgerReason reason;
        const char* json;
        const char* title;
        const char* subtitle;
    } cases[] = {
        {LedgerReason::welcomeGift(), R"({"welcomeGift":{}})", "Welcome gift", "First launch"},
        {LedgerReason::passive(), R"({"passive":{}})", "Paw-time", "Active use"},
        {LedgerReason::checkIn(9), R"({"checkIn":{"streakDay":9}})", "Daily check-in", "9 streak"},
        {LedgerReason::goldenFish(), R"({"goldenFish":{}})", "Golden Fish", "Caught in the header"},
        {LedgerReason::achievement("weekStreak"), R"({"achievement":{"_0":"weekStreak"}})", "Week Streak", "Achievement"},
        {LedgerReason::purchase("shiba"), R"({"purchase":{"_0":"shiba"}})", "Adopted Kibo", "Kibo the Shiba"},
        {LedgerReason::purchase("dragon"), R"({"purchase":{"_0":"dragon"}})", "Adopted Dragon", ""},
        {LedgerReason::debug("qa"), R"({"debug":{"_0":"qa"}})", "Debug grant", ""},
        {LedgerReason::carryover(), R"({"carryover":{}})", "Earlier history", "Older entries, combined"},
        {LedgerReason::correction("fix"), R"({"correction":{"_0":"fix"}})", "Balance correction", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.json);
        EXPECT_EQ(c.reason.toJson().dump(), c.json);
        EXPECT_EQ(LedgerReason::fromJson(nlohmann::json::parse(c.json)), c.reason);
        EXPECT_EQ(c.reason.title(), c.title);
        EXPECT_EQ(c.reason.subtitle(1), c.subtitle);
    }
    EXPECT_EQ(LedgerReason::passive().subtitle(7), "7 Fish for active minutes");
    for (const char* bad : {R"({})", R"({"passive":{},"checkIn":{"streakDay":1}})", R"({"lottery":{}})",
                            R"({"checkIn":{}})", R"({"checkIn":{"streakDay":"9"}})", R"({"purchase":{"_0":3}})",
                            R"("passive")", R"({"passive":[]})"}) {
        SCOPED_TRACE(bad);
        EXPECT_FALSE(LedgerReason::fromJson(nlohmann::json::parse(bad)).has_value());
    }
    int earning = 0;
    for (const auto& c : cases) earning += c.reason.isEarning();
    EXPECT_EQ(earning, 5);
}

TEST(LedgerEntry, MoneyFieldsAreStrictTheRestLenient) {
    IdGenerator ids(1);
    auto ok = LedgerEntry::fromJson(
        nlohmann::json::parse(R"({"date":"2026-10-01T09:00:00Z","amount":15,"reason":{"goldenFish":{}}})"), ids);
    ASSERT_TRUE(std::holds_alternative<LedgerEntry>(ok));
    const auto& row = std::get<LedgerEntry>(ok);
    EXPECT_EQ(row.id.size(), 36u);
    EXPECT_EQ(row.merged, 1);
    EXPECT_EQ(row.balanceAfter, 0);

    auto roundTrip = LedgerEntry::fromJson(nlohmann::json::parse(row.toJson().dump()), ids);
    ASSERT_TRUE(std::holds_alternative<LedgerEntry>(roundTrip));
    EXPECT_EQ(std::get<LedgerEntry>(roundTrip), row);

    auto lenient = LedgerEntry::fromJson(nlohmann::json::parse(
        R"({"id":"x","date":"2026-10-01T09:00:00Z","amount":-3,"reason":{"passive":{}},"balanceAfter":"?","merged":null})"), ids);
    ASSERT_TRUE(std::holds_alternative<LedgerEntry>(lenient));
    EXPECT_EQ(std::get<LedgerEntry>(lenient).merged, 1);

    for (const char* bad : {
             R"({"amount":15,"reason":{"goldenFish":{}}})",
             R"({"date":"yesterday","amount":15,"reason":{"goldenFish":{}}})",
             R"({"date":"2026-10-01T09:00:00Z","amount":"15","reason":{"goldenFish":{}}})",
             R"({"date":"2026-10-01T09:00:00Z","amount":1.5,"reason":{"goldenFish":{}}})",
             R"({"date":"2026-10-01T09:00:00Z","amount":18446744073709551615,"reason":{"goldenFish":{}}})",
             R"({"date":"2026-10-01T09:00:00Z","amount":15})",
             R"({"date":"2026-10-01T09:00:00Z","amount":15,"reason":{"bonus":{}}})",
             R"([1,2])"}) {
        SCOPED_TRACE(bad);
        EXPECT_TRUE(std::holds_alternative<std::string>(LedgerEntry::fromJson(nlohmann::json::parse(bad), ids)));
    }
}

}  // namespace
}  // namespace trotlet::shop
