#include "updates/qt/InstallOfferStore.h"

#include "settings/SettingsKeys.h"
#include "updates/UpdatePolicy.h"

namespace trotlet::updates {

InstallChannel channelFor(const InstallDecision& decision) {
    switch (decision.rule) {
        case InstallRule::package:
            return InstallChannel::package;
        case InstallRule::installFolder:
            return InstallChannel::userLocal;
        default:
            return InstallChannel::unmanaged;
    }
}

InstallOfferStore::InstallOfferStore(settings::DefaultsStore& store, std::string runningProgram,
                                     platform::InstallPlaces places,
                                     std::function<bool(const std::string&)> relaunch,
                                     QObject* parent)
    : QObject(parent),
      store_(store),
      program_(std::move(runningProgram)),
      places_(std::move(places)),
      relaunch_(std::move(relaunch)) {
    decision_ =
        decideInstall(platform::gatherInstallFacts(program_, places_), places_.installFolder);
    const std::string declined = store_.string(settings::keys::installOfferDeclined, "");
    offered_ = decision_.shouldOffer && declined != platform::resolvedPath(program_);
}

bool InstallOfferStore::install() {
    const UserInstallResult result = installForUser(program_, places_.installFolder, places_);
    if (!result.ok) {
        problem_ = result.error;
        emit changed();
        return false;
    }
    offered_ = false;
    problem_.clear();
    emit changed();
    if (relaunch_ && relaunch_(result.program)) emit relaunched();
    return true;
}

void InstallOfferStore::decline() {
    store_.set(settings::SettingValue(platform::resolvedPath(program_)),
               settings::keys::installOfferDeclined);
    offered_ = false;
    emit changed();
}

}  // namespace trotlet::updates
