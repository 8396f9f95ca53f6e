#pragma once

#include <vector>

#include "metrics/MetricsFixture.h"
#include "snapshot/Scenes.h"
#include "weather/WeatherReport.h"

namespace trotlet::metrics {
class DayHistory;
}

namespace trotlet::snapshot {

// A synthetic day for a fixture, ending at the scene's moment: a working day's load with a
// night's sleep left as a gap, three readings a minute.
void fillSceneDay(metrics::DayHistory& day, metrics::MetricsFixture fixture);
// The forecast the weather detail shows in the scenes: Berlin, clouding over, rain tonight.
weather::WeatherReport sceneForecast();

// `panel-detail-<detail>` for the details of this folder's screen (fixture normal; the Paw
// Report's is reports/'), the desktop's heat and battery, and the CPU over a synthetic day.
void addDetailScenes(std::vector<Scene>& scenes);

}  // namespace trotlet::snapshot
