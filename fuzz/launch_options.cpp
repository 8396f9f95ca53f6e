// The command line: the launch options, the shop harness's own flags and the settings preset
// pairs (`-monitoring.updateInterval 0.5`) that an in-memory session reads. One argument a line.

#include "cli/LaunchOptions.h"
#include "settings/AppSettings.h"
#include "shop/ShopDebugOptions.h"

#include "Consumers.h"
#include "FuzzSupport.h"

using namespace trotlet;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 4096) return 0;
    std::vector<std::string> args{"trotlet"};
    for (auto piece : fuzz::split(fuzz::bytes(data, size), '\n', 64)) args.emplace_back(piece);

    const auto parsed = cli::LaunchOptions::parseArguments(args);
    if (const auto* options = std::get_if<cli::LaunchOptions>(&parsed)) {
        using Mode = cli::LaunchOptions::Mode;
        FUZZ_CHECK(options->benchIterations > 0);
        if (options->idleSeconds)
            FUZZ_CHECK(std::isfinite(*options->idleSeconds) && *options->idleSeconds >= 0);
        if (!options->onlyPrefixes.empty())
            FUZZ_CHECK(options->mode == Mode::snapshot || options->mode == Mode::listScenes);
        if (options->mode == Mode::moveCheck) FUZZ_CHECK(!options->moveCheckPaths.empty());
    } else if (const auto* failure = std::get_if<cli::LaunchFailure>(&parsed)) {
        FUZZ_CHECK(!failure->message.empty());
        FUZZ_CHECK(cli::LaunchOptions::failureText(failure->message).rfind("trotlet: ", 0) == 0);
    }

    const auto shop = shop::ShopDebugOptions::parse(args);
    if (const auto* options = std::get_if<shop::ShopDebugOptions>(&shop))
        if (options->grantFish) FUZZ_CHECK(*options->grantFish != 0);

    const auto domain = settings::DefaultsStore::argumentDomain(args);
    for (const auto& [key, value] : domain) {
        FUZZ_CHECK(key.find('.') != std::string::npos);
        if (value.is_number_float()) FUZZ_CHECK(std::isfinite(value.get<double>()));
    }
    settings::AppSettings appSettings(settings::DefaultsStore::ephemeral(args), false);
    fuzz::consumeSettings(appSettings);
    return 0;
}
