#include "alerts/qt/NotificationSimulation.h"

#include <cstdio>
#include <string>

#include "alerts/NotificationScript.h"

namespace trotlet::alerts {

int NotificationSimulation::run() {
    const ScriptReplay replay = NotificationScript::replay(
        NotificationScript::scenarios(), NotificationScript::preferences(), NotificationScript::startTime());
    const std::string text = replay.output.dump(2) + "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
    if (replay.failure) {
        std::fprintf(stderr, "trotlet: notification simulation failed: %s\n", replay.failure->c_str());
        return 1;
    }
    return 0;
}

}  // namespace trotlet::alerts
