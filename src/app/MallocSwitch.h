#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace trotlet::app {

// The allocator switch's decision, as a pure function of what the process finds at start.
//
// A long-running tray app should give memory back and not grow one malloc arena per thread.
// The switch re-executes the program once with allocator settings in its environment: on
// Linux the glibc tunables below (merged with any the user set; the user's own value for a
// tunable wins), plus the `MallocSpaceEfficient` switch for allocators that read it.
// `TROTLET_MALLOC_REEXEC` marks the re-executed process so that it never loops.
struct MallocSwitchInputs {
    bool reexecMarker = false;          // TROTLET_MALLOC_REEXEC present
    bool mallocSpaceEfficient = false;  // MallocSpaceEfficient present
    bool defaultMalloc = false;         // TROTLET_DEFAULT_MALLOC present: the user opted out
    std::optional<std::string> userTunables;  // GLIBC_TUNABLES as found
    long parentPid = 0;
    std::optional<std::string> executablePath;  // none when it cannot be found
};

// One change to the environment: a value to set, or none to remove the variable.
using EnvChange = std::pair<std::string, std::optional<std::string>>;

struct MallocSwitchPlan {
    std::vector<EnvChange> before;     // applied first, whatever happens next
    bool reexec = false;               // then replace the process image with `executable`
    std::string executable;
    std::vector<EnvChange> onFailure;  // applied when the exec fails; then go on
};

inline constexpr const char* mallocReexecVariable = "TROTLET_MALLOC_REEXEC";
inline constexpr const char* mallocSpaceEfficientVariable = "MallocSpaceEfficient";
inline constexpr const char* defaultMallocVariable = "TROTLET_DEFAULT_MALLOC";
inline constexpr const char* glibcTunablesVariable = "GLIBC_TUNABLES";
// Two arenas are plenty for the app's few threads; trimming above 128 KiB hands freed
// memory back to the system soon after a burst.
inline constexpr const char* appMallocTunables =
    "glibc.malloc.arena_max=2:glibc.malloc.trim_threshold=131072";

MallocSwitchPlan planMallocSwitch(const MallocSwitchInputs& inputs);

// The app's tunables that the user did not set, followed by the user's, in the
// "name=value:name=value" form glibc reads.
std::string mergedMallocTunables(const std::optional<std::string>& userTunables);

}  // namespace trotlet::app
