#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shop/Catalog.h"

namespace trotlet::shop {

// What a shop card shows for one catalog item.
struct ItemStatus {
    enum class Kind {
        equipped,      // owned and in use
        owned,         // owned, can be equipped
        canBuy,        // for sale and affordable now
        needsFish,     // for sale; `missing` more Fish needed
        notForSale,    // earned only (the streak mascot), not owned yet
    };
    Kind kind = Kind::notForSale;
    int64_t missing = 0;

    friend bool operator==(const ItemStatus&, const ItemStatus&) = default;
};

class Inventory {
public:
    Inventory();
    // Ids not in the catalog are dropped; the starter is always owned; an equipped id that
    // isn't owned falls back to the starter.
    Inventory(std::vector<std::string> owned, std::string equipped);

    const std::vector<std::string>& owned() const { return owned_; }
    const std::string& equipped() const { return equipped_; }
    bool owns(std::string_view id) const;

    ItemStatus status(const CatalogItem& item, int64_t balance) const;
    bool equip(std::string_view id);
    // Adds an item to `owned`; false when it was owned already or isn't in the catalog.
    bool unlock(std::string_view id);

private:
    std::vector<std::string> owned_;
    std::string equipped_;
};

}  // namespace trotlet::shop
