// Process entry: allocator switch, the harnesses that own their flags, then the app.
#include <string>
#include <vector>

#include "app/qt/Application.h"
#include "app/qt/SpaceEfficientMalloc.h"
#include "cli/LaunchOptions.h"
#include "layout/qt/LayoutDebugCLI.h"
#include "shop/qt/ShopDebugCLI.h"
#include "weather/qt/WeatherCLI.h"

int main(int argc, char** argv) {
    trotlet::app::SpaceEfficientMalloc::adopt(argv);

    const std::vector<std::string> args(argv, argv + argc);
    if (auto status = trotlet::shop::ShopDebugCLI::run(args)) return *status;
    if (auto status = trotlet::layout::LayoutDebugCLI::run(args)) return *status;
    if (auto status = trotlet::weather::WeatherCLI::run(args)) return *status;

    const trotlet::cli::LaunchOptions options = trotlet::cli::LaunchOptions::parse(args);
    return trotlet::app::runApplication(options, argc, argv);
}
