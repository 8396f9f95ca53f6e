#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "updates/ReleaseFeed.h"
#include "updates/Version.h"

namespace trotlet::updates {

// How this copy got onto the computer, which decides how it is updated.
enum class InstallChannel {
    package,    // from the distribution's package: the package manager updates it
    userLocal,  // installed for this user: it replaces itself
    unmanaged,  // a build tree, an unpacked download, a folder of the user's choosing
};

// The newest release in the feed that is newer than `current`, if any; its download for
// `arch` when the feed has one.
struct UpdateOffer {
    FeedRelease release;
    std::optional<ReleaseDownload> download;
};
std::optional<UpdateOffer> newestOffer(const ReleaseFeed& feed, const BuildId& current,
                                       std::string_view arch);

// What a package user is told to run.
inline constexpr std::string_view packageUpdateCommand =
    "sudo apt update && sudo apt install --only-upgrade trotlet";

// Why a check did not produce an answer.
enum class CheckFailure { network, timeout, httpStatus, malformedFeed, insecureAddress };
std::string_view checkFailureName(CheckFailure failure);
std::string checkFailureText(CheckFailure failure, int httpStatus = 0);

// Why a downloaded update was not installed. Each leaves the installed copy as it was.
enum class UpdateRefusal {
    incompleteDownload,  // fewer bytes than the feed announced, or the transfer broke off
    wrongSize,           // more bytes than announced
    wrongHash,
    badSignature,
    downgrade,        // the archive holds a build that is not newer than this one
    unexpectedBuild,  // the archive holds another version than the feed announced
    unreadableArchive,
    doesNotRun,  // the new copy fails its dry run (a missing library, a bad binary)
    notInstalledForUser,
    noDownload,  // the feed has no archive for this machine
    cannotWrite,
};
std::string_view refusalName(UpdateRefusal refusal);
std::string refusalText(UpdateRefusal refusal, std::string_view detail = {});

// Automatic checks: at most one a day. Debug builds leave them off unless TROTLET_UPDATES=1;
// TROTLET_UPDATES=0 keeps them off in every build.
bool automaticChecksEnabled(bool debugBuild, std::optional<std::string_view> updatesVariable);

inline constexpr std::int64_t automaticCheckInterval = 24 * 60 * 60;
// The first automatic check waits this long after start, so a login is not slowed down.
inline constexpr std::int64_t automaticCheckStartDelay = 90;

// Seconds from `now` until the next automatic check, given when the last one ran. A last
// check in the future (a clock that was set back) counts as none.
std::int64_t secondsUntilAutomaticCheck(std::optional<std::int64_t> lastCheck, std::int64_t now);

}  // namespace trotlet::updates
