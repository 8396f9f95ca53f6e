#pragma once

#include <optional>
#include <string>

namespace trotlet::app {

// Whether the live app can reach a display before Qt tries (a Qt platform plugin that cannot
// connect aborts the process). Gives the one-line reason when it cannot.
std::optional<std::string> displayProblem();

}  // namespace trotlet::app
