#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "weather/WeatherError.h"
#include "weather/WeatherLocation.h"
#include "weather/WeatherReport.h"

namespace trotlet::weather {

// A request in flight. Cancelling it makes its callback receive `cancelled` (possibly
// before `cancel` returns); cancelling a finished request does nothing.
class FetchHandle {
public:
    virtual ~FetchHandle() = default;
    virtual void cancel() = 0;
};

// The two network operations of the weather, behind an interface so the store and the
// search field can run against a scripted fetcher. Callbacks run exactly once, on the
// thread that made the call, never from inside the call itself.
class WeatherFetching {
public:
    using ForecastDone = std::function<void(WeatherResult<WeatherReport>)>;
    using SearchDone = std::function<void(WeatherResult<std::vector<WeatherLocation>>)>;

    virtual ~WeatherFetching() = default;
    virtual std::shared_ptr<FetchHandle> forecast(const WeatherLocation& place, ForecastDone done) = 0;
    virtual std::shared_ptr<FetchHandle> search(const std::string& query, const std::string& language,
                                                SearchDone done) = 0;
};

}  // namespace trotlet::weather
