#include "weather/qt/WeatherRuntime.h"

#include "settings/WeatherSettings.h"
#include "weather/qt/OpenMeteoClient.h"

namespace trotlet::weather {

namespace {

// Makes the Open-Meteo client (and with it Qt's network access manager, its threads and
// memory) only when the store first asks for something.
class OnDemandClient final : public WeatherFetching {
public:
    std::shared_ptr<FetchHandle> forecast(const WeatherLocation& place,
                                          ForecastDone done) override {
        return client().forecast(place, std::move(done));
    }
    std::shared_ptr<FetchHandle> search(const std::string& query, const std::string& language,
                                        SearchDone done) override {
        return client().search(query, language, std::move(done));
    }
    bool made() const { return static_cast<bool>(client_); }

private:
    OpenMeteoClient& client() {
        if (!client_) client_ = std::make_unique<OpenMeteoClient>();
        return *client_;
    }
    std::unique_ptr<OpenMeteoClient> client_;
};

}  // namespace

WeatherRuntime::WeatherRuntime(settings::WeatherSettings& settings, bool ephemeralSession,
                               QObject* parent)
    : QObject(parent),
      settings_(settings),
      ownFetcher_(std::make_unique<OnDemandClient>()),
      fetcher_(ownFetcher_.get()) {
    store_ =
        std::make_unique<WeatherStore>(*ownFetcher_, WeatherCache::forSession(ephemeralSession));
    applySettings();
    observer_ = settings_.observe([this](const std::string&) { applySettings(); });
    store_->start();
}

WeatherRuntime::WeatherRuntime(settings::WeatherSettings& settings, WeatherFetching& fetcher,
                               WeatherCache cache, std::unique_ptr<NetworkPathWatch> watch,
                               WeatherStore::Clock clock, QObject* parent)
    : QObject(parent), settings_(settings), fetcher_(&fetcher) {
    store_ = std::make_unique<WeatherStore>(fetcher, std::move(cache), std::move(watch),
                                            std::move(clock));
    applySettings();
    observer_ = settings_.observe([this](const std::string&) { applySettings(); });
    store_->start();
}

WeatherRuntime::~WeatherRuntime() {
    settings_.unobserve(observer_);
    store_->stop();
    // The store holds a reference to the fetcher: it goes first.
    store_.reset();
}

bool WeatherRuntime::hasClient() const {
    const auto* onDemand = dynamic_cast<const OnDemandClient*>(ownFetcher_.get());
    return onDemand && onDemand->made();
}

void WeatherRuntime::applySettings() {
    // An undecodable stored place reads as none: no fetch until the user picks one again.
    const auto& encoded = settings_.encodedLocation();
    store_->setLocation(encoded ? decodeLocationSetting(*encoded) : std::nullopt);
    store_->setShowInMenuBar(settings_.showInMenuBar());
    store_->setShowInHeader(settings_.showInHeader());
}

}  // namespace trotlet::weather
