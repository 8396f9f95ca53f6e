#pragma once

#include <string>

#include "shop/Calendar.h"
#include "shop/EconomyClock.h"

namespace trotlet::shop {

// The machine's clocks for the economy: the wall clock, CLOCK_BOOTTIME (monotonic and, unlike
// CLOCK_MONOTONIC, still running through suspend, so a night asleep is not mistaken for a
// clock set forward) and the kernel's boot id, which changes on every restart.
class SystemEconomyClock final : public EconomyClock {
public:
    explicit SystemEconomyClock(std::string bootIdPath = "/proc/sys/kernel/random/boot_id");
    ClockReading read() const override;

private:
    std::string bootId_;  // read once: it can't change while this process lives
};

// The user's time zone through the C library (TZ and /etc/localtime).
class LocalTimeCalendar final : public Calendar {
public:
    long utcOffsetSeconds(Timestamp t) const override;
};

}  // namespace trotlet::shop
