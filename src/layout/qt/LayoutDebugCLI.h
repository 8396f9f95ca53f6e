#pragma once

#include <optional>
#include <string>
#include <vector>

namespace trotlet::layout {

// Runs before the command line is parsed. Owns --dump-layout.
// Gives no status when the arguments are not its own; otherwise the process exits with it.
struct LayoutDebugCLI {
    static std::optional<int> run(const std::vector<std::string>& args);
};

}  // namespace trotlet::layout
