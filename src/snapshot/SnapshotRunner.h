#pragma once

#include "cli/LaunchOptions.h"

namespace trotlet::snapshot {

// `--snapshot <dir>`: renders the scenes (filtered by `--only`) at scale 2 in light and dark,
// writing "<scene>-light@2x.png", "<scene>-dark@2x.png" and index.json. Exit 0; 1 when a scene
// fails to render (named on stderr); 2 when the directory cannot be made.
// `--list-scenes`: the matching scene names as a JSON array.
struct SnapshotRunner {
    // Set before the application object exists: the offscreen platform at scale 2, the fixed
    // time zone, no desktop theme.
    static void prepareEnvironment();
    // Fixed fonts and the like; after the application object exists.
    static void prepareApplication();
    static int run(const cli::LaunchOptions& options);
    static int listScenes(const cli::LaunchOptions& options);
};

}  // namespace trotlet::snapshot
