#include "weather/qt/WeatherStore.h"

#include <algorithm>
#include <climits>

#include <QDateTime>

#include "weather/WeatherText.h"

namespace trotlet::weather {

WeatherStore::WeatherStore(WeatherFetching& client, WeatherCache cache, std::unique_ptr<NetworkPathWatch> watch,
                           Clock now, QObject* parent)
    : QObject(parent), client_(client), cache_(std::move(cache)), watch_(std::move(watch)), now_(std::move(now)) {
    if (!watch_) watch_ = std::make_unique<SystemNetworkPathWatch>();
    if (!now_) now_ = [] { return QDateTime::currentSecsSinceEpoch(); };
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &WeatherStore::runDue);
    tickTimer_.setInterval(60 * 1000);
    connect(&tickTimer_, &QTimer::timeout, this, &WeatherStore::bumpTick);
}

WeatherStore::~WeatherStore() {
    // No callback may reach a store that is gone.
    ++fetchGeneration_;
    if (auto handle = std::exchange(inflight_, nullptr)) handle->cancel();
    if (watch_) watch_->stop();
}

WeatherNeeds WeatherStore::needs() const {
    return {location_.has_value(), panelOpen_, showInHeader_, cardVisible_, showInMenuBar_};
}

bool WeatherStore::isChosen(const WeatherLocation& place) const {
    return location_ && samePlace(*location_, place);
}

std::optional<WeatherReport> WeatherStore::currentReport() const {
    if (report_ && isChosen(report_->location)) return report_;
    return std::nullopt;
}

void WeatherStore::record(std::string line) {
    if (tracing_) trace_.push_back(std::move(line));
}

void WeatherStore::setLocation(std::optional<WeatherLocation> location) {
    const bool changedPlace = location.has_value() != location_.has_value() ||
                              (location && location_ && !samePlace(*location, *location_));
    location_ = std::move(location);
    // Before start the first value is only observed; the cache may well belong to it.
    if (started_ && changedPlace)
        placeChanged(location_);
    else
        reevaluate();
    emit changed();
}

void WeatherStore::setShowInMenuBar(bool on) {
    if (showInMenuBar_ == on) return;
    showInMenuBar_ = on;
    reevaluate();
    emit changed();
}

void WeatherStore::setShowInHeader(bool on) {
    if (showInHeader_ == on) return;
    showInHeader_ = on;
    reevaluate();
    emit changed();
}

void WeatherStore::setPanelOpen(bool open) {
    if (panelOpen_ == open) return;
    panelOpen_ = open;
    if (open)
        schedule_.panelOpened();
    else
        schedule_.panelClosed();
    reevaluate();
    emit changed();
}

void WeatherStore::setCardVisible(bool visible) {
    if (cardVisible_ == visible) return;
    cardVisible_ = visible;
    reevaluate();
    emit changed();
}

void WeatherStore::start() {
    if (started_) return;
    started_ = true;
    if (!report_) report_ = cache_.load();
    record("start");
    reevaluate();
    emit changed();
}

void WeatherStore::stop() {
    if (!started_) return;
    started_ = false;
    record("stop");
    timer_.stop();
    tickTimer_.stop();
    loopRunning_ = false;
    nextRefresh_.reset();
    ++fetchGeneration_;
    inflightPlace_.reset();
    if (auto handle = std::exchange(inflight_, nullptr)) handle->cancel();
    if (status_.kind == WeatherStatus::Kind::loading) status_ = {};
    if (watching_) {
        watching_ = false;
        ++pathGeneration_;
        watch_->stop();
        schedule_.watchStopped();
    }
    emit changed();
}

void WeatherStore::retryNow() {
    if (schedule_.failureCount > 0) {
        record("retry now");
        schedule_.retryNow();
        updateNetworkWatch();
    }
    reevaluate();
    emit changed();
}

void WeatherStore::reevaluate() {
    const bool wanted = started_ && needs().needsUpdates();
    if (!wanted) {
        if (loopRunning_) record("loop off");
        loopRunning_ = false;
        timer_.stop();
        tickTimer_.stop();
        nextRefresh_.reset();
        return;
    }
    if (!loopRunning_) record("loop on");
    loopRunning_ = true;
    if (!tickTimer_.isActive()) tickTimer_.start();
    if (inflight_) return;  // the fetch's end re-evaluates
    const UnixTime now = now_();
    auto current = currentReport();
    const UnixTime due = schedule_.dueDate(now, current ? std::optional(current->fetchedAt) : std::nullopt,
                                           needs().panelNeedsWeather());
    nextRefresh_ = due;
    const long long waitMs = std::clamp<long long>((due - now) * 1000LL, 0, INT_MAX);
    timer_.start(static_cast<int>(waitMs));
}

void WeatherStore::runDue() {
    if (!started_ || !loopRunning_ || inflight_) return;
    if (nextRefresh_ && now_() < *nextRefresh_) {
        reevaluate();  // woke early (clock change); sleep again
        return;
    }
    refresh();
}

void WeatherStore::refresh() {
    if (!location_) return;
    timer_.stop();
    const UnixTime now = now_();
    schedule_.attempted(now);
    status_ = {WeatherStatus::Kind::loading, std::nullopt};
    inflightPlace_ = *location_;
    const WeatherLocation place = *location_;
    const quint64 generation = ++fetchGeneration_;
    record("fetch " + place.name);
    auto handle = client_.forecast(place, [this, place, generation](WeatherResult<WeatherReport> result) {
        if (generation != fetchGeneration_) return;  // stopped or replaced meanwhile
        inflight_.reset();
        inflightPlace_.reset();
        if (auto* error = std::get_if<WeatherError>(&result))
            failed(*error, place);
        else
            succeeded(std::move(std::get<WeatherReport>(result)), place);
    });
    // A fetcher may already have answered (and cleared the generation's slot); keep the
    // handle only while the request is still open.
    if (generation == fetchGeneration_ && inflightPlace_) inflight_ = std::move(handle);
    emit changed();
}

void WeatherStore::succeeded(WeatherReport report, const WeatherLocation& place) {
    if (!isChosen(place)) {
        record("drop stale " + place.name);
        reevaluate();
        return;
    }
    record("ok " + place.name);
    report_ = std::move(report);
    schedule_.succeeded();
    status_ = {};
    cache_.save(*report_, now_());
    updateNetworkWatch();
    reevaluate();
    emit changed();
}

void WeatherStore::failed(const WeatherError& error, const WeatherLocation& place) {
    if (error.kind == WeatherError::Kind::cancelled) {
        if (status_.kind == WeatherStatus::Kind::loading) status_ = {};
        reevaluate();
        return;
    }
    if (!isChosen(place)) {
        record("drop stale failure " + place.name);
        reevaluate();
        return;
    }
    schedule_.failed();
    status_ = {WeatherStatus::Kind::failed, error};
    updateNetworkWatch();
    record("fail " + place.name + " " + error.name() + " backoff " +
           std::to_string(WeatherSchedule::backoffDelay(schedule_.failureCount)) + "s");
    reevaluate();
    emit changed();
}

void WeatherStore::placeChanged(const std::optional<WeatherLocation>& place) {
    if (inflight_ || inflightPlace_) {
        record("cancel " + (inflightPlace_ ? inflightPlace_->name : std::string("?")));
        ++fetchGeneration_;
        inflightPlace_.reset();
        if (auto handle = std::exchange(inflight_, nullptr)) handle->cancel();
    }
    schedule_.placeChanged();
    report_.reset();
    cache_.clear();
    status_ = {};
    record("place " + (place ? place->name : std::string("none")));
    updateNetworkWatch();
    reevaluate();
}

void WeatherStore::updateNetworkWatch() {
    const bool want = started_ && schedule_.wantsNetworkWatch();
    if (want == watching_) return;
    watching_ = want;
    const quint64 generation = ++pathGeneration_;
    if (want) {
        record("watch network on");
        watch_->start([this, generation](bool satisfied) { networkChanged(satisfied, generation); });
    } else {
        record("watch network off");
        watch_->stop();
        schedule_.watchStopped();
    }
}

void WeatherStore::networkChanged(bool satisfied, quint64 generation) {
    if (generation != pathGeneration_ || !watching_) return;
    record(std::string("network ") + (satisfied ? "satisfied" : "unsatisfied"));
    if (schedule_.networkChanged(satisfied)) {
        record("network back: backoff reset");
        updateNetworkWatch();
        reevaluate();
        emit changed();
    }
}

void WeatherStore::bumpTick() {
    ++tick_;
    emit changed();
}

std::optional<std::string> WeatherStore::menuBarText(bool fahrenheit) const {
    auto report = currentReport();
    if (!report) return std::nullopt;
    auto conditions = conditionsAt(*report, now_());
    if (!conditions) return std::nullopt;
    return temperatureText(conditions->temperatureC, fahrenheit);
}

std::optional<WeatherSkyInput> WeatherStore::skyInput(UnixTime at) const {
    auto report = currentReport();
    if (!report) return std::nullopt;
    return skyInputAt(*report, at);
}

}  // namespace trotlet::weather
