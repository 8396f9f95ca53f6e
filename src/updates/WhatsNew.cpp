#include "updates/WhatsNew.h"

namespace trotlet::updates {

namespace {

std::optional<Version> parsed(const std::optional<std::string>& text) {
    return text ? Version::parse(*text) : std::nullopt;
}

}  // namespace

WhatsNewOverride WhatsNewOverride::parse(std::optional<std::string_view> variable) {
    WhatsNewOverride o;
    if (!variable) return o;
    if (*variable == "1") {
        o.kind = Kind::show;
    } else if (*variable == "0") {
        o.kind = Kind::hide;
    } else if (auto v = Version::parse(*variable); v && variable->find('.') != std::string::npos) {
        o.kind = Kind::since;
        o.since = v;
    }
    return o;
}

std::string_view whatsNewDecisionName(WhatsNewDecision decision) {
    switch (decision) {
        case WhatsNewDecision::firstLaunch:
            return "firstLaunch";
        case WhatsNewDecision::upgrade:
            return "upgrade";
        case WhatsNewDecision::upgradeWithoutNotes:
            return "upgradeWithoutNotes";
        case WhatsNewDecision::stillPending:
            return "stillPending";
        case WhatsNewDecision::expired:
            return "expired";
        case WhatsNewDecision::sameVersion:
            return "sameVersion";
        case WhatsNewDecision::downgrade:
            return "downgrade";
    }
    return "sameVersion";
}

WhatsNewState whatsNewDismissed(WhatsNewState state) {
    state.pendingVersion.reset();
    state.pendingSince.reset();
    state.pendingAfter.reset();
    return state;
}

bool whatsNewExpired(const WhatsNewState& state, std::int64_t now) {
    if (!state.pendingVersion) return false;
    if (!state.pendingSince) return true;  // no date to count from: do not offer forever
    return now >= *state.pendingSince && now - *state.pendingSince >= whatsNewLifetime;
}

WhatsNewLaunch whatsNewAtLaunch(const WhatsNewState& stored, const Version& current,
                                std::int64_t now, const std::vector<ReleaseNote>& bundled,
                                const WhatsNewOverride& override) {
    WhatsNewLaunch out;
    out.state = stored;
    out.state.lastLaunchedVersion = current.text();
    const auto last = parsed(stored.lastLaunchedVersion);
    const auto pending = parsed(stored.pendingVersion);

    if (!last) {
        out.decision = WhatsNewDecision::firstLaunch;
        out.state = whatsNewDismissed(out.state);
    } else if (*last > current) {
        out.decision = WhatsNewDecision::downgrade;
        out.state = whatsNewDismissed(out.state);
    } else if (*last < current) {
        // Notes still pending from an earlier upgrade stay included.
        std::optional<Version> after = last;
        if (auto earlier = parsed(stored.pendingAfter);
            pending && earlier && *earlier < *last && !whatsNewExpired(stored, now))
            after = earlier;
        out.notes = notesBetween(bundled, after, current);
        if (out.notes.empty()) {
            out.decision = WhatsNewDecision::upgradeWithoutNotes;
            out.state = whatsNewDismissed(out.state);
        } else {
            out.decision = WhatsNewDecision::upgrade;
            out.state.pendingVersion = current.text();
            out.state.pendingSince = now;
            out.state.pendingAfter = after->text();
        }
    } else if (pending && *pending == current) {
        if (whatsNewExpired(stored, now)) {
            out.decision = WhatsNewDecision::expired;
            out.state = whatsNewDismissed(out.state);
        } else {
            out.decision = WhatsNewDecision::stillPending;
            out.notes = notesBetween(bundled, parsed(stored.pendingAfter), current);
        }
    } else {
        out.decision = WhatsNewDecision::sameVersion;
        out.state = whatsNewDismissed(out.state);  // drops notes left for another version
    }

    switch (override.kind) {
        case WhatsNewOverride::Kind::none:
            break;
        case WhatsNewOverride::Kind::hide:
            out.notes.clear();
            break;
        case WhatsNewOverride::Kind::show:
            if (out.notes.empty()) {
                for (const auto& note : bundled)
                    if (auto v = Version::parse(note.version); v && *v == current)
                        out.notes.push_back(note);
            }
            break;
        case WhatsNewOverride::Kind::since:
            out.notes = notesBetween(bundled, override.since, current);
            break;
    }
    return out;
}

}  // namespace trotlet::updates
