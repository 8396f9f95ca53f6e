#pragma once

#include "metrics/MetricsSnapshot.h"
#include "reports/PawReport.h"
#include "sky/SunClock.h"
#include "weather/WeatherCondition.h"
#include "weather/WeatherReport.h"

namespace trotlet::snapshot {

// The scenes' forecast: Berlin on the scenes' day (sunrise 07:10, sunset 18:52 local), the
// given WMO code all day, 14 °C.
weather::WeatherReport sceneForecast(int code);
// A moment on the scenes' day that shows a phase of the sky: with the forecast 07:16, 13:00,
// 18:46, 23:10 in Berlin; without one (the sun kept 06:00 to 18:00) 06:12 and 17:52 for the
// twilights.
metrics::Timestamp scenePhaseTime(sky::SkyPhase phase, bool withForecast = true);
// A WMO code that stands for each condition at a typical intensity.
int sceneCode(weather::WeatherCondition condition);

// A demo week of the Paw Report ending on the scenes' day: six days before it with one the app
// did not run, and today until 14:30.
reports::PawReportInputs scenePawInputs();
reports::PawReport scenePawReport();

}  // namespace trotlet::snapshot
