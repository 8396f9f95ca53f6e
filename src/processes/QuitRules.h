#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "metrics/MetricsSnapshot.h"

namespace trotlet::processes {

// Why a process offers no Quit.
enum class QuitBlock {
    none,
    thisApp,           // quitting the monitor from its own list would close the list
    ownedByRoot,       // privileged: system services run as root
    ownedByOtherUser,  // not the user's to signal
    neededBySession,   // its loss would end the desktop session or take the tray with it
};

struct QuitContext {
    std::int32_t selfPid = 0;
    // Processes found to serve the session at run time: the owners of the session bus's
    // well-known names for the bus itself, the session manager and the tray host.
    std::vector<std::int32_t> sessionPids;
};

QuitBlock quitBlock(const metrics::ProcessRow& row, const QuitContext& context);

// "Owned by root", "Owned by another user", "Needed by your session"; empty for none.
std::string_view quitBlockText(QuitBlock block);

// Programs whose loss would end the session or break the desktop: display servers and
// compositors, session managers, the session bus, the user's service manager and the hosts of
// the tray (which this app lives in).
bool isSessionProgram(std::string_view name);

}  // namespace trotlet::processes
