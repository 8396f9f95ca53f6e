#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "layout/CardSize.h"

namespace trotlet::layout {

// The user's arrangement of the Overview: cards in reading order with their sizes and hidden
// flags. Positions are not stored; the packer derives them from the order.
struct OverviewLayout {
    static constexpr int currentVersion = 1;

    struct Card {
        std::string id;
        CardSize size = CardSize::small;
        bool hidden = false;
        friend bool operator==(const Card&, const Card&) = default;
    };

    int version = currentVersion;
    std::vector<Card> cards;

    std::vector<std::string> hiddenIDs() const;
    const Card* card(std::string_view id) const;

    // The lenient reader. None for text that is empty, not UTF-8, not JSON, not an object with
    // an integer version below 2 and a cards array, or with no usable card left. Cards decode
    // one by one: one without an id or a known size is dropped; a missing or non-boolean
    // `hidden` reads as visible.
    static std::optional<OverviewLayout> decode(std::string_view text);
    // The document as compact JSON, keys in the order version, cards; id, size, hidden.
    std::string json() const;

    friend bool operator==(const OverviewLayout&, const OverviewLayout&) = default;
};

// "cpu:medium gpu:small(hidden) ...": cards in order, for the harness and logs.
std::string describe(const OverviewLayout& layout);

}  // namespace trotlet::layout
