#pragma once

#include "app/LaunchOptions.h"

namespace trotlet::app {

// The headless modes, run on a QCoreApplication once its event loop is up; each gives the
// process's exit status and prints its JSON on stdout.
int runHeadlessMode(const LaunchOptions& options);

// `--simulate-notifications`: the notification rules' scripted timeline. The alerts work
// plugs in here.
int runNotificationSimulation(const LaunchOptions& options);

// `--move-check` / `--move-copy`: moving the app into an Applications folder is a notion of
// another system; the answer per path says so.
int runMoveToApplications(const LaunchOptions& options);

}  // namespace trotlet::app
