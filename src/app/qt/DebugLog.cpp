#include "app/qt/DebugLog.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace trotlet::app {

bool debugLogEnabled() {
    static const bool enabled = [] {
        const char* value = std::getenv("TROTLET_DEBUG_LOG");
        return value && std::strcmp(value, "1") == 0;
    }();
    return enabled;
}

void debugLog(std::string_view line) {
    if (!debugLogEnabled()) return;
    std::fprintf(stderr, "trotlet: %.*s\n", static_cast<int>(line.size()), line.data());
    std::fflush(stderr);
}

}  // namespace trotlet::app
