#include "updates/UpdatePolicy.h"

#include <algorithm>

namespace trotlet::updates {

std::optional<UpdateOffer> newestOffer(const ReleaseFeed& feed, const BuildId& current,
                                       std::string_view arch) {
    const FeedRelease* best = nullptr;
    for (const auto& release : feed.releases)
        if (release.id > current && (!best || release.id > best->id)) best = &release;
    if (!best) return std::nullopt;
    UpdateOffer offer{*best, std::nullopt};
    if (const ReleaseDownload* d = best->downloadFor(arch)) offer.download = *d;
    return offer;
}

std::string_view checkFailureName(CheckFailure failure) {
    switch (failure) {
        case CheckFailure::network:
            return "network";
        case CheckFailure::timeout:
            return "timeout";
        case CheckFailure::httpStatus:
            return "httpStatus";
        case CheckFailure::malformedFeed:
            return "malformedFeed";
        case CheckFailure::insecureAddress:
            return "insecureAddress";
    }
    return "network";
}

std::string checkFailureText(CheckFailure failure, int httpStatus) {
    switch (failure) {
        case CheckFailure::network:
            return "Could not reach the update server.";
        case CheckFailure::timeout:
            return "The update server did not answer in time.";
        case CheckFailure::httpStatus:
            return "The update server answered with an error (HTTP " + std::to_string(httpStatus) +
                   ").";
        case CheckFailure::malformedFeed:
            return "The update server's answer could not be read.";
        case CheckFailure::insecureAddress:
            return "The update address is not an HTTPS address.";
    }
    return {};
}

std::string_view refusalName(UpdateRefusal refusal) {
    switch (refusal) {
        case UpdateRefusal::incompleteDownload:
            return "incompleteDownload";
        case UpdateRefusal::wrongSize:
            return "wrongSize";
        case UpdateRefusal::wrongHash:
            return "wrongHash";
        case UpdateRefusal::badSignature:
            return "badSignature";
        case UpdateRefusal::downgrade:
            return "downgrade";
        case UpdateRefusal::unexpectedBuild:
            return "unexpectedBuild";
        case UpdateRefusal::unreadableArchive:
            return "unreadableArchive";
        case UpdateRefusal::doesNotRun:
            return "doesNotRun";
        case UpdateRefusal::notInstalledForUser:
            return "notInstalledForUser";
        case UpdateRefusal::noDownload:
            return "noDownload";
        case UpdateRefusal::cannotWrite:
            return "cannotWrite";
    }
    return "cannotWrite";
}

std::string refusalText(UpdateRefusal refusal, std::string_view detail) {
    std::string text;
    switch (refusal) {
        case UpdateRefusal::incompleteDownload:
            text = "The download was cut short, so it was not installed.";
            break;
        case UpdateRefusal::wrongSize:
            text = "The download is larger than announced, so it was not installed.";
            break;
        case UpdateRefusal::wrongHash:
            text = "The download does not match its checksum, so it was not installed.";
            break;
        case UpdateRefusal::badSignature:
            text = "The download is not signed by Trotlet's release key, so it was not installed.";
            break;
        case UpdateRefusal::downgrade:
            text = "The download is not newer than this version, so it was not installed.";
            break;
        case UpdateRefusal::unexpectedBuild:
            text = "The download holds another version than announced, so it was not installed.";
            break;
        case UpdateRefusal::unreadableArchive:
            text = "The download could not be unpacked, so it was not installed.";
            break;
        case UpdateRefusal::doesNotRun:
            text = "The new version does not start on this computer, so it was not installed.";
            break;
        case UpdateRefusal::notInstalledForUser:
            text = "This copy was not installed for this user, so it cannot replace itself.";
            break;
        case UpdateRefusal::noDownload:
            text = "There is no download of the new version for this computer.";
            break;
        case UpdateRefusal::cannotWrite:
            text = "The new version could not be written next to this one.";
            break;
    }
    if (!detail.empty()) text += " (" + std::string(detail) + ")";
    return text;
}

bool automaticChecksEnabled(bool debugBuild, std::optional<std::string_view> variable) {
    if (variable == "0") return false;
    if (variable == "1") return true;
    return !debugBuild;
}

std::int64_t secondsUntilAutomaticCheck(std::optional<std::int64_t> lastCheck, std::int64_t now) {
    if (!lastCheck || *lastCheck > now) return automaticCheckStartDelay;
    return std::max(automaticCheckStartDelay, *lastCheck + automaticCheckInterval - now);
}

}  // namespace trotlet::updates
