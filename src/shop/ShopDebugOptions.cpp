#include "shop/ShopDebugOptions.h"

#include <charconv>

namespace trotlet::shop {

namespace {

std::string demoNames() {
    std::string names;
    for (const auto name : ShopDemoNames) {
        if (!names.empty()) names += ", ";
        names += name;
    }
    return names;
}

}  // namespace

std::variant<ShopDebugOptions, std::string> ShopDebugOptions::parse(const std::vector<std::string>& args) {
    ShopDebugOptions options;
    for (size_t i = 1; i < args.size(); ++i) {
        const std::string& arg = args[i];
        const bool hasValue = i + 1 < args.size() && args[i + 1].rfind("--", 0) != 0;
        const std::string value = hasValue ? args[i + 1] : std::string();
        if (arg == "--grant-fish") {
            int64_t n = 0;
            const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), n);
            if (!hasValue || error != std::errc() || end != value.data() + value.size() || n == 0 ||
                n > 1'000'000'000 || n < -1'000'000'000)
                return std::string("--grant-fish needs a whole number of Fish (not 0)");
            options.grantFish = n;
            ++i;
        } else if (arg == "--shop-demo") {
            const auto demo = hasValue ? shopDemoNamed(value) : std::nullopt;
            if (!demo) return "--shop-demo needs one of: " + demoNames();
            options.demo = demo;
            ++i;
        } else if (arg == "--shop-file") {
            if (!hasValue || value.empty()) return std::string("--shop-file needs a path");
            options.shopFile = value;
            ++i;
        }
    }
    return options;
}

}  // namespace trotlet::shop
