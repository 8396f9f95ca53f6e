#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "shop/ShopState.h"

namespace trotlet::shop {

// Ready-made shops for screenshots, QA and `--dump-shop`, built by driving a real engine
// through scripted days, so every state is one the app could have reached.
enum class ShopDemo { newUser, midGame, streak29, saverUsed, rich, complete };
inline constexpr std::array<std::string_view, 6> ShopDemoNames = {"newUser", "midGame", "streak29",
                                                                  "saverUsed", "rich", "complete"};

std::optional<ShopDemo> shopDemoNamed(std::string_view name);

// The state as it stands at `now` (its last day is the day of `now`, UTC). `streak29` has
// checked in through yesterday, so today's check-in is day 30.
ShopState buildShopDemo(ShopDemo demo, Timestamp now);

}  // namespace trotlet::shop
