#include "layout/qt/LayoutDebugCLI.h"

#include <cstdio>

#include "layout/LayoutSelfCheck.h"

namespace trotlet::layout {

// The layout harness needs nothing from Qt: every check runs on the pure layout code and an
// in-memory settings session, so it never touches the user's settings.
std::optional<int> LayoutDebugCLI::run(const std::vector<std::string>& args) {
    bool ours = false;
    for (size_t i = 1; i < args.size(); ++i)
        if (args[i] == "--dump-layout") ours = true;
    if (!ours) return std::nullopt;

    const auto report = LayoutSelfCheck::run({});
    const std::string text = report.json.dump(2) + "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
    for (const auto& failure : report.failures)
        std::fprintf(stderr, "trotlet: --dump-layout: %s\n", failure.c_str());
    return report.ok() ? 0 : 1;
}

}  // namespace trotlet::layout
