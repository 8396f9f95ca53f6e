#pragma once

#include <memory>
#include <optional>

#include <QObject>

#include "weather/qt/WeatherStore.h"

namespace trotlet::settings {
class WeatherSettings;
}  // namespace trotlet::settings

namespace trotlet::weather {

// The weather in the running app: one store fed from the weather settings (the place, the
// menu bar and header switches, followed as the user changes them) and from the panel. The
// network client is made on the first fetch, so a session without a place never builds one
// and never goes online. Stops the store (cancelling a fetch in flight) when it goes.
class WeatherRuntime : public QObject {
    Q_OBJECT
public:
    // The live app's: the Open-Meteo client and the session's cache (none for an in-memory
    // session unless TROTLET_WEATHER_CACHE names one).
    WeatherRuntime(settings::WeatherSettings& settings, bool ephemeralSession,
                   QObject* parent = nullptr);
    // Tests bring their own fetcher, cache, network watch and clock; `fetcher` must outlive this.
    WeatherRuntime(settings::WeatherSettings& settings, WeatherFetching& fetcher,
                   WeatherCache cache, std::unique_ptr<NetworkPathWatch> watch,
                   WeatherStore::Clock clock, QObject* parent = nullptr);
    ~WeatherRuntime() override;

    void setPanelOpen(bool open) { store_->setPanelOpen(open); }

    WeatherStore& store() { return *store_; }
    const WeatherStore& store() const { return *store_; }
    // Whether the network client has been made (it is, at the first fetch).
    bool hasClient() const;
    // The network client, for the settings' city search (made on its first search).
    WeatherFetching& fetcher() { return *fetcher_; }

private:
    void applySettings();

    settings::WeatherSettings& settings_;
    std::unique_ptr<WeatherFetching> ownFetcher_;
    WeatherFetching* fetcher_ = nullptr;
    std::unique_ptr<WeatherStore> store_;
    int observer_ = 0;
};

}  // namespace trotlet::weather
