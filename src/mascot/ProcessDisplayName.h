#pragma once

#include <optional>
#include <string>

#include "metrics/MetricsSnapshot.h"

namespace trotlet::mascot {

// How a process is named to the user: its own name, and when it is a helper of an app (a
// browser's content process, say), the app it belongs to.
struct ProcessDisplayName {
    std::string name;
    std::optional<std::string> app;

    // "name" or "name (app)".
    std::string text() const { return app ? name + " (" + *app + ")" : name; }

    // The owning app comes from the bundle path when the row has one (a Flatpak or AppImage,
    // or a desktop entry), else from the executable when its file name differs from the
    // process name (a renderer that renamed itself, "Web Content" run by firefox). The kernel
    // cuts process names to 15 bytes, so a name that is the start of the file name is the same
    // program, not a helper.
    static ProcessDisplayName of(const metrics::ProcessRow& row);
};

}  // namespace trotlet::mascot
