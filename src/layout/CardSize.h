#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "settings/RawEnum.h"

namespace trotlet::layout {

// The four footprints a card can take on the Overview grid, persisted by raw name.
enum class CardSize { small, medium, wide, large };

inline constexpr std::array<std::string_view, 4> CardSizeNames = {"small", "medium", "wide",
                                                                  "large"};

constexpr std::string_view name(CardSize size) { return settings::rawName(size, CardSizeNames); }

constexpr std::optional<CardSize> cardSize(std::string_view raw) {
    return settings::fromRawName<CardSize>(raw, CardSizeNames);
}

}  // namespace trotlet::layout
