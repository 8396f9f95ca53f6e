#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "shop/ShopDemoStates.h"

namespace trotlet::shop {

// The debug-build shop flags: `--grant-fish <n>` adds Fish as a "Debug grant" row at launch,
// `--shop-demo <state>` runs on a built demo shop in memory (never touching shop.json), and
// `--shop-file <path>` uses another shop file. The command-line parser skips these flags and
// their values; the app reads them from here.
struct ShopDebugOptions {
    std::optional<int64_t> grantFish;
    std::optional<ShopDemo> demo;
    std::optional<std::string> shopFile;

    bool any() const { return grantFish || demo || shopFile; }

    // `args` is the whole argument list, executable first. An error message for a flag with a
    // missing or bad value.
    static std::variant<ShopDebugOptions, std::string> parse(const std::vector<std::string>& args);
};

}  // namespace trotlet::shop
