#include "shop/LedgerReason.h"

#include <cctype>

#include "shop/Achievement.h"
#include "shop/Catalog.h"

namespace trotlet::shop {

bool LedgerReason::isEarning() const {
    switch (kind_) {
    case Kind::welcomeGift:
    case Kind::passive:
    case Kind::goldenFish:
    case Kind::checkIn:
    case Kind::achievement: return true;
    case Kind::purchase:
    case Kind::debug:
    case Kind::carryover:
    case Kind::correction: return false;
    }
    return false;
}

std::string LedgerReason::title() const {
    switch (kind_) {
    case Kind::welcomeGift: return "Welcome gift";
    case Kind::passive: return "Paw-time";
    case Kind::checkIn: return "Daily check-in";
    case Kind::goldenFish: return "Golden Fish";
    case Kind::achievement:
        if (auto id = Achievement::idNamed(value_)) return std::string(Achievement::of(*id).title);
        return value_;
    case Kind::purchase: {
        if (const auto* item = Catalog::item(value_)) return "Adopted " + item->name;
        std::string name = value_;
        if (!name.empty()) name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
        return "Adopted " + name;
    }
    case Kind::debug: return "Debug grant";
    case Kind::carryover: return "Earlier history";
    case Kind::correction: return "Balance correction";
    }
    return {};
}

std::string LedgerReason::subtitle(int64_t merged) const {
    switch (kind_) {
    case Kind::welcomeGift: return "First launch";
    case Kind::passive:
        return merged < 2 ? "Active use" : std::to_string(merged) + " Fish for active minutes";
    case Kind::checkIn: return std::to_string(streakDay_) + " streak";
    case Kind::goldenFish: return "Caught in the header";
    case Kind::achievement: return "Achievement";
    case Kind::purchase: {
        const auto* item = Catalog::item(value_);
        return item ? item->displayName() : std::string();
    }
    case Kind::carryover: return "Older entries, combined";
    case Kind::debug:
    case Kind::correction: return {};
    }
    return {};
}

std::string_view LedgerReason::symbol() const {
    switch (kind_) {
    case Kind::welcomeGift: return "gift.fill";
    case Kind::passive: return "pawprint.fill";
    case Kind::checkIn: return "flame.fill";
    case Kind::goldenFish: return "fish.fill";
    case Kind::achievement:
        if (auto id = Achievement::idNamed(value_)) return Achievement::of(*id).symbol;
        return "star.fill";
    case Kind::purchase: return "bag.fill";
    case Kind::debug: return "ladybug.fill";
    case Kind::carryover: return "tray.full.fill";
    case Kind::correction: return "checkmark.seal.fill";
    }
    return {};
}

nlohmann::ordered_json LedgerReason::toJson() const {
    nlohmann::ordered_json payload = nlohmann::ordered_json::object();
    switch (kind_) {
    case Kind::checkIn: payload["streakDay"] = streakDay_; break;
    case Kind::achievement:
    case Kind::purchase:
    case Kind::debug:
    case Kind::correction: payload["_0"] = value_; break;
    default: break;
    }
    nlohmann::ordered_json out = nlohmann::ordered_json::object();
    out[std::string(kindName())] = std::move(payload);
    return out;
}

std::optional<LedgerReason> LedgerReason::fromJson(const nlohmann::json& json) {
    if (!json.is_object() || json.size() != 1) return std::nullopt;
    const auto entry = json.begin();
    const std::string& key = entry.key();
    const nlohmann::json& payload = entry.value();
    if (!payload.is_object()) return std::nullopt;
    std::optional<Kind> kind;
    for (size_t i = 0; i < kindNames.size(); ++i)
        if (kindNames[i] == key) kind = static_cast<Kind>(i);
    if (!kind) return std::nullopt;

    switch (*kind) {
    case Kind::checkIn: {
        const auto it = payload.find("streakDay");
        if (it == payload.end() || !it->is_number_integer()) return std::nullopt;
        return checkIn(it->get<int64_t>());
    }
    case Kind::achievement:
    case Kind::purchase:
    case Kind::debug:
    case Kind::correction: {
        const auto it = payload.find("_0");
        if (it == payload.end() || !it->is_string()) return std::nullopt;
        return LedgerReason(*kind, 0, it->get<std::string>());
    }
    default: return LedgerReason(*kind);
    }
}

}  // namespace trotlet::shop
