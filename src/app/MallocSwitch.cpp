#include "app/MallocSwitch.h"

#include <set>
#include <string_view>

namespace trotlet::app {

namespace {

std::vector<std::string> splitTunables(std::string_view text) {
    std::vector<std::string> entries;
    size_t start = 0;
    while (start <= text.size()) {
        size_t colon = text.find(':', start);
        if (colon == std::string_view::npos) colon = text.size();
        if (colon > start) entries.emplace_back(text.substr(start, colon - start));
        start = colon + 1;
    }
    return entries;
}

std::string tunableName(const std::string& entry) { return entry.substr(0, entry.find('=')); }

}  // namespace

std::string mergedMallocTunables(const std::optional<std::string>& userTunables) {
    const auto user = splitTunables(userTunables.value_or(""));
    std::set<std::string> userNames;
    for (const auto& entry : user) userNames.insert(tunableName(entry));

    std::string merged;
    auto append = [&](const std::string& entry) {
        if (!merged.empty()) merged += ':';
        merged += entry;
    };
    for (const auto& entry : splitTunables(appMallocTunables))
        if (!userNames.count(tunableName(entry))) append(entry);
    for (const auto& entry : user) append(entry);
    return merged;
}

MallocSwitchPlan planMallocSwitch(const MallocSwitchInputs& in) {
    MallocSwitchPlan plan;
    if (in.reexecMarker) {
        // This is the re-executed process: the allocator is set up, so tidy the markers away.
        plan.before = {{mallocReexecVariable, std::nullopt},
                       {mallocSpaceEfficientVariable, std::nullopt}};
        return plan;
    }
    if (in.mallocSpaceEfficient) {
        // Set from outside: honour it here but keep it from child processes.
        plan.before = {{mallocSpaceEfficientVariable, std::nullopt}};
        return plan;
    }
    // Started by the system's service manager, opted out, or nowhere to exec from.
    if (in.parentPid == 1 || in.defaultMalloc || !in.executablePath || in.executablePath->empty())
        return plan;

    plan.before = {{mallocSpaceEfficientVariable, "1"},
                   {mallocReexecVariable, "1"},
                   {glibcTunablesVariable, mergedMallocTunables(in.userTunables)}};
    plan.reexec = true;
    plan.executable = *in.executablePath;
    plan.onFailure = {{mallocSpaceEfficientVariable, std::nullopt},
                      {mallocReexecVariable, std::nullopt},
                      {glibcTunablesVariable, in.userTunables}};
    return plan;
}

}  // namespace trotlet::app
