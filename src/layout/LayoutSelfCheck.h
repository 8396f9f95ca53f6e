#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "settings/DefaultsStore.h"

namespace trotlet::layout {

// The layout harness: prints the grid and registry, runs the named packing, migration,
// decoding, persistence, reset and edit cases, then packs seeded random layouts and edits
// them, checking every result. Pure; the command-line runner prints the report.
struct LayoutSelfCheck {
    struct Options {
        uint32_t seed = 20260704;
        int layouts = 2000;
        int editsPerLayout = 6;
        // A fresh view of the settings storage used for the persistence round trip, as a new
        // session would open it. Unset: one in-memory dictionary shared by both sessions.
        std::function<std::shared_ptr<settings::SettingsBacking>()> openSettings;
        std::string settingsDescription = "in-memory settings";
    };

    struct Report {
        nlohmann::ordered_json json;
        std::vector<std::string> failures;  // one line per failed check, in the order run
        bool ok() const { return failures.empty(); }
    };

    static Report run(const Options& options);
};

}  // namespace trotlet::layout
