#include "updates/qt/UserInstallCLI.h"

#include <cstdio>

#include <nlohmann/json.hpp>

#include "platform/linux/InstallPlaces.h"
#include "updates/InstallDecision.h"
#include "updates/qt/UserInstall.h"

namespace trotlet::updates {

namespace {

using Json = nlohmann::ordered_json;

void print(const Json& document) {
    const std::string text = document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

Json verdictJson(const RunVerdict& v) {
    Json j;
    j["program"] = v.program;
    j["willRun"] = v.willRun;
    j["exists"] = v.exists;
    j["executable"] = v.executable;
    j["noexecMount"] = v.noexecMount;
    j["mountPoint"] = v.mountPoint;
    j["missingLibraries"] = v.selfCheck.missingLibraries;
    Json dry;
    dry["ran"] = v.selfCheck.started;
    dry["exitCode"] = v.selfCheck.exitCode;
    dry["build"] = v.selfCheck.build ? Json(v.selfCheck.build->version.text() + " (" +
                                            std::to_string(v.selfCheck.build->build) + ")")
                                     : Json(nullptr);
    j["dryRun"] = dry;
    j["reason"] = v.reason;
    return j;
}

std::string programAt(const std::string& path) {
    const std::string resolved = platform::resolvedPath(path);
    const auto facts =
        platform::gatherInstallFacts(path, platform::InstallPlaces::forCurrentUser());
    return facts.program.empty() ? resolved : facts.program;
}

}  // namespace

int runUserInstallCLI(const cli::LaunchOptions& options) {
    const platform::InstallPlaces places = platform::InstallPlaces::forCurrentUser();
    if (options.mode == cli::LaunchOptions::Mode::moveCheck) {
        Json results = Json::array();
        for (const auto& path : options.moveCheckPaths) {
            const InstallDecision d =
                decideInstall(platform::gatherInstallFacts(path, places), places.installFolder);
            Json j;
            j["path"] = path;
            j["applicable"] = d.applicable;
            j["shouldOffer"] = d.shouldOffer;
            j["reason"] = d.reason;
            j["rule"] = std::string(installRuleName(d.rule));
            j["target"] = d.applicable ? Json(d.target) : Json(nullptr);
            results.push_back(j);
        }
        print(results);
        return 0;
    }

    Json result;
    result["app"] = options.moveCopyApp;
    result["destination"] = options.moveCopyFolder;
    const UserInstallResult install =
        installForUser(options.moveCopyApp, options.moveCopyFolder, places);
    result["copied"] = install.ok;
    result["error"] = install.ok ? Json(nullptr) : Json(install.error);
    result["launcher"] = install.launcher.empty() ? Json(nullptr) : Json(install.launcher);
    result["icon"] = install.icon.empty() ? Json(nullptr) : Json(install.icon);
    result["source"] = verdictJson(checkWillRun(programAt(options.moveCopyApp), places));
    result["copy"] =
        install.ok ? verdictJson(checkWillRun(install.program, places)) : Json(nullptr);
    print(result);
    return install.ok ? 0 : 1;
}

}  // namespace trotlet::updates
