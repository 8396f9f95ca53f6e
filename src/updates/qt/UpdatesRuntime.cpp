#include "updates/qt/UpdatesRuntime.h"

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

#include <QDateTime>

#include "BuildInfo.h"
#include "platform/linux/InstallPlaces.h"
#include "updates/ReleaseNotes.h"
#include "updates/qt/DownloadCrypto.h"
#include "updates/qt/InstallOfferStore.h"
#include "updates/qt/Relaunch.h"
#include "updates/qt/UpdateInstaller.h"
#include "updates/qt/UpdateStore.h"
#include "updates/qt/WhatsNewStore.h"

namespace trotlet::updates {

namespace {

std::optional<std::string_view> variable(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::optional<std::string_view>(value) : std::nullopt;
}

#ifdef NDEBUG
constexpr bool debugBuild = false;
#else
constexpr bool debugBuild = true;
#endif

}  // namespace

UpdatesRuntime::UpdatesRuntime(const cli::LaunchOptions& options, settings::DefaultsStore& store,
                               std::function<void(const std::string&)> log, QObject* parent)
    : QObject(parent) {
    const std::string program = runningProgram();
    if (UpdateInstaller::finishPendingUpdate(program))
        log("update: the new copy started; the previous one is gone");

    const BuildId current{*Version::parse(build::version), std::stoll(build::buildNumber)};
    const std::int64_t now = QDateTime::currentSecsSinceEpoch();
    whatsNew_ =
        std::make_unique<WhatsNewStore>(store, current.version, now, bundledReleaseNotes(),
                                        WhatsNewOverride::parse(variable("TROTLET_WHATS_NEW")));
    log("what's new: " + std::string(whatsNewDecisionName(whatsNew_->decision())) + ", " +
        std::to_string(whatsNew_->notes().size()) + " note(s) offered");

    const platform::InstallPlaces places = platform::InstallPlaces::forCurrentUser();
    installOffer_ = std::make_unique<InstallOfferStore>(store, program, places, relaunchDetached);
    const InstallDecision& decision = installOffer_->decision();
    log("install for this user: " + std::string(installRuleName(decision.rule)) +
        (installOffer_->isOffered() ? ", offered" : ", not offered") + " (" + decision.reason +
        ")");

    UpdateStore::Config config;
    config.current = current;
    config.arch = machineArch();
    config.channel = channelFor(decision);
    config.installFolder = places.installFolder;
    config.publicKey = std::string(crypto::releasePublicKey);
    config.relaunch = relaunchDetached;
    updates_ = std::make_unique<UpdateStore>(store, std::move(config));

    connect(updates_.get(), &UpdateStore::relaunched, this, &UpdatesRuntime::relaunched);
    connect(installOffer_.get(), &InstallOfferStore::relaunched, this, &UpdatesRuntime::relaunched);

    if (automaticChecksEnabled(debugBuild, variable("TROTLET_UPDATES")))
        updates_->startAutomaticChecks();
    if (options.checkUpdates || options.updateNow) {
        // Asked for on the command line: the outcome goes to stderr as well as to the panel.
        connect(updates_.get(), &UpdateStore::changed, this, [this] {
            const UpdatePhase phase = updates_->status().phase;
            if (phase == UpdatePhase::checking || phase == UpdatePhase::downloading ||
                phase == lastPrinted_)
                return;
            lastPrinted_ = phase;
            std::string line = updates_->statusLine();
            if (phase == UpdatePhase::available &&
                updates_->status().channel == InstallChannel::package)
                line += " Update with: " + std::string(packageUpdateCommand);
            if (!line.empty()) std::fprintf(stderr, "trotlet: update check: %s\n", line.c_str());
        });
        if (options.updateNow)
            updates_->checkAndInstall();
        else
            updates_->checkNow();
    }
}

UpdatesRuntime::~UpdatesRuntime() = default;

}  // namespace trotlet::updates
