#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "shop/Timestamp.h"

namespace trotlet::shop {

// One look at the machine's clocks: the wall clock, a monotonic clock that keeps running
// through suspend (CLOCK_BOOTTIME on Linux) and the identifier of the current boot.
struct ClockReading {
    Timestamp wall = 0;
    int64_t monotonicNanos = 0;
    std::string bootId;
};

struct ClockAnchor {
    Timestamp wall = 0;
    int64_t monotonicNanos = 0;
    std::string bootSession;

    nlohmann::ordered_json toJson() const;
    static std::optional<ClockAnchor> fromJson(const nlohmann::json& json);
    friend bool operator==(const ClockAnchor&, const ClockAnchor&) = default;
};

struct ClockStatus {
    enum class Kind { ok, behind, jumpedForward };
    Kind kind = Kind::ok;
    // For jumpedForward: when the jump was first seen (trusted time) and the end of the
    // 26 hours the economy let the clock run ahead. The status stays until an observation
    // finds the clock right again (or behind).
    Timestamp startedAt = 0;
    Timestamp endsAt = 0;

    nlohmann::ordered_json toJson() const;
    friend bool operator==(const ClockStatus&, const ClockStatus&) = default;
};

enum class ClockVerdict { ok, behind, ahead };

struct ClockObservation {
    ClockVerdict verdict = ClockVerdict::ok;
    Timestamp trusted = 0;  // for behind: the latest time already seen
};

// Decides which time the economy may trust. Moving the clock back pays nothing until real
// time has caught up; moving it forward gains at most 26 hours over real elapsed time.
class ClockGuard {
public:
    static constexpr double behindToleranceSeconds = 60;
    static constexpr double forwardToleranceSeconds = 26 * 3600;

    std::optional<Timestamp> lastSeen;
    std::optional<ClockAnchor> anchor;
    ClockStatus status;

    // The verdict for a reading without remembering anything.
    ClockObservation evaluate(const ClockReading& reading) const;
    // Evaluates and remembers. Returns the observation and whether `status` changed.
    ClockObservation observe(const ClockReading& reading, bool* statusChanged = nullptr);

private:
    // The wall time that real elapsed time since the anchor predicts, when it can be known.
    std::optional<Timestamp> expected(const ClockReading& reading) const;
};

}  // namespace trotlet::shop
