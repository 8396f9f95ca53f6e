#pragma once

#include <string>

namespace trotlet::updates {

// Starts `program` as a new, detached copy of this app that waits for this process to end
// before it takes over the tray (TROTLET_RELAUNCH_AFTER carries our process id). True when
// it started.
bool relaunchDetached(const std::string& program);

// In a relaunched copy: waits up to `timeoutMs` for the process named by TROTLET_RELAUNCH_AFTER
// to end, then forgets the variable. Returns at once in any other start.
void waitForPreviousCopy(int timeoutMs = 20000);

// This process's program file (/proc/self/exe).
std::string runningProgram();

}  // namespace trotlet::updates
