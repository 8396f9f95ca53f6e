#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace trotlet::shop {

enum class Rarity { starter, common, rare, epic, legendary, secret };
inline constexpr std::array<std::string_view, 6> RarityNames = {"starter", "common", "rare",
                                                                 "epic", "legendary", "secret"};

// What a mascot costs: Fish, nothing (the starter), or a check-in streak (earned, never sold).
struct Price {
    enum class Kind { fish, free, streak };
    Kind kind = Kind::free;
    int64_t amount = 0;  // Fish for `fish`, days for `streak`

    bool isForSale() const { return kind == Kind::fish; }
};

struct Perk {
    enum class Kind { none, passiveFishBonus };
    Kind kind = Kind::none;
    double fraction = 0;  // for passiveFishBonus: added to the passive multiplier
};

struct CatalogItem {
    std::string id;
    std::string name;
    std::string species;
    std::string tagline;
    Rarity rarity = Rarity::common;
    Price price;
    Perk perk;

    // "Kibo the Shiba": how a purchase row and the shop name the mascot.
    std::string displayName() const;
    // "Earns 10% more Paw-time Fish while equipped"; empty without a perk.
    std::string perkText() const;
};

struct Catalog {
    static constexpr std::string_view starterId = "cat";
    static constexpr std::string_view secretId = "goldenCat";
    static constexpr std::string_view luckyCatId = "maneki";
    static constexpr int secretStreakDays = 30;

    static std::span<const CatalogItem> all();
    static const CatalogItem* item(std::string_view id);
    static int64_t priceFor(Rarity rarity);
};

}  // namespace trotlet::shop
