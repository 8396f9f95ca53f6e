#include "shop/ShopStateCodec.h"

#include <cstdint>

#include "json/ParseBounded.h"
#include "shop/JsonFields.h"

namespace trotlet::shop {

nlohmann::ordered_json ShopStateCodec::toJson(const ShopState& s) {
    nlohmann::ordered_json out = nlohmann::ordered_json::object();
    out["schemaVersion"] = s.schemaVersion;
    out["balance"] = s.balance;
    nlohmann::ordered_json ledger = nlohmann::ordered_json::array();
    for (const auto& row : s.ledger) ledger.push_back(row.toJson());
    out["ledger"] = std::move(ledger);
    out["owned"] = s.owned;
    out["equipped"] = s.equipped;
    nlohmann::ordered_json progress = nlohmann::ordered_json::array();
    for (const auto& p : s.achievementProgress) {
        nlohmann::ordered_json entry = nlohmann::ordered_json::object();
        entry["id"] = std::string(Achievement::nameOf(p.id));
        entry["progress"] = p.progress;
        progress.push_back(std::move(entry));
    }
    out["achievementProgress"] = std::move(progress);
    nlohmann::ordered_json unlocked = nlohmann::ordered_json::array();
    for (auto id : s.unlockedAchievements) unlocked.push_back(std::string(Achievement::nameOf(id)));
    out["unlockedAchievements"] = std::move(unlocked);
    out["streak"] = s.streak.toJson();
    out["today"] = s.today.toJson();
    out["lifetime"] = s.lifetime.toJson();
    nlohmann::ordered_json pastDays = nlohmann::ordered_json::array();
    for (const auto& day : s.pastDays) pastDays.push_back(day.toJson());
    out["pastDays"] = std::move(pastDays);
    out["welcomeGiftGranted"] = s.welcomeGiftGranted;
    out["lastSeen"] = json::timeOrNull(s.lastSeen);
    out["clockAnchor"] = s.clockAnchor ? s.clockAnchor->toJson() : nlohmann::ordered_json(nullptr);
    out["goldenFish"] = s.goldenFish.toJson();
    out["createdAt"] = formatIso8601(s.createdAt);
    return out;
}

std::string ShopStateCodec::encode(const ShopState& state) { return toJson(state).dump(); }

namespace {

// Row ids that are missing get fresh ones; seeding from the bytes keeps a decode repeatable.
uint64_t fnv1a(std::string_view bytes) {
    uint64_t hash = 0xCBF29CE484222325ULL;
    for (unsigned char c : bytes) {
        hash ^= c;
        hash *= 0x100000001B3ULL;
    }
    return hash;
}

DecodeError broken(std::string message) { return {DecodeError::Kind::broken, 0, std::move(message)}; }

// No one earns a quadrillion Fish; a number that large was typed in by hand, and accepting
// it would let a later earning overflow the 64-bit sums.
constexpr int64_t plausibleFishLimit = 1'000'000'000'000'000;

bool plausible(int64_t fish) { return fish <= plausibleFishLimit && fish >= -plausibleFishLimit; }

}  // namespace

std::variant<DecodedState, DecodeError> ShopStateCodec::decode(std::string_view bytes) const {
    nlohmann::json root = trotlet::json::parseBounded(bytes);
    if (root.is_discarded() || !root.is_object())
        return DecodeError{DecodeError::Kind::unreadableHeader, 0, "not a JSON object"};
    const auto* version = json::field(root, "schemaVersion");
    if (!version || !version->is_number_integer())
        return DecodeError{DecodeError::Kind::unreadableHeader, 0, "no schemaVersion"};
    const int64_t v = version->get<int64_t>();
    if (v > ShopState::currentSchemaVersion)
        return DecodeError{DecodeError::Kind::newerSchema, v > 1'000'000 ? 1'000'000 : static_cast<int>(v),
                           "schemaVersion " + std::to_string(v)};
    if (v < 1) return broken("schemaVersion " + std::to_string(v));

    DecodedState out;
    out.fromVersion = static_cast<int>(v);
    ShopState& s = out.state;
    IdGenerator ids(fnv1a(bytes));

    // Money: strict.
    const auto* balance = json::field(root, "balance");
    if (!balance || !balance->is_number_integer() ||
        (balance->is_number_unsigned() && balance->get<uint64_t>() > static_cast<uint64_t>(INT64_MAX)))
        return broken("balance is not a whole number of Fish");
    s.balance = balance->get<int64_t>();
    const auto* ledger = json::field(root, "ledger");
    if (!ledger || !ledger->is_array()) return broken("ledger is not a list");
    for (size_t i = 0; i < ledger->size(); ++i) {
        auto row = LedgerEntry::fromJson((*ledger)[i], ids);
        if (auto* error = std::get_if<std::string>(&row)) return broken("ledger row " + std::to_string(i) + ": " + *error);
        s.ledger.push_back(std::move(std::get<LedgerEntry>(row)));
        if (!plausible(s.ledger.back().amount)) return broken("ledger row " + std::to_string(i) + ": amount out of range");
    }
    if (!plausible(s.balance)) return broken("balance out of range");
    int64_t rawSum = 0;
    for (const auto& row : s.ledger)
        if (__builtin_add_overflow(rawSum, row.amount, &rawSum) || !plausible(rawSum))
            return broken("the ledger's sum is out of range");

    // Extras: lenient.
    json::readStrings(root, "owned", s.owned);
    json::read(root, "equipped", s.equipped);
    if (const auto* progress = json::field(root, "achievementProgress"); progress && progress->is_array()) {
        for (const auto& entry : *progress) {
            std::string id;
            double value = 0;
            json::read(entry, "id", id);
            json::read(entry, "progress", value);
            if (auto known = Achievement::idNamed(id)) s.achievementProgress.push_back({*known, value});
        }
    }
    std::vector<std::string> unlocked;
    json::readStrings(root, "unlockedAchievements", unlocked);
    for (const auto& id : unlocked)
        if (auto known = Achievement::idNamed(id)) s.unlockedAchievements.push_back(*known);
    s.streak = StreakState::fromJson(json::field(root, "streak") ? *json::field(root, "streak") : nlohmann::json());
    bool hadPassiveProgress = false;
    s.today = DailyCounters::fromJson(json::field(root, "today") ? *json::field(root, "today") : nlohmann::json(),
                                      &hadPassiveProgress);
    s.lifetime = LifetimeStats::fromJson(json::field(root, "lifetime") ? *json::field(root, "lifetime") : nlohmann::json());
    if (const auto* pastDays = json::field(root, "pastDays"); pastDays && pastDays->is_array())
        for (const auto& entry : *pastDays) s.pastDays.push_back(DailyCounters::fromJson(entry));
    s.pastDays = tidyPastDays(std::move(s.pastDays), s.today.day);
    json::read(root, "welcomeGiftGranted", s.welcomeGiftGranted);
    json::readTime(root, "lastSeen", s.lastSeen);
    if (const auto* anchor = json::field(root, "clockAnchor")) s.clockAnchor = ClockAnchor::fromJson(*anchor);
    s.goldenFish = GoldenFishState::fromJson(json::field(root, "goldenFish") ? *json::field(root, "goldenFish")
                                                                             : nlohmann::json());
    s.createdAt = s.ledger.empty() ? 0 : s.ledger.front().date;
    json::readTime(root, "createdAt", s.createdAt);

    Version1Fields v1;
    if (out.fromVersion == 1) {
        if (const auto* streak = json::field(root, "streak")) json::readTime(*streak, "lastSaverUsed", v1.lastSaverUsed);
    }
    ShopStateMigrator::upgrade(s, out.fromVersion, v1, calendar_, hadPassiveProgress, ids);
    recomputeRunningBalances(s.ledger);

    // Spending never takes a wallet below zero, so a history whose running balance dips there
    // was not written by this program: the money is not trustworthy.
    for (size_t i = 0; i < s.ledger.size(); ++i)
        if (s.ledger[i].balanceAfter < 0)
            return broken("the Fish history falls below nothing at row " + std::to_string(i));
    if (s.balance < 0) return broken("the balance is less than nothing");
    return out;
}

void ShopStateMigrator::upgrade(ShopState& state, int fromVersion, const Version1Fields& v1, const Calendar& calendar,
                                bool todayHadPassiveProgress, IdGenerator& ids) {
    if (fromVersion >= 2) {
        state.schemaVersion = ShopState::currentSchemaVersion;
        return;
    }
    if (v1.lastSaverUsed) state.streak.lastSaverDay = DayKey::of(*v1.lastSaverUsed, calendar);
    if (!todayHadPassiveProgress || state.today.passiveProgress == 0)
        state.today.passiveProgress = state.today.activeSeconds;
    if (!state.ledger.empty()) {
        int64_t sum = 0;
        for (const auto& row : state.ledger) sum = checkedAdd(sum, row.amount);
        if (sum != state.balance) {
            const int64_t missing = state.balance - sum;
            state.ledger.insert(state.ledger.begin(), LedgerEntry{ids.next(), state.ledger.front().date, missing,
                                                                  LedgerReason::carryover(), missing, 1});
            recomputeRunningBalances(state.ledger);
        }
    }
    state.schemaVersion = ShopState::currentSchemaVersion;
}

}  // namespace trotlet::shop
