#pragma once

#include "cli/LaunchOptions.h"

namespace trotlet::app {

// Runs the headless mode or the live app the options ask for; gives the exit status.
int runApplication(const cli::LaunchOptions& options, int argc, char** argv);

}  // namespace trotlet::app
