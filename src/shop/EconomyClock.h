#pragma once

#include "shop/ClockGuard.h"

namespace trotlet::shop {

// Where the engine reads the time. The app reads the system's clocks; tests and the
// simulator step a ManualClock and can set its wall clock wrong on purpose.
class EconomyClock {
public:
    virtual ~EconomyClock() = default;
    virtual ClockReading read() const = 0;
};

class ManualClock final : public EconomyClock {
public:
    explicit ManualClock(Timestamp wall, std::string bootId = "boot-1") : reading_{wall, 0, std::move(bootId)} {}
    ClockReading read() const override { return reading_; }

    // Real time passes: both clocks move. Real time never runs backwards.
    void advance(double seconds) {
        if (!(seconds > 0)) return;
        reading_.wall += seconds;
        reading_.monotonicNanos += static_cast<int64_t>(seconds * 1e9);
    }
    // The user sets the wall clock; real (monotonic) time doesn't move.
    void setWall(Timestamp wall) { reading_.wall = wall; }
    void shiftWall(double seconds) { reading_.wall += seconds; }
    void reboot(std::string bootId) {
        reading_.bootId = std::move(bootId);
        reading_.monotonicNanos = 0;
    }
    Timestamp wall() const { return reading_.wall; }

private:
    ClockReading reading_;
};

}  // namespace trotlet::shop
