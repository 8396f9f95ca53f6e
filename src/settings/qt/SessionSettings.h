#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/LaunchOptions.h"
#include "settings/AppSettings.h"

namespace trotlet::settings {

// The settings of this session: the user's settings file, or for `--skip-onboarding` an
// in-memory store preset from `-key value` argument pairs with onboarding marked done.
// The temperature default follows the system locale's measurement system.
std::unique_ptr<AppSettings> makeSessionSettings(const cli::LaunchOptions& options,
                                                 const std::vector<std::string>& args);

// Whether the system locale measures in the US customary system.
bool localeUsesUSMeasurement();

}  // namespace trotlet::settings
