#include "app/qt/SpaceEfficientMalloc.h"

#include <unistd.h>

#include <cstdlib>
#include <string>

#include "app/MallocSwitch.h"

namespace trotlet::app {

namespace {

bool isSet(const char* name) { return std::getenv(name) != nullptr; }

std::optional<std::string> ownExecutable() {
    char path[4096];
    const ssize_t length = ::readlink("/proc/self/exe", path, sizeof path - 1);
    if (length <= 0) return std::nullopt;
    std::string text(path, static_cast<size_t>(length));
    // A binary replaced or removed since start (a rebuild, an upgrade) cannot be exec'd.
    static constexpr std::string_view deleted = " (deleted)";
    if (text.size() > deleted.size() && text.compare(text.size() - deleted.size(), deleted.size(), deleted) == 0)
        return std::nullopt;
    return text;
}

void apply(const std::vector<EnvChange>& changes) {
    for (const auto& [name, value] : changes) {
        if (value)
            ::setenv(name.c_str(), value->c_str(), 1);
        else
            ::unsetenv(name.c_str());
    }
}

}  // namespace

void SpaceEfficientMalloc::adopt(char** argv) {
    MallocSwitchInputs inputs;
    inputs.reexecMarker = isSet(mallocReexecVariable);
    inputs.mallocSpaceEfficient = isSet(mallocSpaceEfficientVariable);
    inputs.defaultMalloc = isSet(defaultMallocVariable);
    if (const char* tunables = std::getenv(glibcTunablesVariable)) inputs.userTunables = tunables;
    inputs.parentPid = static_cast<long>(::getppid());
    // Only worth finding when the earlier rules have not decided already.
    if (!inputs.reexecMarker && !inputs.mallocSpaceEfficient) inputs.executablePath = ownExecutable();

    const MallocSwitchPlan plan = planMallocSwitch(inputs);
    apply(plan.before);
    if (!plan.reexec || !argv) return;
    ::execv(plan.executable.c_str(), argv);
    apply(plan.onFailure);
}

}  // namespace trotlet::app
