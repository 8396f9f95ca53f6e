#pragma once

#include "cli/LaunchOptions.h"

namespace trotlet::updates {

// `--move-check <path>...`: the "Install for this user?" decision for each path, as a JSON
// array of {path, applicable, shouldOffer, reason, rule, target}.
// `--move-copy <app> <dir>`: installs the app into <dir> with a launcher and the icon in the
// user's data folder, and says for the source and the copy whether the system will run them.
// Exits 0, or 1 when the copy failed.
int runUserInstallCLI(const cli::LaunchOptions& options);

}  // namespace trotlet::updates
