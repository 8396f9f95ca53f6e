#include "shop/ClockGuard.h"

#include <algorithm>

#include "shop/JsonFields.h"

namespace trotlet::shop {

nlohmann::ordered_json ClockAnchor::toJson() const {
    nlohmann::ordered_json out = nlohmann::ordered_json::object();
    out["wall"] = formatIso8601(wall);
    out["monotonicNanos"] = monotonicNanos;
    out["bootSession"] = bootSession;
    return out;
}

std::optional<ClockAnchor> ClockAnchor::fromJson(const nlohmann::json& object) {
    const auto* wall = json::field(object, "wall");
    const auto* mono = json::field(object, "monotonicNanos");
    const auto* boot = json::field(object, "bootSession");
    if (!wall || !wall->is_string() || !mono || !mono->is_number_integer() || !boot || !boot->is_string())
        return std::nullopt;
    const auto t = parseIso8601(wall->get<std::string>());
    if (!t) return std::nullopt;
    return ClockAnchor{*t, mono->get<int64_t>(), boot->get<std::string>()};
}

nlohmann::ordered_json ClockStatus::toJson() const {
    nlohmann::ordered_json out = nlohmann::ordered_json::object();
    switch (kind) {
    case Kind::ok: out["ok"] = nlohmann::ordered_json::object(); break;
    case Kind::behind: out["behind"] = nlohmann::ordered_json::object(); break;
    case Kind::jumpedForward: {
        nlohmann::ordered_json payload = nlohmann::ordered_json::object();
        payload["startedAt"] = formatIso8601(startedAt);
        payload["endsAt"] = formatIso8601(endsAt);
        out["jumpedForward"] = std::move(payload);
        break;
    }
    }
    return out;
}

std::optional<Timestamp> ClockGuard::expected(const ClockReading& reading) const {
    if (!anchor || anchor->bootSession != reading.bootId || reading.monotonicNanos < anchor->monotonicNanos)
        return std::nullopt;
    return anchor->wall + static_cast<double>(reading.monotonicNanos - anchor->monotonicNanos) / 1e9;
}

ClockObservation ClockGuard::evaluate(const ClockReading& reading) const {
    if (lastSeen && reading.wall < *lastSeen - behindToleranceSeconds) return {ClockVerdict::behind, *lastSeen};
    if (const auto predicted = expected(reading); predicted && reading.wall > *predicted + forwardToleranceSeconds)
        return {ClockVerdict::ahead, *predicted + forwardToleranceSeconds};
    return {ClockVerdict::ok, reading.wall};
}

ClockObservation ClockGuard::observe(const ClockReading& reading, bool* statusChanged) {
    const ClockObservation seen = evaluate(reading);
    ClockStatus next = status;
    if (seen.verdict == ClockVerdict::behind) {
        next = ClockStatus{ClockStatus::Kind::behind};
    } else {
        lastSeen = lastSeen ? std::max(*lastSeen, seen.trusted) : seen.trusted;
        // The anchor keeps the real-time estimate, not the trusted time: anchoring the
        // 26-hour allowance would let every further observation add another 26 hours.
        const Timestamp anchorWall = seen.verdict == ClockVerdict::ahead ? seen.trusted - forwardToleranceSeconds
                                                                         : seen.trusted;
        anchor = ClockAnchor{anchorWall, reading.monotonicNanos, reading.bootId};
        if (seen.verdict == ClockVerdict::ahead) {
            if (status.kind != ClockStatus::Kind::jumpedForward)
                next = ClockStatus{ClockStatus::Kind::jumpedForward, seen.trusted, seen.trusted + forwardToleranceSeconds};
        } else {
            next = ClockStatus{};
        }
    }
    const bool changed = !(next == status);
    status = next;
    if (statusChanged) *statusChanged = changed;
    return seen;
}

}  // namespace trotlet::shop
