#include "shop/files/SystemEconomyClock.h"

#include <time.h>

#include <cmath>

#include "platform/linux/AtomicFile.h"

namespace trotlet::shop {

SystemEconomyClock::SystemEconomyClock(std::string bootIdPath) {
    const platform::ReadResult read = platform::readWholeFile(bootIdPath);
    bootId_ = read.status == platform::ReadStatus::ok ? read.contents : std::string();
    while (!bootId_.empty() && (bootId_.back() == '\n' || bootId_.back() == ' ')) bootId_.pop_back();
    // Without a boot id every reading looks like a new boot: the forward check is skipped,
    // the backward check still holds.
    if (bootId_.empty()) bootId_ = "unknown-boot";
}

ClockReading SystemEconomyClock::read() const {
    timespec wall{}, boot{};
    ::clock_gettime(CLOCK_REALTIME, &wall);
    ::clock_gettime(CLOCK_BOOTTIME, &boot);
    ClockReading reading;
    reading.wall = static_cast<double>(wall.tv_sec) + static_cast<double>(wall.tv_nsec) / 1e9;
    reading.monotonicNanos = static_cast<int64_t>(boot.tv_sec) * 1'000'000'000 + boot.tv_nsec;
    reading.bootId = bootId_;
    return reading;
}

long LocalTimeCalendar::utcOffsetSeconds(Timestamp t) const {
    const time_t seconds = static_cast<time_t>(std::floor(t));
    tm local{};
    ::localtime_r(&seconds, &local);
    return local.tm_gmtoff;
}

}  // namespace trotlet::shop
