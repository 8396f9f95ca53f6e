#include "app/LaunchOptions.h"

namespace trotlet::app {

LaunchOptions LaunchOptions::parse(const std::vector<std::string>&) { return {}; }

}  // namespace trotlet::app
