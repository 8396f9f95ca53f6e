#include "shop/Inventory.h"

#include <algorithm>

namespace trotlet::shop {

Inventory::Inventory() : owned_{std::string(Catalog::starterId)}, equipped_(Catalog::starterId) {}

Inventory::Inventory(std::vector<std::string> owned, std::string equipped) : Inventory() {
    for (auto& id : owned)
        if (Catalog::item(id) && !owns(id)) owned_.push_back(std::move(id));
    if (owns(equipped)) equipped_ = std::move(equipped);
}

bool Inventory::owns(std::string_view id) const {
    return std::find(owned_.begin(), owned_.end(), id) != owned_.end();
}

ItemStatus Inventory::status(const CatalogItem& item, int64_t balance) const {
    if (item.id == equipped_) return {ItemStatus::Kind::equipped};
    if (owns(item.id)) return {ItemStatus::Kind::owned};
    if (!item.price.isForSale()) return {ItemStatus::Kind::notForSale};
    if (balance >= item.price.amount) return {ItemStatus::Kind::canBuy};
    return {ItemStatus::Kind::needsFish, item.price.amount - balance};
}

bool Inventory::equip(std::string_view id) {
    if (!owns(id)) return false;
    equipped_ = std::string(id);
    return true;
}

bool Inventory::unlock(std::string_view id) {
    if (!Catalog::item(id) || owns(id)) return false;
    owned_.emplace_back(id);
    return true;
}

}  // namespace trotlet::shop
