#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "updates/ReleaseNotes.h"
#include "updates/Version.h"

namespace trotlet::updates {

// What the settings remember between launches for What's new.
struct WhatsNewState {
    std::optional<std::string> lastLaunchedVersion;  // "release.lastLaunchedVersion"
    std::optional<std::string> pendingVersion;       // "release.whatsNewVersion"
    std::optional<std::int64_t> pendingSince;        // "release.whatsNewSince", Unix seconds
    // "release.whatsNewAfter": the version the user came from, so that notes still pending at
    // a later launch cover every release since then.
    std::optional<std::string> pendingAfter;

    friend bool operator==(const WhatsNewState&, const WhatsNewState&) = default;
};

// Pending notes are offered until dismissed or for this long after they were first offered.
inline constexpr std::int64_t whatsNewLifetime = 14 * 24 * 60 * 60;

// TROTLET_WHATS_NEW, for QA: "1" shows this version's notes at every launch, "0" never shows
// any, a version ("0.1.0") shows the notes since that version. The stored state moves on as
// in a normal launch in every case. Anything else, or unset, changes nothing.
struct WhatsNewOverride {
    enum class Kind { none, show, hide, since };
    Kind kind = Kind::none;
    std::optional<Version> since;

    static WhatsNewOverride parse(std::optional<std::string_view> variable);
};

enum class WhatsNewDecision {
    firstLaunch,  // nothing to compare with: no notes
    upgrade,      // newer than the last launch: its notes become pending
    upgradeWithoutNotes,
    stillPending,  // the same version, notes offered and not yet dismissed
    expired,       // pending for longer than the lifetime: dropped
    sameVersion,
    downgrade,  // older than the last launch: no notes, any pending ones dropped
};
std::string_view whatsNewDecisionName(WhatsNewDecision decision);

struct WhatsNewLaunch {
    WhatsNewState state;  // to store
    WhatsNewDecision decision = WhatsNewDecision::sameVersion;
    std::vector<ReleaseNote> notes;  // to offer now, newest first; empty offers nothing
};

// The decision at launch for this version at `now`.
WhatsNewLaunch whatsNewAtLaunch(const WhatsNewState& stored, const Version& current,
                                std::int64_t now, const std::vector<ReleaseNote>& bundled,
                                const WhatsNewOverride& override = {});

// The state once the user closed the notes: nothing pending.
WhatsNewState whatsNewDismissed(WhatsNewState state);

// Whether pending notes have outlived their offer at `now` (a clock set back keeps them).
bool whatsNewExpired(const WhatsNewState& state, std::int64_t now);

}  // namespace trotlet::updates
