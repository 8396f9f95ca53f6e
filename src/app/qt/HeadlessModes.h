#pragma once

#include "cli/LaunchOptions.h"

namespace trotlet::app {

// The headless modes, run on a QCoreApplication once its event loop is up; each gives the
// process's exit status and prints its JSON on stdout.
int runHeadlessMode(const cli::LaunchOptions& options);

// `--simulate-notifications`: the notification rules' scripted timeline. The alerts work
// plugs in here.
int runNotificationSimulation(const cli::LaunchOptions& options);

}  // namespace trotlet::app
