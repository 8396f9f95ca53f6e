// The process side of the command line: printing the help or the error and exiting.
#include <cstdio>
#include <cstdlib>
#include <variant>

#include "cli/LaunchOptions.h"

namespace trotlet::cli {

LaunchOptions LaunchOptions::parse(const std::vector<std::string>& args) {
    LaunchParse outcome = parseArguments(args);
    if (std::holds_alternative<HelpRequested>(outcome)) {
        const std::string text = usage() + "\n";
        std::fwrite(text.data(), 1, text.size(), stdout);
        std::fflush(stdout);
        std::exit(0);
    }
    if (auto* failure = std::get_if<LaunchFailure>(&outcome)) fail(failure->message);
    return std::get<LaunchOptions>(std::move(outcome));
}

void LaunchOptions::fail(const std::string& message) {
    const std::string text = failureText(message);
    std::fflush(stdout);
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);
    std::exit(2);
}

}  // namespace trotlet::cli
