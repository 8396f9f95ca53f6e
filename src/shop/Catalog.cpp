#include "shop/Catalog.h"

#include <cmath>
#include <vector>

#include "shop/PlatformNoun.h"

namespace trotlet::shop {

namespace {

constexpr Price fish(int64_t amount) { return {Price::Kind::fish, amount}; }

const std::vector<CatalogItem>& items() {
    static const std::vector<CatalogItem> table = {
    {"cat", "Mochi", "Cat", "Runs on curiosity and your CPU cycles.", Rarity::starter, {Price::Kind::free, 0}, {}},
    {"shiba", "Kibo", "Shiba", "Much load. Very run. Wow.", Rarity::common, fish(250), {}},
    {"bunny", "Pudding", "Bunny", "Hops first, asks questions never.", Rarity::common, fish(250), {}},
    {"penguin", "Pebble", "Penguin", "Not built for speed. Doesn't care.", Rarity::common, fish(250), {}},
    {"hamster", "Nugget", "Hamster", withPlatformNoun("Generating power for your ", " since forever."), Rarity::rare, fish(500), {}},
    {"fox", "Ember", "Fox", "Quick, quiet, and very fluffy.", Rarity::rare, fish(500), {}},
    {"ghost", "Boo", "Ghost", "Haunts your RAM. Politely.", Rarity::rare, fish(500), {}},
    {"axolotl", "Wasabi", "Axolotl", "Regenerates. Unlike your battery.", Rarity::epic, fish(1000), {}},
    {"robot", "Bolt", "Robot", "Beep boop. Your CPU is at 73%.", Rarity::epic, fish(1000), {}},
    {"trex", "Chomp", "T-Rex", "Tiny arms, big ambitions.", Rarity::epic, fish(1000), {}},
    {"unicorn", "Stardust", "Unicorn", "Powered by rainbows and 100% CPU.", Rarity::legendary, fish(2000), {}},
    {"maneki", "Maneki", "Lucky Cat", "Fortune favors the fast.", Rarity::legendary, fish(2000),
     {Perk::Kind::passiveFishBonus, 0.1}},
    {"goldenCat", "Golden Mochi", "Cat", "The legend. Earned, never bought.", Rarity::secret,
     {Price::Kind::streak, 30}, {}},
    };
    return table;
}

}  // namespace

std::string CatalogItem::displayName() const {
    return name + " the " + species;
}

std::string CatalogItem::perkText() const {
    if (perk.kind != Perk::Kind::passiveFishBonus) return {};
    return "Earns " + std::to_string(std::lround(perk.fraction * 100)) + "% more Paw-time Fish while equipped";
}

std::span<const CatalogItem> Catalog::all() { return items(); }

const CatalogItem* Catalog::item(std::string_view id) {
    for (const auto& entry : items())
        if (entry.id == id) return &entry;
    return nullptr;
}

int64_t Catalog::priceFor(Rarity rarity) {
    switch (rarity) {
    case Rarity::common: return 250;
    case Rarity::rare: return 500;
    case Rarity::epic: return 1000;
    case Rarity::legendary: return 2000;
    case Rarity::starter:
    case Rarity::secret: return 0;
    }
    return 0;
}

}  // namespace trotlet::shop
