#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <nlohmann/json.hpp>

namespace trotlet::shop {

// Runs simulated users through months of the economy in milliseconds and checks that the
// ledger holds together and that setting the clock wrong earns nothing extra.
//
// Profiles: `engaged` (a full working day at the computer, checks in every morning, opens the
// panel three times a day and catches every Golden Fish), `casual` (a couple of hours on most
// days, forgets some check-ins, slow on the fish), `maneki` (engaged, but saves for the lucky
// cat first), `tamper` (the engaged user's exact days, with the wall clock set back a day and
// thirty days ahead now and then). Days run in UTC from 2026-10-01.
struct SimulationOptions {
    int days = 30;
    std::string profile = "engaged";  // engaged, casual, maneki, tamper, all
    uint64_t seed = 7;
    bool buyCheapest = true;  // "cheapest" or "none"

    static constexpr const char* profiles[] = {"engaged", "casual", "maneki", "tamper", "all"};
    // Parses "[days] [profile] [seed] [buy]"; an error message for a bad word.
    static std::variant<SimulationOptions, std::string> parse(const std::vector<std::string>& words);
};

struct SimulationReport {
    nlohmann::ordered_json json;
    bool passed = true;
};

SimulationReport simulateEconomy(const SimulationOptions& options);

}  // namespace trotlet::shop
