#include "updates/UpdateStatus.h"

#include <cmath>

namespace trotlet::updates {

std::string_view updatePhaseName(UpdatePhase phase) {
    switch (phase) {
        case UpdatePhase::idle:
            return "idle";
        case UpdatePhase::checking:
            return "checking";
        case UpdatePhase::upToDate:
            return "upToDate";
        case UpdatePhase::available:
            return "available";
        case UpdatePhase::downloading:
            return "downloading";
        case UpdatePhase::installing:
            return "installing";
        case UpdatePhase::relaunching:
            return "relaunching";
        case UpdatePhase::checkFailed:
            return "checkFailed";
        case UpdatePhase::refused:
            return "refused";
    }
    return "idle";
}

UpdateBanner updateBanner(const UpdateStatus& s) {
    UpdateBanner b;
    if (!s.offer || s.bannerDismissed) return b;
    const std::string version = s.offer->release.version;
    b.notes = s.offer->release.notes;
    switch (s.phase) {
        case UpdatePhase::available:
            b.visible = true;
            b.title = "Trotlet " + version + " is available";
            if (s.channel == InstallChannel::package) {
                b.action = UpdateBanner::Action::showCommand;
                b.detail = "Update it with the package manager:";
                b.command = std::string(packageUpdateCommand);
                b.actionLabel = "Copy command";
            } else if (s.channel == InstallChannel::userLocal && s.offer->download) {
                b.action = UpdateBanner::Action::install;
                b.actionLabel = "Install and relaunch";
            } else if (!s.offer->release.page.empty()) {
                b.action = UpdateBanner::Action::openPage;
                b.detail = "Download it from the release page.";
                b.url = s.offer->release.page;
                b.actionLabel = "Open release page";
            }
            break;
        case UpdatePhase::downloading:
            b.visible = true;
            b.title = "Downloading Trotlet " + version + "… " +
                      std::to_string(static_cast<int>(std::floor(s.progress * 100))) + "%";
            break;
        case UpdatePhase::installing:
            b.visible = true;
            b.title = "Installing Trotlet " + version + "…";
            break;
        case UpdatePhase::relaunching:
            b.visible = true;
            b.title = "Starting Trotlet " + version + "…";
            break;
        case UpdatePhase::refused:
            b.visible = true;
            b.title = "Trotlet " + version + " was not installed";
            b.detail = s.message;
            break;
        default:
            break;
    }
    return b;
}

std::string updateStatusLine(const UpdateStatus& s) {
    switch (s.phase) {
        case UpdatePhase::idle:
            return "";
        case UpdatePhase::checking:
            return "Checking for updates…";
        case UpdatePhase::upToDate:
            return "Trotlet is up to date.";
        case UpdatePhase::checkFailed:
        case UpdatePhase::refused:
            return s.message;
        case UpdatePhase::installing:
            return s.offer ? "Installing Trotlet " + s.offer->release.version + "…" : "";
        case UpdatePhase::relaunching:
            return s.offer ? "Trotlet " + s.offer->release.version + " is installed; starting it."
                           : "";
        default:
            return s.offer ? "Trotlet " + s.offer->release.version + " is available." : "";
    }
}

}  // namespace trotlet::updates
