#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "updates/UpdatePolicy.h"

namespace trotlet::updates {

enum class UpdatePhase {
    idle,  // no check yet
    checking,
    upToDate,
    available,  // a newer release is announced
    downloading,
    installing,   // verifying and unpacking
    relaunching,  // installed; the new copy is starting
    checkFailed,  // no answer from the feeds
    refused,      // the download was refused; nothing changed
};
std::string_view updatePhaseName(UpdatePhase phase);

// Everything the panel needs to show about updates, as one value.
struct UpdateStatus {
    UpdatePhase phase = UpdatePhase::idle;
    InstallChannel channel = InstallChannel::unmanaged;
    std::optional<UpdateOffer> offer;
    std::string message;  // the last failure or refusal, for people
    double progress = 0;  // 0..1 while downloading
    bool usingFallbackFeed = false;
    std::optional<std::int64_t> lastChecked;  // Unix seconds
    bool bannerDismissed = false;  // "Later": no banner until the next check finds something
};

// The quiet banner at the top of the panel when a newer version is out.
struct UpdateBanner {
    enum class Action {
        none,
        install,      // "Install and relaunch": a user-local install replaces itself
        showCommand,  // a package install: the command to run
        openPage,     // any other copy: the release page
    };
    bool visible = false;
    std::string title;
    std::vector<std::string> notes;
    std::string detail;
    Action action = Action::none;
    std::string actionLabel;
    std::string command;  // showCommand
    std::string url;      // openPage
};
UpdateBanner updateBanner(const UpdateStatus& status);

// The line under "Check for updates" in Settings' About.
std::string updateStatusLine(const UpdateStatus& status);

}  // namespace trotlet::updates
