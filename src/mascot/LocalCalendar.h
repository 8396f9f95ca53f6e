#pragma once

#include <ctime>
#include <optional>

namespace trotlet::mascot {

// The user's local date and hour, for the night and holiday looks. Passed in rather than read,
// so the rules can be tested for any time zone; the caller converts its clock in the user's zone.
struct LocalCalendar {
    std::optional<int> month;  // 1...12; absent: no seasonal hat
    std::optional<int> day;    // 1...31
    int hour = 12;             // 0...23

    static LocalCalendar fromTm(const std::tm& local) {
        return {local.tm_mon + 1, local.tm_mday, local.tm_hour};
    }
};

}  // namespace trotlet::mascot
