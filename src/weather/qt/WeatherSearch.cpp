#include "weather/qt/WeatherSearch.h"

#include <QLocale>

#include "weather/PlaceSearch.h"
#include "weather/UnicodeText.h"

namespace trotlet::weather {

WeatherSearch::WeatherSearch(WeatherFetching* client, std::string language, int debounceMs, QObject* parent)
    : QObject(parent), client_(client), language_(std::move(language)) {
    debounce_.setSingleShot(true);
    debounce_.setInterval(debounceMs);
    connect(&debounce_, &QTimer::timeout, this, &WeatherSearch::fire);
}

WeatherSearch::~WeatherSearch() {
    ++generation_;
    if (auto t = std::exchange(task_, nullptr)) t->cancel();
    if (auto t = std::exchange(resolveTask_, nullptr)) t->cancel();
}

std::string WeatherSearch::preferredLanguage() {
    const QStringList languages = QLocale::system().uiLanguages();
    for (const QString& tag : languages) {
        QString code = tag.section(QLatin1Char('-'), 0, 0).section(QLatin1Char('_'), 0, 0).toLower();
        if (code.size() >= 2 && code != QLatin1String("c") && code != QLatin1String("posix")) {
            bool letters = std::all_of(code.begin(), code.end(), [](QChar c) { return c >= u'a' && c <= u'z'; });
            if (letters) return code.left(2).toStdString();
        }
    }
    return "en";
}

bool WeatherSearch::resultsAreCurrent() const { return unicode::trimmed(query_) == resultsQuery_; }

void WeatherSearch::setQuery(const std::string& query) {
    query_ = query;
    schedule();
    emit changed();
}

void WeatherSearch::cancelTask() {
    debounce_.stop();
    ++generation_;
    if (auto t = std::exchange(task_, nullptr)) t->cancel();
}

void WeatherSearch::schedule() {
    const std::string trimmed = unicode::trimmed(query_);
    cancelTask();
    if (unicode::characterCount(trimmed) < kMinimumQueryLength || !client_) {
        results_.clear();
        resultsQuery_.clear();
        error_.reset();
        state_ = State::idle;
        return;
    }
    state_ = State::loading;
    debounce_.start();
}

void WeatherSearch::fire() {
    const std::string trimmed = unicode::trimmed(query_);
    state_ = State::searching;
    error_.reset();
    const quint64 generation = ++generation_;
    task_ = client_->search(trimmed, language_, [this, generation, trimmed](WeatherResult<std::vector<WeatherLocation>> r) {
        if (generation != generation_) return;
        task_.reset();
        if (auto* error = std::get_if<WeatherError>(&r)) {
            if (error->kind == WeatherError::Kind::cancelled) return;
            state_ = State::failed;
            error_ = *error;
        } else {
            results_ = std::move(std::get<0>(r));
            resultsQuery_ = trimmed;
            state_ = results_.empty() ? State::empty : State::results;
        }
        emit changed();
    });
    emit changed();
}

void WeatherSearch::resolve(int index, std::function<void(std::optional<WeatherLocation>)> done) {
    if (resultsAreCurrent()) {
        if (index >= 0 && static_cast<size_t>(index) < results_.size()) return done(results_[static_cast<size_t>(index)]);
        return done(std::nullopt);
    }
    const std::string text = unicode::trimmed(query_);
    if (unicode::characterCount(text) < kMinimumQueryLength || !client_) return done(std::nullopt);
    if (auto t = std::exchange(resolveTask_, nullptr)) t->cancel();
    resolveTask_ = client_->search(text, language_, [this, text, done = std::move(done)](
                                                        WeatherResult<std::vector<WeatherLocation>> r) {
        resolveTask_.reset();
        auto* places = std::get_if<std::vector<WeatherLocation>>(&r);
        // The user kept typing while we waited: this answer is for older text.
        if (!places || places->empty() || unicode::trimmed(query_) != text) return done(std::nullopt);
        done(places->front());
    });
}

void WeatherSearch::clear() {
    cancelTask();
    if (auto t = std::exchange(resolveTask_, nullptr)) t->cancel();
    query_.clear();
    results_.clear();
    resultsQuery_.clear();
    error_.reset();
    state_ = State::idle;
    emit changed();
}

}  // namespace trotlet::weather
