#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QObject>
#include <QTimer>

#include "weather/WeatherFetching.h"

namespace trotlet::weather {

// Backs the city field of the weather settings: suggestions as the user types, debounced,
// never answering for text the user has already changed.
class WeatherSearch : public QObject {
    Q_OBJECT
public:
    // `loading`: the text changed and the debounce is running; `searching`: the request is
    // out. The settings screen shows a quiet spinner for the first, a busy one for the second.
    enum class State { idle, loading, searching, results, empty, failed };

    static constexpr int kDebounceMs = 280;

    explicit WeatherSearch(WeatherFetching* client, std::string language = preferredLanguage(),
                           int debounceMs = kDebounceMs, QObject* parent = nullptr);
    ~WeatherSearch() override;

    // Setting the text schedules a search.
    void setQuery(const std::string& query);
    const std::string& query() const { return query_; }
    const std::vector<WeatherLocation>& results() const { return results_; }
    State state() const { return state_; }
    const std::optional<WeatherError>& error() const { return error_; }
    const std::string& resultsQuery() const { return resultsQuery_; }
    const std::string& language() const { return language_; }
    // False as soon as the text differs from the one the list answers, so the UI can dim it.
    bool resultsAreCurrent() const;

    // Return or a click on row `index`: the place to choose, or none. A current list
    // answers at once; a stale one runs a fresh search for the text as it is now and takes
    // its top match, unless the text changes again meanwhile.
    void resolve(int index, std::function<void(std::optional<WeatherLocation>)> done);
    void clear();

    // The language of the user's first preferred language ("en" without one), from
    // LANGUAGE / the locale as Qt reads them.
    static std::string preferredLanguage();

signals:
    void changed();

private:
    void schedule();
    void fire();
    void cancelTask();

    WeatherFetching* client_;
    std::string language_;
    std::string query_;
    std::vector<WeatherLocation> results_;
    State state_ = State::idle;
    std::optional<WeatherError> error_;
    std::string resultsQuery_;
    QTimer debounce_;
    std::shared_ptr<FetchHandle> task_;
    std::shared_ptr<FetchHandle> resolveTask_;
    quint64 generation_ = 0;
};

}  // namespace trotlet::weather
