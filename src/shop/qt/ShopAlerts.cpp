#include "shop/qt/ShopAlerts.h"

#include "shop/Achievement.h"
#include "shop/Catalog.h"

namespace trotlet::shop {

std::optional<alerts::AppEvent> alertEventFor(const EconomyMoment& moment) {
    switch (moment.kind) {
    case EconomyMoment::Kind::achievementUnlocked: {
        const std::optional<AchievementID> id = Achievement::idNamed(moment.id);
        if (!id) return std::nullopt;
        const Achievement& achievement = Achievement::of(*id);
        return alerts::AchievementUnlocked{std::string(achievement.title), std::string(achievement.goal),
                                           achievement.reward};
    }
    case EconomyMoment::Kind::purchased: {
        const CatalogItem* item = Catalog::item(moment.id);
        if (!item) return std::nullopt;
        return alerts::MascotPurchased{item->name};
    }
    case EconomyMoment::Kind::saverUsed:
    case EconomyMoment::Kind::streakBroken:
    case EconomyMoment::Kind::mascotEarned:
    case EconomyMoment::Kind::welcomeGift:
        return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace trotlet::shop
