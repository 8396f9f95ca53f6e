#pragma once

#include <string>
#include <vector>

namespace trotlet::app {

// Placeholder: the parsed command line. Replaced by the full parser.
struct LaunchOptions {
    static LaunchOptions parse(const std::vector<std::string>& args);
};

}  // namespace trotlet::app
