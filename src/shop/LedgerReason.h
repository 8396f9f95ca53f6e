#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace trotlet::shop {

// Why a ledger row exists. JSON: one key, the case name, holding the payload object
// ({} for none; a single unnamed value under "_0"; the check-in's day under "streakDay").
class LedgerReason {
public:
    enum class Kind { welcomeGift, passive, checkIn, goldenFish, achievement, purchase, debug, carryover, correction };
    static constexpr std::array<std::string_view, 9> kindNames = {
        "welcomeGift", "passive", "checkIn", "goldenFish", "achievement",
        "purchase",    "debug",   "carryover", "correction"};

    static LedgerReason welcomeGift() { return LedgerReason(Kind::welcomeGift); }
    static LedgerReason passive() { return LedgerReason(Kind::passive); }
    static LedgerReason checkIn(int64_t streakDay) { return LedgerReason(Kind::checkIn, streakDay); }
    static LedgerReason goldenFish() { return LedgerReason(Kind::goldenFish); }
    static LedgerReason achievement(std::string id) { return LedgerReason(Kind::achievement, 0, std::move(id)); }
    static LedgerReason purchase(std::string mascotId) { return LedgerReason(Kind::purchase, 0, std::move(mascotId)); }
    static LedgerReason debug(std::string note) { return LedgerReason(Kind::debug, 0, std::move(note)); }
    static LedgerReason carryover() { return LedgerReason(Kind::carryover); }
    static LedgerReason correction(std::string note) { return LedgerReason(Kind::correction, 0, std::move(note)); }

    Kind kind() const { return kind_; }
    std::string_view kindName() const { return kindNames[static_cast<size_t>(kind_)]; }
    int64_t streakDay() const { return streakDay_; }
    const std::string& value() const { return value_; }  // the "_0" payload
    bool isEarning() const;

    // The ledger list's row: title, subtitle (needs the row's merged count) and symbol.
    std::string title() const;
    std::string subtitle(int64_t merged) const;
    std::string_view symbol() const;

    nlohmann::ordered_json toJson() const;
    // None for anything but a one-key object naming a known case with a well-formed payload.
    static std::optional<LedgerReason> fromJson(const nlohmann::json& json);

    friend bool operator==(const LedgerReason&, const LedgerReason&) = default;

private:
    explicit LedgerReason(Kind kind, int64_t streakDay = 0, std::string value = {})
        : kind_(kind), streakDay_(streakDay), value_(std::move(value)) {}

    Kind kind_;
    int64_t streakDay_ = 0;
    std::string value_;
};

}  // namespace trotlet::shop
