#pragma once

#include <functional>
#include <string>

namespace trotlet::mascot {

// Registers the "mascot" block of `--dump-metrics`: the equipped mascot (asked for when the
// dump runs, "cat" when no answer) with default behaviour settings, the user's local time for
// the night and holiday looks, and `--idle-seconds`/`--awake` as the idle time.
void installMascotDumpEncoder(std::function<std::string()> equippedId = {});

}  // namespace trotlet::mascot
