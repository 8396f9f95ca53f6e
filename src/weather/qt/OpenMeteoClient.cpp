#include "weather/qt/OpenMeteoClient.h"

#include <cstdlib>

#include <QDateTime>
#include <QNetworkAccessManager>
#include <QNetworkCookie>
#include <QNetworkCookieJar>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include "BuildInfo.h"
#include "weather/ForecastResponse.h"
#include "weather/OpenMeteoRequests.h"
#include "weather/PlaceSearch.h"
#include "weather/UnicodeText.h"
#include "weather/qt/LanguageRecogniser.h"
#include "weather/qt/NetworkErrorClass.h"

namespace trotlet::weather {

namespace {

// Neither keeps nor sends cookies: the weather needs no session and leaves no trace.
class NoCookieJar : public QNetworkCookieJar {
public:
    using QNetworkCookieJar::QNetworkCookieJar;
    QList<QNetworkCookie> cookiesForUrl(const QUrl&) const override { return {}; }
    bool setCookiesFromUrl(const QList<QNetworkCookie>&, const QUrl&) override { return false; }
};

std::string environmentOr(const char* name, std::string_view fallback) {
    const char* value = std::getenv(name);
    if (value && *value) return value;
    return std::string(fallback);
}

struct GetState {
    QPointer<QNetworkReply> reply;
    std::function<void(WeatherResult<QByteArray>)> done;
    QByteArray body;
    bool finished = false;
    bool cancelled = false;
    bool timedOut = false;
    bool tooLarge = false;
};

// Qt keeps at most this much unread per reply before it stops reading the socket, so the
// body grows only as fast as it is taken in below.
constexpr qint64 kReadBufferBytes = 64 * 1024;

class GetHandle : public FetchHandle {
public:
    explicit GetHandle(std::shared_ptr<GetState> state) : state_(std::move(state)) {}
    void cancel() override {
        if (state_->finished) return;
        state_->cancelled = true;
        // abort() emits finished() before it returns, which delivers `cancelled`.
        if (state_->reply) state_->reply->abort();
    }

private:
    std::shared_ptr<GetState> state_;
};

// Several handles cancelled as one (the requests of one search).
class GroupHandle : public FetchHandle {
public:
    std::vector<std::shared_ptr<FetchHandle>> parts;
    std::shared_ptr<bool> cancelled = std::make_shared<bool>(false);
    void cancel() override {
        *cancelled = true;
        auto copy = parts;
        for (auto& p : copy) p->cancel();
    }
};

}  // namespace

OpenMeteoClientOptions OpenMeteoClientOptions::fromEnvironment() {
    OpenMeteoClientOptions o;
    o.geocodingBase = environmentOr("TROTLET_OPEN_METEO_GEOCODING", kDefaultGeocodingBase);
    o.forecastBase = environmentOr("TROTLET_OPEN_METEO_FORECAST", kDefaultForecastBase);
    return o;
}

OpenMeteoClient::OpenMeteoClient(OpenMeteoClientOptions options)
    : options_(std::move(options)), manager_(std::make_unique<QNetworkAccessManager>()) {
    if (options_.geocodingBase.empty()) options_.geocodingBase = kDefaultGeocodingBase;
    if (options_.forecastBase.empty()) options_.forecastBase = kDefaultForecastBase;
    if (!options_.recogniser) options_.recogniser = recogniseLanguages;
    if (!options_.clock) options_.clock = [] { return QDateTime::currentSecsSinceEpoch(); };
    manager_->setCookieJar(new NoCookieJar(manager_.get()));
    manager_->setCache(nullptr);
    manager_->setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
}

OpenMeteoClient::~OpenMeteoClient() = default;

QString OpenMeteoClient::userAgent() {
    return QStringLiteral("Trotlet/%1 (Linux tray app)").arg(QString::fromUtf8(build::version));
}

std::string OpenMeteoClient::searchURL(const std::string& query, const std::string& language) const {
    return weather::searchURL(options_.geocodingBase, query, language);
}

std::string OpenMeteoClient::forecastURL(const WeatherLocation& place) const {
    return weather::forecastURL(options_.forecastBase, place);
}

std::shared_ptr<FetchHandle> OpenMeteoClient::get(const std::string& url,
                                                  std::function<void(WeatherResult<QByteArray>)> done) {
    QNetworkRequest request(QUrl(QString::fromStdString(url), QUrl::StrictMode));
    request.setRawHeader("User-Agent", userAgent().toUtf8());
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);

    auto state = std::make_shared<GetState>();
    state->done = std::move(done);
    QNetworkReply* reply = manager_->get(request);
    reply->setReadBufferSize(kReadBufferBytes);
    state->reply = reply;

    auto* idle = new QTimer(reply);
    auto* total = new QTimer(reply);
    idle->setSingleShot(true);
    total->setSingleShot(true);
    auto expire = [state] {
        if (state->finished) return;
        state->timedOut = true;
        if (state->reply) state->reply->abort();
    };
    QObject::connect(idle, &QTimer::timeout, reply, expire);
    QObject::connect(total, &QTimer::timeout, reply, expire);
    const int idleMs = options_.requestTimeoutMs;
    auto progress = [idle, idleMs] { idle->start(idleMs); };
    QObject::connect(reply, &QNetworkReply::metaDataChanged, idle, progress);
    QObject::connect(reply, &QNetworkReply::downloadProgress, idle, progress);
    QObject::connect(reply, &QNetworkReply::uploadProgress, idle, progress);
    idle->start(idleMs);
    total->start(options_.resourceTimeoutMs);

    // The body is taken in as it arrives and given up at the limit; a declared length above
    // it is given up before the first byte.
    const qint64 limit = options_.maxAnswerBytes;
    auto giveUp = [state] {
        if (state->finished) return;
        state->tooLarge = true;
        if (state->reply) state->reply->abort();
    };
    QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, limit, giveUp] {
        const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
        if (length.isValid() && length.toLongLong() > limit) giveUp();
    });
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [state, reply, limit, giveUp] {
        state->body += reply->read(limit + 1 - state->body.size());
        if (state->body.size() > limit) giveUp();
    });

    QObject::connect(reply, &QNetworkReply::finished, reply, [state, reply, idle, total, limit] {
        if (state->finished) return;
        state->finished = true;
        idle->stop();
        total->stop();
        QVariant statusAttribute = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
        std::optional<int> status;
        if (statusAttribute.isValid()) status = statusAttribute.toInt();
        if (!state->tooLarge) {
            state->body += reply->read(limit + 1 - state->body.size());
            state->tooLarge = state->body.size() > limit;
        }
        auto error = classifyReply(reply->error(), status, state->cancelled, state->timedOut,
                                   state->tooLarge);
        WeatherResult<QByteArray> result = error
                                               ? WeatherResult<QByteArray>(*error)
                                               : WeatherResult<QByteArray>(std::move(state->body));
        reply->deleteLater();
        auto done = std::move(state->done);
        if (done) done(std::move(result));
    });
    return std::make_shared<GetHandle>(state);
}

std::shared_ptr<FetchHandle> OpenMeteoClient::forecast(const WeatherLocation& place, ForecastDone done) {
    auto clock = options_.clock;
    return get(forecastURL(place), [place, clock, done = std::move(done)](WeatherResult<QByteArray> r) {
        if (auto* error = std::get_if<WeatherError>(&r)) return done(*error);
        const QByteArray& body = std::get<QByteArray>(r);
        auto report = decodeForecast(std::string_view(body.constData(), static_cast<size_t>(body.size())),
                                     place, clock());
        if (!report) return done(WeatherError::badResponse());
        done(std::move(*report));
    });
}

std::shared_ptr<FetchHandle> OpenMeteoClient::search(const std::string& rawQuery, const std::string& language,
                                                     SearchDone done) {
    const std::string query = unicode::trimmed(rawQuery);
    const auto plan = planSearch(query, language, options_.recogniser(query));
    auto group = std::make_shared<GroupHandle>();

    if (plan.empty()) {
        // Too short to send; still answer later, as every callback does.
        auto cancelled = group->cancelled;
        QTimer::singleShot(0, manager_.get(), [cancelled, done = std::move(done)] {
            if (*cancelled) return done(WeatherError::cancelled());
            done(std::vector<WeatherLocation>{});
        });
        return group;
    }

    struct Gather {
        std::vector<SearchAnswer> answers;
        size_t pending = 0;
        std::string query;
        QueryScript script = QueryScript::latin;
        bool byPopulation = true;
        SearchDone done;
    };
    auto gather = std::make_shared<Gather>();
    gather->answers.resize(plan.size());
    gather->pending = plan.size();
    gather->query = query;
    gather->script = classifyScript(query);
    gather->byPopulation = options_.rankByPopulation;
    gather->done = std::move(done);

    for (size_t i = 0; i < plan.size(); ++i) {
        gather->answers[i].language = plan[i].language;
        gather->answers[i].result = WeatherError::cancelled();
        group->parts.push_back(get(searchURL(plan[i].query, plan[i].language), [gather, i](WeatherResult<QByteArray> r) {
            if (auto* error = std::get_if<WeatherError>(&r)) {
                gather->answers[i].result = *error;
            } else {
                const QByteArray& body = std::get<QByteArray>(r);
                auto hits = decodeSearchHits(std::string_view(body.constData(), static_cast<size_t>(body.size())));
                if (hits)
                    gather->answers[i].result = std::move(*hits);
                else
                    gather->answers[i].result = WeatherError::badResponse();
            }
            if (--gather->pending > 0) return;
            auto done = std::move(gather->done);
            if (done) done(combineAnswers(gather->answers, gather->query, gather->script, gather->byPopulation));
        }));
    }
    return group;
}

}  // namespace trotlet::weather
