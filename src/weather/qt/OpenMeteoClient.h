#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <QByteArray>
#include <QString>

#include "weather/LanguageGuess.h"
#include "weather/WeatherFetching.h"

class QNetworkAccessManager;

namespace trotlet::weather {

struct OpenMeteoClientOptions {
    std::string geocodingBase;
    std::string forecastBase;
    // Qt 6.4 has only an idle transfer time-out per request and no overall one, so both are
    // ours: `requestTimeoutMs` gives up when no bytes arrived for that long (restarted by
    // every sign of progress), `resourceTimeoutMs` bounds the whole exchange. Both read as
    // offline, like any other network that does not deliver.
    int requestTimeoutMs = 12000;
    int resourceTimeoutMs = 20000;
    // A forecast is a few tens of KB. An answer that is (or says it will be) larger is not
    // one the service gives: it is cut off at this size and read as a bad answer, so a body
    // without an end (a captive portal, a broken proxy) cannot fill memory.
    qint64 maxAnswerBytes = 2 * 1024 * 1024;
    // Larger places first when the search merges several answers.
    bool rankByPopulation = true;
    // Language hypotheses for a query; defaults to the letter table plus CLD2.
    std::function<std::vector<LanguageHypothesis>(std::string_view)> recogniser;
    // Stamps `fetchedAt`; defaults to the system clock.
    std::function<UnixTime()> clock;

    // The public endpoints, or TROTLET_OPEN_METEO_GEOCODING / TROTLET_OPEN_METEO_FORECAST
    // when set and not empty (tests and harnesses point them at a local server).
    static OpenMeteoClientOptions fromEnvironment();
};

// The only code that talks to the network for the weather. Lives on the thread that made
// it (it owns a QNetworkAccessManager); callbacks come back on that thread. Sessions are
// ephemeral: no cookies are stored or sent, nothing is cached, every request goes out.
class OpenMeteoClient : public WeatherFetching {
public:
    explicit OpenMeteoClient(OpenMeteoClientOptions options = OpenMeteoClientOptions::fromEnvironment());
    ~OpenMeteoClient() override;

    std::shared_ptr<FetchHandle> forecast(const WeatherLocation& place, ForecastDone done) override;
    std::shared_ptr<FetchHandle> search(const std::string& query, const std::string& language,
                                        SearchDone done) override;

    std::string searchURL(const std::string& query, const std::string& language) const;
    std::string forecastURL(const WeatherLocation& place) const;
    const OpenMeteoClientOptions& options() const { return options_; }

    // One GET: the body of a 2xx answer of at most `maxAnswerBytes`, or the classified failure.
    std::shared_ptr<FetchHandle> get(const std::string& url,
                                     std::function<void(WeatherResult<QByteArray>)> done);

    // "Trotlet/<version> (Linux tray app)".
    static QString userAgent();

private:
    OpenMeteoClientOptions options_;
    std::unique_ptr<QNetworkAccessManager> manager_;
};

}  // namespace trotlet::weather
