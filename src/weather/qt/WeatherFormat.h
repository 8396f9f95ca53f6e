#pragma once

#include <string>

#include <QLocale>

#include "weather/WeatherReport.h"

namespace trotlet::weather {

// Dates and times of the weather, shown in the place's time zone. Templates name what to
// show, not how; the locale decides the order and the 12/24-hour clock:
//   "jmm"   hour and minutes (sunrise, sunset)     "j"    hour alone (hourly strip)
//   "EEE"   short weekday (daily rows)             "EEEE" full weekday
//   "MMMd"  day and short month                    other: used as a Qt date-time pattern
// Building a zone and a locale-derived pattern is slow next to formatting, so each
// (template, zone, locale) formatter is made once and kept; a mutex guards the cache
// because the panel's renderers may format from worker threads.
class WeatherFormat {
public:
    // `zone` is an IANA id; an empty, "auto" or unknown id falls back to the fixed
    // `utcOffsetSeconds`.
    static std::string string(UnixTime time, const std::string& templ, const std::string& zone,
                              int utcOffsetSeconds = 0, const QLocale& locale = QLocale());
    // The formatters made so far (for tests of the cache).
    static size_t cachedFormatters();
};

}  // namespace trotlet::weather
