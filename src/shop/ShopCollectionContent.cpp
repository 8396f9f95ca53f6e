// The Shop tab's catalog, achievements and Fish history.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "shop/ShopScreenContent.h"

namespace trotlet::shop {

// --- catalog -----------------------------------------------------------------------------

std::string rarityTitle(Rarity rarity) {
    switch (rarity) {
        case Rarity::starter:
            return "Starter";
        case Rarity::common:
            return "Common";
        case Rarity::rare:
            return "Rare";
        case Rarity::epic:
            return "Epic";
        case Rarity::legendary:
            return "Legendary";
        case Rarity::secret:
            return "Secret";
    }
    return {};
}

CatalogCard describeCatalogItem(const CatalogItem& item, ItemStatus status, int64_t balance,
                                int64_t streakDays, bool tryingOn) {
    CatalogCard c;
    c.id = item.id;
    c.name = item.name;
    c.species = item.species;
    c.tagline = item.tagline;
    c.rarityKind = item.rarity;
    c.rarity = rarityTitle(item.rarity);
    c.status = status;
    switch (item.price.kind) {
        case Price::Kind::fish:
            c.price = fishCount(item.price.amount);
            c.priceInFish = true;
            break;
        case Price::Kind::free:
            c.price = "Free";
            break;
        case Price::Kind::streak:
            c.price = std::to_string(item.price.amount) + "-day streak";
            break;
    }
    if (!item.perkText().empty()) {
        c.highlight = item.perkText();
        c.highlightSymbol = "sparkles";
    }

    using K = ItemStatus::Kind;
    switch (status.kind) {
        case K::equipped:
            c.note = "Equipped";
            break;
        case K::owned:
            c.action = CatalogCard::Action::equip;
            c.actionLabel = "Equip";
            break;
        case K::canBuy:
            c.action = CatalogCard::Action::buy;
            c.actionLabel = "Buy";
            break;
        case K::needsFish:
            c.note = fishCount(status.missing) + " more Fish";
            if (item.price.amount > 0)
                c.affordFraction =
                    std::clamp(double(balance) / double(item.price.amount), 0.0, 1.0);
            break;
        case K::notForSale:
            c.secret = true;
            c.note = "Day " + std::to_string(std::min<int64_t>(streakDays, item.price.amount)) +
                     " of " + std::to_string(item.price.amount);
            c.affordFraction =
                item.price.amount > 0
                    ? std::clamp(double(streakDays) / double(item.price.amount), 0.0, 1.0)
                    : 0;
            c.highlight = "A secret. Keep your streak going.";
            c.highlightSymbol = "lock.fill";
            break;
    }
    if (item.price.kind == Price::Kind::streak && status.kind != K::notForSale) {
        c.highlight = std::to_string(item.price.amount) + " days in a row. The legend is yours.";
        c.highlightSymbol = "crown.fill";
    }
    // Only what the user can still buy is worth trying on; the secret stays a secret.
    c.canTryOn = status.kind == K::canBuy || status.kind == K::needsFish;
    c.tryingOn = tryingOn && c.canTryOn;
    if (c.canTryOn) c.tryOnLabel = c.tryingOn ? "Stop" : "Try on";
    if (status.kind == K::equipped)
        c.badge = CatalogCard::Badge::equipped;
    else if (c.tryingOn)
        c.badge = CatalogCard::Badge::tryingOn;
    else if (status.kind == K::owned)
        c.badge = CatalogCard::Badge::owned;
    constexpr std::array<std::string_view, 4> badges = {"", "Equipped", "Trying on", "Owned"};
    c.badgeText = badges[static_cast<size_t>(c.badge)];

    c.accessibleName = item.displayName() + ", " + c.rarity;
    c.accessibleDescription = c.tagline;
    if (c.priceInFish && (status.kind == K::canBuy || status.kind == K::needsFish))
        c.accessibleDescription += " Costs " + c.price + " Fish.";
    if (!c.highlight.empty()) c.accessibleDescription += " " + c.highlight;
    if (!c.note.empty()) c.accessibleDescription += " " + c.note + ".";
    return c;
}

std::string ownedSummary(const Inventory& inventory) {
    size_t owned = 0;
    for (const CatalogItem& item : Catalog::all()) owned += inventory.owns(item.id) ? 1 : 0;
    return std::to_string(owned) + " of " + std::to_string(Catalog::all().size()) + " owned";
}

std::vector<CatalogCard> describeCatalog(const EconomyEngine& engine,
                                         const std::optional<std::string>& tryingOn) {
    std::vector<CatalogCard> cards;
    for (const CatalogItem& item : Catalog::all())
        cards.push_back(describeCatalogItem(item, engine.status(item), engine.wallet().balance(),
                                            engine.streak().current, tryingOn == item.id));
    return cards;
}

std::string purchaseQuestion(const CatalogItem& item) {
    return "Adopt " + item.name + " for " + fishCount(item.price.amount) + " Fish?";
}

std::string welcomeTitle(const CatalogItem& item) { return "Welcome home, " + item.name; }

std::string welcomeBody(const CatalogItem& item, bool earned) {
    if (earned) return std::to_string(item.price.amount) + " days in a row. The legend is yours.";
    return "Your new friend is ready to run in the menu bar.";
}

// --- achievements ------------------------------------------------------------------------

namespace {

std::string shortNumber(double value) {
    if (std::abs(value - std::round(value)) < 1e-9) return std::to_string(std::llround(value));
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", value);
    std::string s = text;
    while (!s.empty() && s.back() == '0') s.pop_back();
    if (!s.empty() && s.back() == '.') s.pop_back();
    return s;
}

}  // namespace

std::string achievementProgressText(double progress, double goal, std::string_view unit) {
    double shown = std::clamp(progress, 0.0, goal);
    // Floored to a tenth, so 42.19 of 42.195 km reads 42.1, never a goal that looks reached.
    if (shown < goal) shown = std::floor(shown * 10 + 1e-9) / 10;
    std::string text = shortNumber(shown) + "/" + shortNumber(goal);
    if (!unit.empty()) text.append(" ").append(unit);
    return text;
}

AchievementsSummary summarizeAchievements(const AchievementTracker& tracker) {
    AchievementsSummary s;
    for (const Achievement& a : Achievement::all()) {
        ++s.total;
        s.possible += a.reward;
        if (tracker.isUnlocked(a.id)) ++s.unlocked;
    }
    s.earned = tracker.totalRewardsEarned();
    s.count = std::to_string(s.unlocked) + " of " + std::to_string(s.total);
    s.reward = fishCount(s.earned) + " of " + fishCount(s.possible) + " Fish earned";
    return s;
}

std::vector<AchievementTile> describeAchievements(const AchievementTracker& tracker,
                                                  const std::vector<LedgerEntry>& ledger) {
    std::vector<AchievementTile> tiles;
    for (const Achievement& a : Achievement::all()) {
        AchievementTile t;
        t.id = std::string(Achievement::nameOf(a.id));
        t.title = a.title;
        t.goal = a.goal;
        t.symbol = a.symbol;
        t.unlocked = tracker.isUnlocked(a.id);
        const double progress = t.unlocked ? a.goalValue : tracker.progress(a.id);
        t.progress = achievementProgressText(progress, a.goalValue, a.unit);
        t.fraction = a.goalValue > 0 ? std::clamp(progress / a.goalValue, 0.0, 1.0) : 0;
        t.reward = signedFish(a.reward);
        if (t.unlocked) {
            const LedgerReason paid = LedgerReason::achievement(t.id);
            const auto row = std::find_if(ledger.rbegin(), ledger.rend(),
                                          [&](const LedgerEntry& e) { return e.reason == paid; });
            if (row != ledger.rend()) t.unlockedAt = row->date;
        }
        t.accessibleName = t.title + (t.unlocked ? ", unlocked" : ", " + t.progress);
        tiles.push_back(std::move(t));
    }
    return tiles;
}

// --- ledger ------------------------------------------------------------------------------

LedgerRow describeLedgerEntry(const LedgerEntry& entry) {
    LedgerRow row;
    row.title = entry.reason.title();
    row.subtitle = entry.reason.subtitle(entry.merged);
    row.symbol = std::string(entry.reason.symbol());
    row.amount = signedFish(entry.amount);
    row.sign = entry.amount > 0 ? 1 : entry.amount < 0 ? -1 : 0;
    row.date = entry.date;
    return row;
}

std::vector<LedgerSection> describeLedger(const std::vector<LedgerEntry>& ledger,
                                          const Calendar& calendar, Timestamp now) {
    std::vector<LedgerSection> sections;
    std::optional<LedgerSection> earlier;
    const std::string today = DayKey::of(now, calendar);
    const std::string yesterday = DayKey::offset(today, -1).value_or("");
    std::string currentKey;
    for (auto it = ledger.rbegin(); it != ledger.rend(); ++it) {
        if (it->reason.kind() == LedgerReason::Kind::carryover) {
            if (!earlier) earlier = LedgerSection{LedgerSection::Label::earlier, 0, {}};
            earlier->rows.push_back(describeLedgerEntry(*it));
            continue;
        }
        const std::string key = DayKey::of(it->date, calendar);
        if (sections.empty() || key != currentKey) {
            currentKey = key;
            LedgerSection s;
            s.label = key == today       ? LedgerSection::Label::today
                      : key == yesterday ? LedgerSection::Label::yesterday
                                         : LedgerSection::Label::date;
            s.dayStart = DayKey::startOf(key, calendar).value_or(it->date);
            sections.push_back(std::move(s));
        }
        sections.back().rows.push_back(describeLedgerEntry(*it));
    }
    if (earlier) sections.push_back(std::move(*earlier));
    return sections;
}

}  // namespace trotlet::shop
