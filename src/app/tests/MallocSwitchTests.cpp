#include "app/MallocSwitch.h"

#include <gtest/gtest.h>

namespace trotlet::app {
namespace {

TEST(MallocSwitch, DecisionTable) {
    const std::string exe = "/usr/bin/trotlet";
    struct Case {
        const char* name;
        MallocSwitchInputs in;
        bool reexec;
        std::vector<EnvChange> before;
    };
    const std::vector<EnvChange> markersRemoved = {{"TROTLET_MALLOC_REEXEC", std::nullopt},
                                                   {"MallocSpaceEfficient", std::nullopt}};
    const std::vector<Case> cases = {
        {"re-executed process tidies its markers",
         {.reexecMarker = true, .mallocSpaceEfficient = true, .parentPid = 42, .executablePath = exe},
         false, markersRemoved},
        {"marker wins over the opt-out and parent 1",
         {.reexecMarker = true, .defaultMalloc = true, .parentPid = 1}, false, markersRemoved},
        {"switch set from outside is dropped, no exec",
         {.mallocSpaceEfficient = true, .parentPid = 42, .executablePath = exe}, false,
         {{"MallocSpaceEfficient", std::nullopt}}},
        {"started by the service manager", {.parentPid = 1, .executablePath = exe}, false, {}},
        {"opted out", {.defaultMalloc = true, .parentPid = 42, .executablePath = exe}, false, {}},
        {"no executable path", {.parentPid = 42}, false, {}},
        {"empty executable path", {.parentPid = 42, .executablePath = ""}, false, {}},
        {"ordinary start re-executes",
         {.parentPid = 42, .executablePath = exe}, true,
         {{"MallocSpaceEfficient", "1"},
          {"TROTLET_MALLOC_REEXEC", "1"},
          {"GLIBC_TUNABLES", "glibc.malloc.arena_max=2:glibc.malloc.trim_threshold=131072"}}},
    };
    for (const auto& c : cases) {
        const MallocSwitchPlan plan = planMallocSwitch(c.in);
        EXPECT_EQ(plan.reexec, c.reexec) << c.name;
        EXPECT_EQ(plan.before, c.before) << c.name;
        if (plan.reexec) {
            EXPECT_EQ(plan.executable, exe) << c.name;
        } else {
            EXPECT_TRUE(plan.onFailure.empty()) << c.name;
        }
    }
}

TEST(MallocSwitch, FailedExecRestoresTheEnvironment) {
    for (std::optional<std::string> user : {std::optional<std::string>{}, std::optional<std::string>{"glibc.rtld.x=1"}}) {
        const auto plan = planMallocSwitch({.userTunables = user, .parentPid = 7, .executablePath = "/x"});
        ASSERT_TRUE(plan.reexec);
        const std::vector<EnvChange> restore = {{"MallocSpaceEfficient", std::nullopt},
                                                {"TROTLET_MALLOC_REEXEC", std::nullopt},
                                                {"GLIBC_TUNABLES", user}};
        EXPECT_EQ(plan.onFailure, restore);
    }
}

TEST(MallocSwitch, TunablesMergeWithTheUsersOwn) {
    struct Case {
        std::optional<std::string> user;
        std::string merged;
    };
    const std::vector<Case> cases = {
        {std::nullopt, "glibc.malloc.arena_max=2:glibc.malloc.trim_threshold=131072"},
        {"", "glibc.malloc.arena_max=2:glibc.malloc.trim_threshold=131072"},
        {"glibc.malloc.tcache_count=0",
         "glibc.malloc.arena_max=2:glibc.malloc.trim_threshold=131072:glibc.malloc.tcache_count=0"},
        {"glibc.malloc.arena_max=8",
         "glibc.malloc.trim_threshold=131072:glibc.malloc.arena_max=8"},
        {"glibc.malloc.trim_threshold=0:glibc.malloc.arena_max=1",
         "glibc.malloc.trim_threshold=0:glibc.malloc.arena_max=1"},
        {"::glibc.rtld.optional_static_tls=512:",
         "glibc.malloc.arena_max=2:glibc.malloc.trim_threshold=131072:glibc.rtld.optional_static_tls=512"},
        // A user's name without a value still names the tunable, so ours steps aside.
        {"glibc.malloc.arena_max", "glibc.malloc.trim_threshold=131072:glibc.malloc.arena_max"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(mergedMallocTunables(c.user), c.merged) << c.user.value_or("<unset>");
}

}  // namespace
}  // namespace trotlet::app
