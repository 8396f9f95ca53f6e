#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "menubar/DisplayUnits.h"
#include "reports/PawTrack.h"
#include "shop/Calendar.h"
#include "shop/DailyCounters.h"

namespace trotlet::reports {

// The measures of a day, in the order the report lists them.
enum class PawMeasure {
    activeTime,
    fishEarned,
    distance,
    asleep,
    panelOpens,
    goldenFish,
    peakCPU,
    hottest,
    highLoad
};
inline constexpr std::size_t pawMeasureCount = 9;
inline constexpr std::size_t weekDays = 7;

// One day of the week the charts show.
struct PawDay {
    std::string day;        // "2026-10-01"
    std::string label;      // "Thu"; "Today" for today
    bool recorded = false;  // the app kept counters that day
    bool isToday = false;
    bool operator==(const PawDay&) const = default;
};

// One measure: today's value in words and its seven days as numbers for a small chart.
struct PawRow {
    PawMeasure measure = PawMeasure::activeTime;
    std::string label;                                 // "Active time"
    std::string value;                                 // "2h 10m"
    std::string detail;                                // "firefox at 14:05"; may be empty
    std::string symbol;                                // the icon beside the label
    std::array<std::optional<double>, weekDays> week;  // oldest first, today last; none: no record
    bool operator==(const PawRow&) const = default;
};

struct PawReport {
    std::string day;  // today
    std::array<PawDay, weekDays> days;
    std::vector<PawRow> rows;  // one per measure, in PawMeasure order
    PawTrack track;
    std::string voice;  // the day's most notable fact, as the mascot says it
    std::int64_t fishEarnedToday = 0;
    bool operator==(const PawReport&) const = default;

    const PawRow& row(PawMeasure m) const { return rows[static_cast<std::size_t>(m)]; }
};

struct PawReportInputs {
    // The day the report is for. When the economy's counters still hold an earlier day (no
    // counter has moved since midnight), those counters are yesterday's and today starts blank.
    std::string currentDay;
    shop::DailyCounters today;
    std::int64_t fishEarnedToday = 0;  // the wallet's count for today
    std::vector<shop::DailyCounters> pastDays;
    shop::LifetimeStats lifetime;
    menubar::TemperatureUnit temperatureUnit = menubar::TemperatureUnit::celsius;
};

// The report for `inputs.today.day`; the times of the day's peaks read in `calendar`.
PawReport buildPawReport(const PawReportInputs& inputs, const shop::Calendar& calendar);

// The seven days ending with `today` (oldest first), each with the archived counters when the
// app kept any that day. `today` itself is always present.
std::array<std::optional<shop::DailyCounters>, weekDays> weekEnding(
    const shop::DailyCounters& today, const std::vector<shop::DailyCounters>& pastDays);

// The day's most notable fact in the mascot's own words: Golden Fish caught, a week's longest
// run, a busy peak with its process, high-load moments, heat, long naps, long hours, a good
// catch of Fish, then the distance; a quiet line when nothing stands out.
std::string mascotVoice(const PawReport& report, const PawReportInputs& inputs,
                        const shop::Calendar& calendar);

// "Mon" … "Sun" for a day key; empty for text that is not one.
std::string weekdayName(const std::string& day);
// "14:05" in the calendar's zone.
std::string clockTime(shop::Timestamp t, const shop::Calendar& calendar);

}  // namespace trotlet::reports
